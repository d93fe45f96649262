#include "HttpRequest.h"

#include "TableService.h"
#include "WebPages.h"

#include <algorithm>
#include <microhttpd.h>

namespace {

constexpr auto longestArrival = std::chrono::minutes(1);
constexpr auto longestUpload = std::chrono::hours(1);
constexpr unsigned good = MHD_HTTP_OK;

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

QByteArray decoded(QByteArray text)
{
    if (!text.isEmpty()) // whose characters are shared and cannot be written
        text.resize(static_cast<qsizetype>(MHD_http_unescape(text.data())));
    return text;
}

// The components behind the context; none where the path does not begin with it.
QByteArrayList componentsBehind(const QByteArray &context, const QByteArray &path)
{
    QByteArrayList components = path.split('/');
    const qsizetype own = context.count('/') + 1;
    if (components.size() <= own || decoded(components.first(own).join('/')) != context)
        return {};
    components = components.sliced(own);
    std::ranges::transform(components, components.begin(), &decoded);
    return components;
}

const Table *tableOf(const QByteArray &path)
{
    constexpr QByteArrayView suffix("Service");
    if (!path.endsWith(suffix))
        return nullptr;
    return Tables::find(QString::fromLatin1(path.chopped(suffix.size())));
}

}

HttpRequest::HttpRequest(HttpServer &server, MHD_Connection *connection, const char *url)
    : m_server(server)
    , m_connection(connection)
    , m_components(componentsBehind(server.settings().context, url))
    , m_path(m_components.join('/'))
    , m_kind(kind())
{
    ++m_server.running();
}

HttpRequest::~HttpRequest()
{
    m_upload.reset(); // while the server still waits
    --m_server.running();
}

HttpRequest::Kind HttpRequest::kind() const
{
    if (tableOf(m_path))
        return Kind::Table;
    if (FileService::operation(m_path))
        return Kind::Files;
    if (m_components.size() > 1 && m_components.first() == "Resource")
        return Kind::Resource;
    return WebPages::page(m_path) ? Kind::Page : Kind::Unknown;
}

// Null where there is none.
QByteArray HttpRequest::argument(const char *name) const
{
    const char *value = MHD_lookup_connection_value(m_connection, MHD_GET_ARGUMENT_KIND, name);
    return value ? decoded(value) : QByteArray();
}

// -1 where the head does not say.
qint64 HttpRequest::announcedSize() const
{
    const char *length =
        MHD_lookup_connection_value(m_connection, MHD_HEADER_KIND, MHD_HTTP_HEADER_CONTENT_LENGTH);
    bool isNumber = false;
    const qint64 size = QByteArray(length).toLongLong(&isNumber);
    return isNumber ? size : -1;
}

bool HttpRequest::isAllowed(const QByteArray &method) const
{
    if (m_kind == Kind::Table || FileService::operation(m_path) == FileService::Upload)
        return method == MHD_HTTP_METHOD_POST;
    return method == MHD_HTTP_METHOD_GET
           || (m_kind != Kind::Files && method == MHD_HTTP_METHOD_HEAD);
}

std::optional<Answer> HttpRequest::refusal(const QByteArray &method)
{
    const unsigned status = refusedStatus(method);
    if (status == good)
        return std::nullopt;
    return Answer{.status = status, .body = m_kind == Kind::Resource ? "" : "false"};
}

unsigned HttpRequest::refusedStatus(const QByteArray &method)
{
    if (m_kind == Kind::Unknown)
        return MHD_HTTP_NOT_FOUND;
    if (!isAllowed(method))
        return MHD_HTTP_METHOD_NOT_ALLOWED;
    if (m_kind == Kind::Page || m_kind == Kind::Resource)
        return good;
    if (!isSame(argument("servicePassword"), m_server.settings().password)) {
        qWarning("a call with a wrong password was refused");
        return MHD_HTTP_FORBIDDEN;
    }
    if (m_kind == Kind::Files)
        return refusedFileStatus();
    return announcedSize() > static_cast<qint64>(longestBody) ? MHD_HTTP_CONTENT_TOO_LARGE : good;
}

unsigned HttpRequest::refusedFileStatus()
{
    const FileService::Operation operation = *FileService::operation(m_path);
    const FileService::Place wanted = place();
    if (!FileService::isValid(operation, wanted))
        return MHD_HTTP_BAD_REQUEST;
    return operation == FileService::Upload ? beginUpload(wanted) : good;
}

unsigned HttpRequest::beginUpload(const FileService::Place &place)
{
    const qint64 size = announcedSize();
    if (size < 0)
        return MHD_HTTP_LENGTH_REQUIRED;
    if (size > m_server.settings().longestFile)
        return MHD_HTTP_CONTENT_TOO_LARGE;
    if (size > m_server.files().freeSpace()) {
        qWarning("a file was refused: the disk is full");
        return MHD_HTTP_INSUFFICIENT_STORAGE;
    }
    m_upload.emplace(m_server.files(), place.keys, place.file, size);
    return good;
}

FileService::Place HttpRequest::place() const
{
    return {.keys = {argument("groupID"), argument("companyID"), argument("module"),
                     argument("moduleID")},
            .file = argument("file")};
}

bool HttpRequest::take(const char *data, std::size_t size)
{
    const auto age = std::chrono::steady_clock::now() - m_begin;
    if (m_upload)
        return age <= longestUpload && m_upload->write(data, size);
    if (static_cast<std::size_t>(m_body.size()) + size > longestBody || age > longestArrival)
        return false;
    m_body.append(data, static_cast<qsizetype>(size));
    return true;
}

Answer HttpRequest::answer()
{
    if (m_upload)
        return {.body = m_upload->keep() ? "true" : "false"};
    if (m_kind == Kind::Table)
        return {.body = TableService::answer(*tableOf(m_path), argument("operation"), m_body)};
    if (m_kind == Kind::Files)
        return {.body = FileService::answer(m_server.files(), *FileService::operation(m_path),
                                            place())};
    if (m_kind == Kind::Resource)
        return download();
    return {.body = WebPages::page(m_path).value_or("false"), .type = "text/html; charset=utf-8"};
}

// Clients take whatever bytes come for the file, and do not look at the status: for a file that is
// missing none come.
Answer HttpRequest::download() const
{
    std::optional<FileTree::File> file = m_server.files().find(m_components.sliced(1));
    if (!file)
        return {.status = MHD_HTTP_NOT_FOUND, .body = ""};
    const char *type = FileService::pictureType(m_components.last());
    return {.type = type ? type : "application/octet-stream",
            .file = std::move(file),
            .isAttachment = !type};
}
