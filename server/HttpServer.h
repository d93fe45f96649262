// The service's door: HTTP on a pool of threads. Refuses what is too long, unknown or without the
// password; the body of every refusal is "false". Made and destroyed on the main thread.
#pragma once

#include "Result.h"

#include <QByteArray>
#include <QHostAddress>

#include <atomic>
#include <memory>

struct MHD_Daemon;

struct ServerSettings
{
    QHostAddress address;
    quint16 port = 0;    // 0: any free one
    QByteArray context;  // path that all addresses begin with: "" or "/app"
    QByteArray password; // that table calls carry
};

class HttpServer
{
public:
    // Bytes of a body: a record whose largest value is 64 Ki characters, encoded, fits.
    static constexpr qsizetype longestBody = 1 << 20;

    [[nodiscard]] static Result<std::unique_ptr<HttpServer>> start(const ServerSettings &settings);

    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;
    // Finishes the requests that run, for ten seconds at most.
    ~HttpServer();

    [[nodiscard]] quint16 port() const;
    [[nodiscard]] const ServerSettings &settings() const { return m_settings; }

    // How many requests are being taken in and answered now; any thread.
    [[nodiscard]] std::atomic_int &running() { return m_running; }
    [[nodiscard]] bool isEnding() const { return m_isEnding; }
    [[nodiscard]] bool isClosed() const { return m_isClosed; }

private:
    explicit HttpServer(const ServerSettings &settings);

    ServerSettings m_settings;
    MHD_Daemon *m_daemon = nullptr;
    std::atomic_int m_running = 0;
    std::atomic_bool m_isEnding = false; // connections are closed after their answer
    std::atomic_bool m_isClosed = false; // nothing new is begun
};
