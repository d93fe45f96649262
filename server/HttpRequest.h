// A request while it arrives. Refuses what is too long, unknown or without the password; the body
// of every refusal is "false", but nothing for a download. Any thread, one at a time.
#pragma once

#include "FileService.h"
#include "HttpServer.h"
#include "Upload.h"

#include <chrono>

struct MHD_Connection;

struct Answer
{
    unsigned status = 200;
    QByteArray body = "false";
    const char *type = "application/json";
    std::optional<FileTree::File> file = {}; // sent in place of the body
    bool isAttachment = false;               // not to be shown, only to be saved
};

class HttpRequest
{
public:
    // Bytes of a body: a record whose largest value is 64 Ki characters, encoded, fits.
    static constexpr std::size_t longestBody = 1 << 20;

    // The url is the path as it was sent. The server counts the requests that are alive: its end
    // waits for them.
    HttpRequest(HttpServer &server, MHD_Connection *connection, const char *url);
    ~HttpRequest();
    HttpRequest(const HttpRequest &) = delete;
    HttpRequest &operator=(const HttpRequest &) = delete;

    // What the head alone is refused with, before any of the body is kept; null where it is good.
    [[nodiscard]] std::optional<Answer> refusal(const QByteArray &method);

    // The next bytes of the body; false where they are too many or too late.
    [[nodiscard]] bool take(const char *data, std::size_t size);

    // After the whole body.
    [[nodiscard]] Answer answer();

private:
    enum class Kind { Unknown, Page, Table, Files, Resource };

    [[nodiscard]] Kind kind() const;
    [[nodiscard]] QByteArray argument(const char *name) const;
    [[nodiscard]] qint64 announcedSize() const;
    [[nodiscard]] bool isAllowed(const QByteArray &method) const;
    [[nodiscard]] unsigned refusedStatus(const QByteArray &method);
    [[nodiscard]] unsigned beginUpload(const FileService::Place &place);
    [[nodiscard]] unsigned refusedFileStatus();
    [[nodiscard]] FileService::Place place() const;
    [[nodiscard]] Answer download() const;

    HttpServer &m_server;
    MHD_Connection *m_connection;
    QByteArrayList m_components; // of the path behind the context, decoded
    QByteArray m_path;           // the same as one
    Kind m_kind = Kind::Unknown;
    std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
    QByteArray m_body;
    std::optional<Upload> m_upload;
};
