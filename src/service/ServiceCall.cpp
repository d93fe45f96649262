#include "ServiceCall.h"

#include "MainQueue.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>

#include <algorithm>

namespace {

// Events held back would be replayed after the call: a second click would submit twice.
class InputDiscarder : public QObject
{
public:
    InputDiscarder() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::Close:
            event->ignore();
            return true;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::NonClientAreaMouseButtonPress:
        case QEvent::NonClientAreaMouseButtonRelease:
        case QEvent::NonClientAreaMouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::Shortcut:
        case QEvent::ShortcutOverride:
        case QEvent::ContextMenu:
        case QEvent::InputMethod:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TabletPress:
        case QEvent::TabletRelease:
        case QEvent::DragEnter:
        case QEvent::Drop:
            return true;
        default:
            return false;
        }
    }
};

QNetworkAccessManager &network()
{
    // Goes with the application, since its connections live on the application's event loop.
    static QPointer<QNetworkAccessManager> manager;
    if (!manager) {
        manager = new QNetworkAccessManager(QCoreApplication::instance());
        manager->setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
    }
    return *manager;
}

// The body as it is sent: read once. Of a body that can be read again the network library makes a
// second request when the server ends without an answer, and a record would be inserted twice.
class BodyOnce : public QIODevice
{
public:
    // The next bytes of the source, so many. A source that ends before ends the call.
    BodyOnce(QIODevice &source, qint64 size)
        : m_source(source)
        , m_left(size)
    {
        open(ReadOnly | Unbuffered);
    }

    [[nodiscard]] bool isSequential() const override { return true; }
    [[nodiscard]] qint64 bytesAvailable() const override
    {
        return m_left + QIODevice::bytesAvailable();
    }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 size = m_source.read(data, std::min(maxSize, m_left));
        if (size <= 0)
            return -1;
        m_left -= size;
        return size;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QIODevice &m_source;
    qint64 m_left;
};

bool isWaiting = false;
quint64 taskThatTimedOut = 0;

// What a call may take.
struct Bounds
{
    std::optional<int> wholeTime; // ms
    std::optional<qint64> size;   // bytes of the reply
    bool needsLength = false;     // whether a reply that announces none counts as cut short
};

// Passes the reply's body on; says whether it came whole.
class Reply : public QObject
{
public:
    Reply(QNetworkReply *reply, QIODevice &target, const Bounds &bounds)
        : m_reply(reply)
        , m_target(target)
        , m_bounds(bounds)
    {
        m_timer.setSingleShot(true);
        connect(&m_timer, &QTimer::timeout, this, &Reply::timeOut);
        m_wholeTimer.setSingleShot(true);
        connect(&m_wholeTimer, &QTimer::timeout, this, &Reply::timeOut);
        if (bounds.wholeTime)
            m_wholeTimer.start(*bounds.wholeTime);
        connect(reply, &QNetworkReply::requestSent, this, &Reply::goOn);
        connect(reply, &QNetworkReply::uploadProgress, this, &Reply::uploaded);
        connect(reply, &QNetworkReply::readyRead, this, &Reply::collect);
        connect(reply, &QNetworkReply::finished, &m_loop, &QEventLoop::quit);
        m_timer.start(ServiceCall::limits().connectTime);
    }

    // The size of the body.
    std::optional<qint64> wait()
    {
        if (!m_reply->isFinished())
            m_loop.exec();
        m_timer.stop();
        m_wholeTimer.stop();
        collect();
        return m_isRefused || isBroken() || !hasItsLength() ? std::nullopt : std::optional(m_size);
    }

private:
    [[nodiscard]] bool isBroken() const
    {
        const QNetworkReply::NetworkError error = m_reply->error();
        return !m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid()
               || (error > QNetworkReply::NoError && error <= QNetworkReply::UnknownNetworkError)
               || (error >= QNetworkReply::ProtocolUnknownError
                   && error <= QNetworkReply::ProtocolFailure);
    }
    // A body without a length ends where the connection does, for whatever reason. One in chunks
    // would tell, but the network library at times takes the end of the connection for the last.
    [[nodiscard]] bool hasItsLength() const
    {
        const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
        if (length.isValid())
            return length.toLongLong() == m_size;
        return !m_bounds.needsLength;
    }
    void goOn() { m_timer.start(ServiceCall::limits().silentTime); }
    void uploaded(qint64 bytesSent)
    {
        if (bytesSent > 0)
            goOn();
    }
    void timeOut()
    {
        taskThatTimedOut = MainQueue::currentTask();
        m_reply->abort();
    }
    void collect()
    {
        if (m_isRefused)
            return;
        if (!m_reply->isFinished())
            goOn();
        const QByteArray piece = m_reply->readAll();
        m_size += piece.size();
        if ((!m_bounds.size || m_size <= *m_bounds.size) && m_target.write(piece) == piece.size())
            return;
        m_isRefused = true;
        m_reply->abort();
    }

