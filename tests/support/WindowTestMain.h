// The main function of the test programs that show windows: as the program starts, but without a
// desktop and without native dialogs.
#pragma once

#include "Launch.h"
#include "TestEnvironment.h"

#include <QApplication>
#include <QTest>

#define MAPLORN_WINDOW_TEST_MAIN(TestClass)                                                        \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        const TestEnvironment environment;                                                         \
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);                               \
        prepareForWebPages();                                                                      \
        QApplication application(argc, argv);                                                      \
        const ApplicationSetup setup(application);                                                 \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
