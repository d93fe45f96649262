// The real service with a database of its own, on a free port; the preferences name it as the
// service. Main thread.
#pragma once

#include <QProcess>
#include <QTemporaryDir>

class ServiceFixture
{
public:
    // With more options of the program.
    explicit ServiceFixture(const QStringList &options = {});
    ~ServiceFixture();
    ServiceFixture(const ServiceFixture &) = delete;
    ServiceFixture &operator=(const ServiceFixture &) = delete;

    void start();
    // As a crash would end it.
    void kill();
    // As an operator ends it; the exit status.
    int end();

    [[nodiscard]] quint16 port() const { return m_port; }
    // Where it keeps its data.
    [[nodiscard]] QString folder() const { return m_folder.path(); }

private:
    QStringList m_options;
    QTemporaryDir m_folder;
    QProcess m_process;
    quint16 m_port = 0;
};