    QNetworkReply *m_reply;
    QIODevice &m_target;
    Bounds m_bounds;
    QEventLoop m_loop;
    QTimer m_timer;
    QTimer m_wholeTimer;
    qint64 m_size = 0;
    bool m_isRefused = false;
};

// Sends the body once, passes the reply's on to the target; its size.
std::optional<qint64> perform(QNetworkRequest request, const QByteArray &method, QIODevice &body,
                              qint64 bodySize, QIODevice &target, const Bounds &bounds)
{
    Q_ASSERT_X(!isWaiting, "ServiceCall", "a call inside a call");
    const quint64 task = MainQueue::currentTask();
    if (isWaiting || (task != 0 && task == taskThatTimedOut))
        return std::nullopt;
    isWaiting = true;
    request.setRawHeader("Accept-Encoding", "identity");
    request.setRawHeader("Content-Length", QByteArray::number(bodySize));
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    std::optional<qint64> size;
    {
        const MainQueue::Hold hold;
        const InputDiscarder discarder;
        BodyOnce once(body, bodySize);
        const std::unique_ptr<QNetworkReply> reply(
            network().sendCustomRequest(request, method, &once));
        // Unread bytes wait in the socket, so that an endless reply is not taken in unchecked.
        reply->setReadBufferSize(1 << 20);
        size = Reply(reply.get(), target, bounds).wait();
    }
    isWaiting = false;
    return size;
}

// The reply, kept in memory.
std::optional<QByteArray> answer(const QNetworkRequest &request, const QByteArray &method,
                                 QIODevice &body, qint64 bodySize, std::optional<int> wholeTime)
{
    QBuffer reply;
    reply.open(QIODevice::WriteOnly);
    const Bounds bounds{.wholeTime = wholeTime, .size = ServiceCall::limits().replySize};
    if (!perform(request, method, body, bodySize, reply, bounds))
        return std::nullopt;
    return reply.data();
}

}

ServiceRequest MiscTool::getURLRequest(const QUrl &url, const QByteArray &requestData)
{
    QNetworkRequest request(url);
    request.setRawHeader("Accept", "application/json");
    request.setRawHeader("Content-Type", "application/json");
    request.setRawHeader("Content-Length", QByteArray::number(requestData.size()));
    return {request, requestData};
}

ServiceCall::Limits &ServiceCall::limits()
{
    static Limits instance;
    return instance;
}

std::optional<QByteArray> ServiceCall::send(const ServiceRequest &request)
{
    QBuffer body;
    body.setData(request.body);
    body.open(QIODevice::ReadOnly);
    return answer(request.request, "POST", body, body.size(), limits().wholeTime);
}

std::optional<QByteArray> ServiceCall::send(const QNetworkRequest &request, QFile &file)
{
    return answer(request, "POST", file, file.size(), std::nullopt);
}

std::optional<QByteArray> ServiceCall::get(const QUrl &url)
{
    QBuffer nothing;
    nothing.open(QIODevice::ReadOnly);
    return answer(QNetworkRequest(url), "GET", nothing, 0, limits().wholeTime);
}

std::optional<qint64> ServiceCall::fetch(const QUrl &url, QIODevice &target,
                                         std::optional<qint64> longest)
{
    QBuffer nothing;
    nothing.open(QIODevice::ReadOnly);
    const Bounds bounds{.wholeTime = std::nullopt, .size = longest, .needsLength = true};
    return perform(QNetworkRequest(url), "GET", nothing, 0, target, bounds);
}
