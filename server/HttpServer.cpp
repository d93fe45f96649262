#include "HttpServer.h"

#include "HttpRequest.h"

#include <QThread>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <microhttpd.h>
#include <netinet/in.h>
#include <optional>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr unsigned idleTime = 15; // s that a connection may be silent
constexpr unsigned mostConnections = 4000;
constexpr unsigned reservedFiles = 100; // for the database and the log
constexpr auto longestEnding = std::chrono::seconds(10);

// As many as the files that this process may open leave room for; each may use one of the store.
unsigned connectionLimit()
{
    rlimit files{};
    if (::getrlimit(RLIMIT_NOFILE, &files) != 0)
        return mostConnections;
    files.rlim_cur = files.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &files);
    ::getrlimit(RLIMIT_NOFILE, &files);
    if (files.rlim_cur <= 3 * reservedFiles)
        return reservedFiles;
    return static_cast<unsigned>(
        std::min<rlim_t>(mostConnections, (files.rlim_cur - reservedFiles) / 2));
}

void release(void *body)
{
    delete static_cast<QByteArray *>(body);
}

// The library closes the file.
MHD_Response *fileResponse(FileTree::File &file)
{
    MHD_Response *response =
        MHD_create_response_from_fd64(static_cast<std::uint64_t>(file.size), file.descriptor.get());
    if (response)
        (void)file.descriptor.release();
    return response;
}

MHD_Response *bodyResponse(const QByteArray &bytes)
{
    auto *body = new QByteArray(bytes);
    return MHD_create_response_from_buffer_with_free_callback_cls(
        static_cast<std::size_t>(body->size()), body->data(), &release, body);
}

MHD_Result send(MHD_Connection *connection, Answer answer, bool isLast)
{
    MHD_Response *response = answer.file ? fileResponse(*answer.file) : bodyResponse(answer.body);
    if (!response)
        return MHD_NO;
    MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, answer.type);
    if (isLast)
        MHD_add_response_header(response, MHD_HTTP_HEADER_CONNECTION, "close");
    MHD_add_response_header(response, "X-Content-Type-Options", "nosniff");
    if (answer.isAttachment)
        MHD_add_response_header(response, "Content-Disposition", "attachment");
    const MHD_Result queued = MHD_queue_response(connection, answer.status, response);
    MHD_destroy_response(response);
    return queued;
}

// Called once when the head of a request is in, for each piece of its body, and at its end.
MHD_Result handle(void *self, MHD_Connection *connection, const char *url, const char *method,
                  const char *, const char *data, std::size_t *size, void **state)
{
    auto &server = *static_cast<HttpServer *>(self);
    auto *request = static_cast<HttpRequest *>(*state);
    if (!request) {
        request = new HttpRequest(server, connection, url);
        *state = request;
        if (server.isClosed())
            return MHD_NO;
        std::optional<Answer> refused = request->refusal(method);
        return refused ? send(connection, std::move(*refused), server.isEnding()) : MHD_YES;
    }
    if (*size > 0) {
        if (!request->take(data, *size))
            return MHD_NO; // closes the connection: nobody waits for the rest
        *size = 0;
        return MHD_YES;
    }
    return send(connection, request->answer(), server.isEnding());
}

// Texts are decoded where they are used: here "%2F" would become a separator, and "%00" an end.
std::size_t leaveEncoded(void *, MHD_Connection *, char *text)
{
    return std::strlen(text);
}

void forget(void *, MHD_Connection *, void **state, MHD_RequestTerminationCode)
{
    delete static_cast<HttpRequest *>(*state);
    *state = nullptr;
}

sockaddr_storage socketAddress(const ServerSettings &settings)
{
    sockaddr_storage storage{};
    if (settings.address.protocol() == QAbstractSocket::IPv6Protocol) {
        sockaddr_in6 address{};
        address.sin6_family = AF_INET6;
        address.sin6_port = htons(settings.port);
        const Q_IPV6ADDR bytes = settings.address.toIPv6Address();
        std::memcpy(&address.sin6_addr, &bytes, sizeof bytes);
        std::memcpy(&storage, &address, sizeof address);
    } else {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(settings.port);
        address.sin_addr.s_addr = htonl(settings.address.toIPv4Address());
        std::memcpy(&storage, &address, sizeof address);
    }
    return storage;
}

}

HttpServer::HttpServer(const ServerSettings &settings, const FileTree &files)
    : m_settings(settings)
    , m_files(files)
{
}

HttpServer::~HttpServer()
{
    if (!m_daemon)
        return;
    m_isEnding = true;
    const MHD_socket listening = MHD_quiesce_daemon(m_daemon);
    const auto begin = std::chrono::steady_clock::now();
    const auto waitForTheLast = [&] {
        while (m_running > 0 && std::chrono::steady_clock::now() - begin < longestEnding)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    };
    waitForTheLast();
    m_isClosed = true; // a request that comes now is not begun
    waitForTheLast();
    MHD_stop_daemon(m_daemon);
    if (listening != MHD_INVALID_SOCKET)
        ::close(listening);
}

Result<std::unique_ptr<HttpServer>> HttpServer::start(const ServerSettings &settings,
                                                      const FileTree &files)
{
    std::unique_ptr<HttpServer> server(new HttpServer(settings, files));
    const sockaddr_storage address = socketAddress(settings);
    unsigned flags = MHD_USE_EPOLL_INTERNAL_THREAD | MHD_USE_ITC;
    if (settings.address.protocol() == QAbstractSocket::IPv6Protocol)
        flags |= MHD_USE_IPv6;
    const unsigned threads = static_cast<unsigned>(std::max(2, QThread::idealThreadCount()));
    errno = 0;
    server->m_daemon = MHD_start_daemon(
        flags, settings.port, nullptr, nullptr, &handle, server.get(), MHD_OPTION_SOCK_ADDR,
        &address, MHD_OPTION_THREAD_POOL_SIZE, threads, MHD_OPTION_CONNECTION_LIMIT,
        connectionLimit(), MHD_OPTION_CONNECTION_TIMEOUT, idleTime, MHD_OPTION_NOTIFY_COMPLETED,
        &forget, nullptr, MHD_OPTION_UNESCAPE_CALLBACK, &leaveEncoded, nullptr, MHD_OPTION_END);
    if (!server->m_daemon)
        return Failure{QStringLiteral("cannot listen on %1, port %2: %3")
                           .arg(settings.address.toString())
                           .arg(settings.port)
                           .arg(errno == 0 ? QStringLiteral("unknown reason")
                                           : QString::fromLocal8Bit(std::strerror(errno)))};
    return server;
}

quint16 HttpServer::port() const
{
    return MHD_get_daemon_info(m_daemon, MHD_DAEMON_INFO_BIND_PORT)->port;
}
