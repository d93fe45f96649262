// The service that the application runs itself where no configuration names a host: a child on the
// loopback address that ends with the application, however that ends. Main thread.
#pragma once

#include "Result.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryFile>

#include <memory>

class OwnService
{
public:
    // Starts the child where one is needed and makes its address the last source of the
    // configuration. Null where a host is configured; the error is fit for a user.
    [[nodiscard]] static Result<std::unique_ptr<OwnService>> startIfNeeded();

    OwnService() = default;
    OwnService(const OwnService &) = delete;
    OwnService &operator=(const OwnService &) = delete;
    ~OwnService();

private:
    [[nodiscard]] Result<> start(const QString &port);
    [[nodiscard]] Result<> announce(const QString &port);
    void restart();

    QElapsedTimer m_sinceStart;
    QProcess m_process;
    QByteArray m_password;
    QTemporaryFile m_config; // readable by its owner alone: it holds the password
};
