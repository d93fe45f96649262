#include "ServiceCall.h"

#include "MainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <cstring>

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
    explicit BodyOnce(const QByteArray &body)
        : m_body(body)
    {
        open(ReadOnly | Unbuffered);
    }

    [[nodiscard]] bool isSequential() const override { return true; }
    [[nodiscard]] qint64 bytesAvailable() const override
    {
        return m_body.size() - m_done + QIODevice::bytesAvailable();
    }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 size = std::min<qint64>(maxSize, m_body.size() - m_done);
        if (size == 0)
            return -1;
        std::memcpy(data, m_body.constData() + m_done, static_cast<size_t>(size));
        m_done += size;
        return size;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_body;
    qsizetype m_done = 0;
};

bool isWaiting = false;
quint64 taskThatTimedOut = 0;

// Collects the reply; says whether it came whole.
class Reply : public QObject
{
public:
    explicit Reply(QNetworkReply *reply)
        : m_reply(reply)
    {
        m_timer.setSingleShot(true);
        connect(&m_timer, &QTimer::timeout, this, &Reply::timeOut);
        m_wholeTimer.setSingleShot(true);
        connect(&m_wholeTimer, &QTimer::timeout, this, &Reply::timeOut);
        m_wholeTimer.start(ServiceCall::limits().wholeTime);
        connect(reply, &QNetworkReply::requestSent, this, &Reply::goOn);
        connect(reply, &QNetworkReply::uploadProgress, this, &Reply::uploaded);
        connect(reply, &QNetworkReply::readyRead, this, &Reply::collect);
        connect(reply, &QNetworkReply::finished, &m_loop, &QEventLoop::quit);
        m_timer.start(ServiceCall::limits().connectTime);
    }

    std::optional<QByteArray> wait()
    {
        if (!m_reply->isFinished())
            m_loop.exec();
        m_timer.stop();
        m_wholeTimer.stop();
        collect();
        const bool answered =
            m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
        const bool broken = m_reply->error() > QNetworkReply::NoError
                            && m_reply->error() <= QNetworkReply::UnknownNetworkError;
        if (!answered || broken || m_isTooLong)
            return std::nullopt;
        return m_body;
    }

private:
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
        if (m_isTooLong)
            return;
        if (!m_reply->isFinished())
            goOn();
        m_body += m_reply->readAll();
        if (m_body.size() > ServiceCall::limits().replySize) {
            m_isTooLong = true;
            m_body.clear();
            m_reply->abort();
        }
    }

    QNetworkReply *m_reply;
    QEventLoop m_loop;
    QTimer m_timer;
    QTimer m_wholeTimer;
    QByteArray m_body;
    bool m_isTooLong = false;
};

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
    Q_ASSERT_X(!isWaiting, "ServiceCall::send", "a call inside a call");
    const quint64 task = MainQueue::currentTask();
    if (isWaiting || (task != 0 && task == taskThatTimedOut))
        return std::nullopt;
    isWaiting = true;
    QNetworkRequest sent = request.request;
    sent.setRawHeader("Accept-Encoding", "identity");
    sent.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    sent.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    std::optional<QByteArray> answer;
    {
        const MainQueue::Hold hold;
        const InputDiscarder discarder;
        BodyOnce body(request.body);
        const std::unique_ptr<QNetworkReply> reply(network().post(sent, &body));
        // Unread bytes wait in the socket, so that an endless reply is not taken in unchecked.
        reply->setReadBufferSize(1 << 20);
        answer = Reply(reply.get()).wait();
    }
    isWaiting = false;
    return answer;
}
