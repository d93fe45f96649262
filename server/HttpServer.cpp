#include "HttpServer.h"

#include "TableService.h"
#include "WebPages.h"

#include <QThread>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <microhttpd.h>
#include <netinet/in.h>
#include <optional>

namespace {

constexpr unsigned idleTime = 15; // s that a connection may be silent
constexpr unsigned mostConnections = 4000;

struct Answer
{
    unsigned status = MHD_HTTP_OK;
    QByteArray body = "false";
    const char *type = "application/json";
};

// What is known of a request while it arrives.
struct Request
{
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

Answer answerTo(const ServerSettings &settings, MHD_Connection *connection, const QByteArray &path,
                const QByteArray &method, const QByteArray &body)
{
    const Table *table = tableOf(path);
    if (!table) {
        const std::optional<QByteArray> page = WebPages::page(path);
        if (!page)
            return {.status = MHD_HTTP_NOT_FOUND};
        if (method != MHD_HTTP_METHOD_GET && method != MHD_HTTP_METHOD_HEAD)
            return {.status = MHD_HTTP_METHOD_NOT_ALLOWED};
        return {.body = *page, .type = "text/html; charset=utf-8"};
    }
    if (method != MHD_HTTP_METHOD_POST)
        return {.status = MHD_HTTP_METHOD_NOT_ALLOWED};
    if (!isSame(argument(connection, "servicePassword"), settings.password)) {
        qWarning("a call with a wrong password was refused");
        return {.status = MHD_HTTP_FORBIDDEN};
    }
    return {.body = TableService::answer(*table, argument(connection, "operation"), body)};
}

MHD_Result send(MHD_Connection *connection, const Answer &answer)
{
    MHD_Response *response = MHD_create_response_from_buffer(
        static_cast<std::size_t>(answer.body.size()), const_cast<char *>(answer.body.constData()),
        MHD_RESPMEM_MUST_COPY);
    MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, answer.type);
    MHD_add_response_header(response, "X-Content-Type-Options", "nosniff");
    const MHD_Result queued = MHD_queue_response(connection, answer.status, response);
    MHD_destroy_response(response);
    return queued;
}

bool announcesTooMuch(MHD_Connection *connection)
{
    const char *length =
        MHD_lookup_connection_value(connection, MHD_HEADER_KIND, MHD_HTTP_HEADER_CONTENT_LENGTH);
    return length && QByteArray(length).toLongLong() > HttpServer::longestBody;
}

// Called once when the head of a request is in, for each piece of its body, and at its end.
MHD_Result handle(void *server, MHD_Connection *connection, const char *url, const char *method,
                  const char *, const char *data, std::size_t *size, void **state)
{
    const ServerSettings &settings = static_cast<HttpServer *>(server)->settings();
    auto *request = static_cast<Request *>(*state);
    if (!request) {
        *state = new Request;
        return announcesTooMuch(connection)
                   ? send(connection, {.status = MHD_HTTP_CONTENT_TOO_LARGE})
                   : MHD_YES;
    }
    if (*size > 0) {
        if (request->body.size() + static_cast<qsizetype>(*size) > HttpServer::longestBody)
            return MHD_NO; // closes the connection: nobody waits for the rest
        request->body.append(data, static_cast<qsizetype>(*size));
        *size = 0;
        return MHD_YES;
    }
    const std::optional<QByteArray> path = pathOf(settings, url);
    if (!path)
        return send(connection, {.status = MHD_HTTP_NOT_FOUND});
    return send(connection, answerTo(settings, connection, *path, method, request->body));
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
    if (m_daemon)
        MHD_stop_daemon(m_daemon);
}

Result<std::unique_ptr<HttpServer>> HttpServer::start(const ServerSettings &settings)
{
    std::unique_ptr<HttpServer> server(new HttpServer(settings));
    const sockaddr_storage address = socketAddress(settings);
    unsigned flags = MHD_USE_EPOLL_INTERNAL_THREAD;
    if (settings.address.protocol() == QAbstractSocket::IPv6Protocol)
        flags |= MHD_USE_IPv6;
    const unsigned threads = static_cast<unsigned>(std::max(2, QThread::idealThreadCount()));
    errno = 0;
    server->m_daemon = MHD_start_daemon(
        flags, settings.port, nullptr, nullptr, &handle, server.get(), MHD_OPTION_SOCK_ADDR,
        &address, MHD_OPTION_THREAD_POOL_SIZE, threads, MHD_OPTION_CONNECTION_LIMIT,
        mostConnections, MHD_OPTION_CONNECTION_TIMEOUT, idleTime, MHD_OPTION_NOTIFY_COMPLETED,
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
