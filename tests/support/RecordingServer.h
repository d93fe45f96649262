// A server that keeps every request as it came and plays back given replies. Lives on the main
// thread: the calls under test wait in an event loop. The preferences name it as the service.
#pragma once

#include <QTcpServer>

class RecordingServer : public QTcpServer
{
    Q_OBJECT

public:
    RecordingServer();

    // What every request is answered with, as it stands; nothing is a silent server.
    void setRawReply(const QByteArray &reply) { m_reply = reply; }
    // The same with the head of a good answer before it.
    void setReply(const QByteArray &body);
    // The next requests are answered with these, one each, the later ones as before.
    void setNextReplies(const QList<QByteArray> &bodies) { m_nextReplies = bodies; }
    // After the reply, the end of the connection.
    void setDying() { m_isDying = true; }
    // After the reply, bytes without end.
    void setEndless() { m_isEndless = true; }

    [[nodiscard]] const QList<QByteArray> &requests() const { return m_requests; }
    // The same as lines: the table, the operation and the where-clause as it came.
    [[nodiscard]] QStringList queries() const;

private:
    void accept();
    void take(QTcpSocket *socket);

    [[nodiscard]] static QByteArray whole(const QByteArray &body);

    QByteArray m_reply;
    QList<QByteArray> m_nextReplies;
    bool m_isDying = false;
    bool m_isEndless = false;
    QList<QByteArray> m_requests;
};

// Makes this the service that the client calls.
void preferService(quint16 port, const QString &password, const QString &context = {});
