// The pane that shows the service's pages: with a server that answers, refuses or says nothing, and
// without leave to show anything at all.
#include "WebPane.h"
#include "ServiceFixture.h"
#include "ServicePages.h"
#include "WindowTestMain.h"

#include <QLabel>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTcpServer>

#include <unistd.h>

constexpr int slow = 30000; // ms that the web engine may take on a busy machine

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
    m_pane->open(url);
    m_pane->show();
    QTRY_VERIFY_WITH_TIMEOUT(view(), slow);
    QSignalSpy finished(view(), SIGNAL(loadFinished(bool)));
    QVERIFY(finished.wait(slow));
    QCOMPARE(finished.first().first().toBool(), false);
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
