// The pane that shows the service's pages: with a server that answers, refuses or says nothing, and
// without leave to show anything at all.
#include "WebPane.h"
#include "ServiceFixture.h"
#include "ServicePages.h"
#include "WindowTestMain.h"

#include <QChildEvent>
#include <QLabel>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTcpServer>

#include <unistd.h>

namespace {

constexpr int slow = 30000; // ms that the web engine may take on a busy machine

// Listens to the view of a pane from the moment that it is first shown: a warm engine ends a
// request before a test that looks for the view from time to time has found it.
class LoadWatch : public QObject
{
public:
    explicit LoadWatch(QWidget &pane) { pane.installEventFilter(this); }

    [[nodiscard]] bool hasFinished() const { return m_finished && !m_finished->isEmpty(); }
    [[nodiscard]] bool hasLoaded() const { return m_finished->constFirst().constFirst().toBool(); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::ChildPolished)
            return false;
        QObject *child = static_cast<QChildEvent *>(event)->child();
        if (child->objectName() == QLatin1StringView("webView"))
            m_finished = std::make_unique<QSignalSpy>(child, SIGNAL(loadFinished(bool)));
        return false;
    }

private:
    std::unique_ptr<QSignalSpy> m_finished;
};

}

class WebPaneTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
        m_pane = std::make_unique<WebPane>();
        m_pane->resize(600, 400);
    }
    void cleanup() { m_pane.reset(); }

    void viewComesAfterTheFirstPainting();
    void refusedConnectionLeavesThePageEmpty();
    void silentServerHoldsNothingUp();
    void rootIsTold();

private:
    [[nodiscard]] QWidget *view() const
    {
        return m_pane->findChild<QWidget *>(QStringLiteral("webView"));
    }
    [[nodiscard]] bool isLoading() const
    {
        return m_pane->findChild<QProgressBar *>(QStringLiteral("loadingView"))->isVisible();
    }

    std::unique_ptr<WebPane> m_pane;
};

void WebPaneTest::viewComesAfterTheFirstPainting()
{
    const ServiceFixture service;
    m_pane->open(ServicePages::url());
    QVERIFY2(!view(), "made before anything is on the screen");
    m_pane->show();
    QTRY_VERIFY_WITH_TIMEOUT(view(), slow);
    QTRY_COMPARE_WITH_TIMEOUT(view()->property("title").toString(), QStringLiteral("Maplorn Disc"),
                              slow);
    QTRY_VERIFY_WITH_TIMEOUT(!isLoading(), slow);
}

void WebPaneTest::refusedConnectionLeavesThePageEmpty()
{
    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    const QUrl url(QStringLiteral("http://127.0.0.1:%1/").arg(closed.serverPort()));
    closed.close();
    const LoadWatch watch(*m_pane);
    m_pane->open(url);
    m_pane->show();
    QTRY_VERIFY_WITH_TIMEOUT(watch.hasFinished(), slow);
    QVERIFY(!watch.hasLoaded());
    QTRY_VERIFY_WITH_TIMEOUT(!isLoading(), slow);
}

void WebPaneTest::silentServerHoldsNothingUp()
{
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    m_pane->open(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(silent.serverPort())));
    m_pane->show();
    QTRY_VERIFY_WITH_TIMEOUT(isLoading(), slow);
    QTRY_VERIFY_WITH_TIMEOUT(silent.hasPendingConnections(), slow);
    QTest::qWait(200);
    QVERIFY2(isLoading(), "still waiting, and saying so");
    m_pane.reset(); // a page that is left does not wait for its server
}

void WebPaneTest::rootIsTold()
{
    if (geteuid() != 0)
        QSKIP("the sandbox works for an ordinary user");
    qunsetenv("QTWEBENGINE_DISABLE_SANDBOX");
    m_pane->open(QUrl(QStringLiteral("http://127.0.0.1:1/")));
    m_pane->show();
    auto *label = m_pane->findChild<QLabel *>(QStringLiteral("refusalLabel"));
    QTRY_VERIFY(label->isVisible());
    QVERIFY(label->text().contains(QStringLiteral("QTWEBENGINE_DISABLE_SANDBOX=1")));
    QVERIFY2(!view(), "the engine would end the program");
}

MAPLORN_WINDOW_TEST_MAIN(WebPaneTest)
#include "WebPaneTest.moc"
