// The main functions of the test programs. MAPLORN_TEST_MAIN for what needs no windows,
// MAPLORN_WINDOW_TEST_MAIN (WindowTestMain.h) for the rest.
#pragma once

#include "TestEnvironment.h"

#include <QCoreApplication>
#include <QTest>

#define MAPLORN_TEST_MAIN(TestClass)                                                               \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        const TestEnvironment environment;                                                         \
        QCoreApplication::setApplicationName(QStringLiteral("maplorn-disc"));                      \
        const QCoreApplication application(argc, argv);                                            \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
