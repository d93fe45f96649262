// The service's door: HTTP on a pool of threads. Made and destroyed on the main thread.
#pragma once

#include "Result.h"

#include <QByteArray>
#include <QHostAddress>

#include <atomic>
#include <memory>

class FileTree;
struct MHD_Daemon;

struct ServerSettings
{
    QHostAddress address;
    quint16 port = 0;                // 0: any free one
    QByteArray context;              // path that all addresses begin with: "" or "/app"
    QByteArray password;             // that calls carry
    qint64 longestFile = 64LL << 20; // bytes of a file of the store
};

class HttpServer
{
public:
    // The files outlive the server.
    [[nodiscard]] static Result<std::unique_ptr<HttpServer>> start(const ServerSettings &settings,
                                                                   const FileTree &files);

    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;
    // Finishes the requests that run, for ten seconds at most.
    ~HttpServer();

    [[nodiscard]] quint16 port() const;
    [[nodiscard]] const ServerSettings &settings() const { return m_settings; }
    [[nodiscard]] const FileTree &files() const { return m_files; }

    // How many requests are being taken in and answered now; any thread.
    [[nodiscard]] std::atomic_int &running() { return m_running; }
    [[nodiscard]] bool isEnding() const { return m_isEnding; }
    [[nodiscard]] bool isClosed() const { return m_isClosed; }

private:
    HttpServer(const ServerSettings &settings, const FileTree &files);

    ServerSettings m_settings;
    const FileTree &m_files;
    MHD_Daemon *m_daemon = nullptr;
    std::atomic_int m_running = 0;
    std::atomic_bool m_isEnding = false; // connections are closed after their answer
    std::atomic_bool m_isClosed = false; // nothing new is begun
};
