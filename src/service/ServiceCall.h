// One call of the service: sends a request and waits for the whole reply. While it waits windows
// are painted and indicators turn, but nothing else of ours runs: main-queue tasks and reports
// wait, mouse, key and close events are discarded. Main thread; a call inside a call is a
// programming error.
#pragma once

#include <QNetworkRequest>

#include <optional>

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
    int wholeTime = 300'000;       // ms that a call may take in all
    qint64 replySize = 64LL << 20; // bytes
};
[[nodiscard]] Limits &limits();

// The body of the reply, whatever its status; null where none came whole within the limits. After
// a time-out the further calls of the same main-queue task get null at once.
[[nodiscard]] std::optional<QByteArray> send(const ServiceRequest &request);

}
