#include "HttpServer.h"

#include "TableService.h"
#include "WebPages.h"

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
constexpr auto longestArrival = std::chrono::seconds(60);
constexpr auto longestEnding = std::chrono::seconds(10);

// As many as the files that this process may open leave room for.
unsigned connectionLimit()
{
    rlimit files{};
    if (::getrlimit(RLIMIT_NOFILE, &files) != 0)
        return mostConnections;
    files.rlim_cur = files.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &files);
    ::getrlimit(RLIMIT_NOFILE, &files);
    if (files.rlim_cur <= 2 * reservedFiles)
        return reservedFiles;
    return static_cast<unsigned>(std::min<rlim_t>(mostConnections, files.rlim_cur - reservedFiles));
}

struct Answer
{
    unsigned status = MHD_HTTP_OK;
    QByteArray body = "false";
    const char *type = "application/json";
};

// What is known of a request while it arrives. Those alive are counted: the end waits for them.
struct Request
{
    explicit Request(std::atomic_int &count)
        : alive(count)
    {
        ++alive;
    }
    ~Request() { --alive; }
    Request(const Request &) = delete;
    Request &operator=(const Request &) = delete;

    std::atomic_int &alive;
    std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
    QByteArray body;
};

// Takes as long wherever the texts differ.
bool isSame(const QByteArray &given, const QByteArray &wanted)
{
    unsigned difference = given.size() == wanted.size() ? 0 : 1;
    for (qsizetype i = 0; i < given.size(); ++i)
        difference |=
            static_cast<unsigned char>(given.at(i))
            ^ static_cast<unsigned char>(wanted.isEmpty() ? 1 : wanted.at(i % wanted.size()));
    return difference == 0;
}

QByteArray argument(MHD_Connection *connection, const char *name)
{
    return {MHD_lookup_connection_value(connection, MHD_GET_ARGUMENT_KIND, name)};
}

// The path behind the context; null where it does not begin with it.
std::optional<QByteArray> pathOf(const ServerSettings &settings, const char *url)
{
    const QByteArray path(url);
    if (!path.startsWith(QByteArray(settings.context + '/')))
        return std::nullopt;
    return path.sliced(settings.context.size() + 1);
}

const Table *tableOf(const QByteArray &path)
{
    constexpr QByteArrayView suffix("Service");
    if (!path.endsWith(suffix))
        return nullptr;
    return Tables::find(QString::fromLatin1(path.chopped(suffix.size())));
}

bool announcesTooMuch(MHD_Connection *connection)
{
    const char *length =
        MHD_lookup_connection_value(connection, MHD_HEADER_KIND, MHD_HTTP_HEADER_CONTENT_LENGTH);
    return length && QByteArray(length).toLongLong() > HttpServer::longestBody;
}

// What the head alone is refused with, before any of the body is kept; null where it is good.
std::optional<Answer> refusal(const ServerSettings &settings, MHD_Connection *connection,
                              const std::optional<QByteArray> &path, const QByteArray &method)
{
    if (!path)
        return Answer{.status = MHD_HTTP_NOT_FOUND};
    if (!tableOf(*path)) {
        if (!WebPages::page(*path))
            return Answer{.status = MHD_HTTP_NOT_FOUND};
        if (method != MHD_HTTP_METHOD_GET && method != MHD_HTTP_METHOD_HEAD)
            return Answer{.status = MHD_HTTP_METHOD_NOT_ALLOWED};
        return std::nullopt;
    }
    if (method != MHD_HTTP_METHOD_POST)
        return Answer{.status = MHD_HTTP_METHOD_NOT_ALLOWED};
    if (!isSame(argument(connection, "servicePassword"), settings.password)) {
        qWarning("a call with a wrong password was refused");
        return Answer{.status = MHD_HTTP_FORBIDDEN};
    }
    if (announcesTooMuch(connection))
        return Answer{.status = MHD_HTTP_CONTENT_TOO_LARGE};
    return std::nullopt;
}

Answer answerTo(MHD_Connection *connection, const QByteArray &path, const QByteArray &body)
{
    if (const Table *table = tableOf(path))
        return {.body = TableService::answer(*table, argument(connection, "operation"), body)};
    return {.body = WebPages::page(path).value_or("false"), .type = "text/html; charset=utf-8"};
}

void release(void *body)
{
    delete static_cast<QByteArray *>(body);
}

MHD_Result send(MHD_Connection *connection, const Answer &answer, bool isLast)
{
    auto *body = new QByteArray(answer.body);
    MHD_Response *response = MHD_create_response_from_buffer_with_free_callback_cls(
        static_cast<std::size_t>(body->size()), body->data(), &release, body);
    MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, answer.type);
    if (isLast)
        MHD_add_response_header(response, MHD_HTTP_HEADER_CONNECTION, "close");
    MHD_add_response_header(response, "X-Content-Type-Options", "nosniff");
    const MHD_Result queued = MHD_queue_response(connection, answer.status, response);
    MHD_destroy_response(response);
    return queued;
}

// Called once when the head of a request is in, for each piece of its body, and at its end.
MHD_Result handle(void *self, MHD_Connection *connection, const char *url, const char *method,
                  const char *, const char *data, std::size_t *size, void **state)
{
    auto &server = *static_cast<HttpServer *>(self);
    const std::optional<QByteArray> path = pathOf(server.settings(), url);
    auto *request = static_cast<Request *>(*state);
    if (!request) {
        *state = new Request(server.running());
        if (server.isClosed())
            return MHD_NO;
        const std::optional<Answer> refused = refusal(server.settings(), connection, path, method);
        return refused ? send(connection, *refused, server.isEnding()) : MHD_YES;
    }
    if (*size > 0) {
        if (request->body.size() + static_cast<qsizetype>(*size) > HttpServer::longestBody
            || std::chrono::steady_clock::now() - request->begin > longestArrival)
            return MHD_NO; // closes the connection: nobody waits for the rest
        request->body.append(data, static_cast<qsizetype>(*size));
        *size = 0;
        return MHD_YES;
    }
    const Answer answer =
        path ? answerTo(connection, *path, request->body) : Answer{.status = MHD_HTTP_NOT_FOUND};
    return send(connection, answer, server.isEnding());
}

void forget(void *, MHD_Connection *, void **state, MHD_RequestTerminationCode)
{
    delete static_cast<Request *>(*state);
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

HttpServer::HttpServer(const ServerSettings &settings)
    : m_settings(settings)
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

Result<std::unique_ptr<HttpServer>> HttpServer::start(const ServerSettings &settings)
{
    std::unique_ptr<HttpServer> server(new HttpServer(settings));
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
        &forget, nullptr, MHD_OPTION_END);
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
