// One call of the service: sends a request and waits for the whole reply. While it waits windows
// are painted and indicators turn, but nothing else of ours runs: main-queue tasks and reports
// wait, mouse, key and close events are discarded. Main thread; a call inside a call is a
// programming error.
#pragma once

#include <QNetworkRequest>

#include <optional>

class QFile;

struct ServiceRequest
{
    QNetworkRequest request;
    QByteArray body;
};

namespace MiscTool {

// A POST of JSON that wants JSON back.
[[nodiscard]] ServiceRequest getURLRequest(const QUrl &url, const QByteArray &requestData);

}

namespace ServiceCall {

struct Limits
{
    int connectTime = 5'000;       // ms until the request is sent
    int silentTime = 30'000;       // ms without a byte coming or going
    int wholeTime = 300'000;       // ms that a call may take in all; transfers may take longer
    qint64 replySize = 64LL << 20; // bytes
};
[[nodiscard]] Limits &limits();

// Each gives the body of the reply, whatever its status; null where none came whole within the
// limits. After a time-out the further calls of the same main-queue task get null at once. No call
// is sent a second time.
[[nodiscard]] std::optional<QByteArray> send(const ServiceRequest &request);
[[nodiscard]] std::optional<QByteArray> get(const QUrl &url);

// Transfers: as long as bytes come and go they may take any time.

// A POST of the open file, read from the disk as it goes. Null also where it turns out shorter than
// it was at the beginning.
[[nodiscard]] std::optional<QByteArray> send(const QNetworkRequest &request, QFile &file);
// A GET whose reply goes into the target. The number of bytes; null where they were cut short, or
// the reply does not announce how many they are, or the target does not take them, or they are more
// than the longest. The target may then hold some.
[[nodiscard]] std::optional<qint64> fetch(const QUrl &url, QIODevice &target,
                                          std::optional<qint64> longest = {});

}
