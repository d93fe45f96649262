// What every test program starts with: a private HOME and private XDG folders, the offscreen
// platform, no theme of the desktop, the C locale. Main thread, before the application object.
#pragma once

#include <QTemporaryDir>

class TestEnvironment
{
public:
    TestEnvironment();

    // The private HOME; removed with everything in it at the end.
    [[nodiscard]] QString home() const { return m_home.path(); }

private:
    QTemporaryDir m_home;
};
