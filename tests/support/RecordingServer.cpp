#include "RecordingServer.h"

#include "Preferences.h"

#include <QRegularExpression>
#include <QTcpSocket>

RecordingServer::RecordingServer()
{
    if (!listen(QHostAddress::LocalHost))
        qFatal("no port");
    connect(this, &QTcpServer::newConnection, this, &RecordingServer::accept);
    setReply("true");
    preferService(serverPort(), QStringLiteral("secret"), QStringLiteral("app"));
}

QByteArray RecordingServer::whole(const QByteArray &body)
{
    return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n"
           + body;
}

void RecordingServer::setReply(const QByteArray &body)
{
    m_reply = whole(body);
}

QStringList RecordingServer::queries() const
{
    static const QRegularExpression pattern(
        QStringLiteral("/(\\w+)Service\\?.*operation=(\\w+) .*?\r\n\r\n"
                       "(?:\\{\"WhereClause\":\"(.*)\",\"Index.*)?"),
        QRegularExpression::DotMatchesEverythingOption);
    QStringList lines;
    for (const QByteArray &request : m_requests)
        lines.append(
            pattern.match(QString::fromUtf8(request)).capturedTexts().sliced(1).join(u' '));
    return lines;
}

void RecordingServer::accept()
{
    QTcpSocket *socket = nextPendingConnection();
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] { take(socket); });
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
}

void RecordingServer::take(QTcpSocket *socket)
{
    const QByteArray request = socket->property("request").toByteArray() + socket->readAll();
    const qsizetype head = request.indexOf("\r\n\r\n");
    const qsizetype field = request.indexOf("Content-Length: ");
    const int length = field < 0 ? 0 : request.mid(field + 16, 10).split('\r').first().toInt();
    if (head < 0 || request.size() < head + 4 + length) {
        socket->setProperty("request", request);
        return;
    }
    m_requests.append(request);
    socket->setProperty("request", {});
    socket->write(m_nextReplies.isEmpty() ? m_reply : whole(m_nextReplies.takeFirst()));
    if (m_isDying)
        socket->disconnectFromHost();
    if (!m_isEndless)
        return;
    const auto more = [socket] { socket->write(QByteArray(1 << 20, 'x')); };
    connect(socket, &QTcpSocket::bytesWritten, socket, more);
    more();
}

void preferService(quint16 port, const QString &password, const QString &context)
{
    Preferences::setValue(QStringLiteral("Protocol"), QStringLiteral("http"));
    Preferences::setValue(QStringLiteral("Host"), QStringLiteral("127.0.0.1"));
    Preferences::setValue(QStringLiteral("Port"), QString::number(port));
    Preferences::setValue(QStringLiteral("Context"), context);
    Preferences::setValue(QStringLiteral("ServicePassword"), password);
}
