#include "WebPane.h"

#include "Localized.h"
#include "WebViewFactory.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPluginLoader>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>

#include <unistd.h>

namespace {

constexpr int indicatorHeight = 4;

// The engine's sandbox does not work for root, and the engine ends the program without it.
bool isRefusedToRoot()
{
    return geteuid() == 0 && !qEnvironmentVariableIntValue("QTWEBENGINE_DISABLE_SANDBOX");
}

}

WebPane::WebPane(QWidget *parent)
    : QWidget(parent)
    , m_layout(new QVBoxLayout(this))
    , m_loadingView(new QProgressBar(this))
    , m_refusal(new QLabel(this))
{
    m_layout->setContentsMargins({});
    m_layout->setSpacing(0);
    m_loadingView->setObjectName(QStringLiteral("loadingView"));
    m_loadingView->setAccessibleName(localized("Home", "Loading the page"));
    m_loadingView->setRange(0, 0);
    m_loadingView->setTextVisible(false);
    m_loadingView->setFixedHeight(indicatorHeight);
    QSizePolicy keepsItsPlace = m_loadingView->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    m_loadingView->setSizePolicy(keepsItsPlace);
    m_loadingView->hide();
    m_refusal->setObjectName(QStringLiteral("refusalLabel"));
    m_refusal->setAlignment(Qt::AlignCenter);
    m_refusal->setWordWrap(true);
    m_refusal->setMargin(24);
    m_refusal->hide();
    m_layout->addWidget(m_loadingView);
    m_layout->addWidget(m_refusal, 1);
    m_layout->addStretch();
}

void WebPane::open(const QUrl &url)
{
    m_url = url;
}

void WebPane::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    if (m_isMade || m_url.isEmpty())
        return;
    m_isMade = true;
    QTimer::singleShot(0, this, &WebPane::makeView);
}

void WebPane::makeView()
{
    if (isRefusedToRoot()) {
        m_refusal->setText(localized(
            "Home", "This page cannot be shown when the program is run as root.\n\n"
                    "Run it as an ordinary user, or switch the page's sandbox off by setting "
                    "QTWEBENGINE_DISABLE_SANDBOX=1."));
        m_refusal->show();
        return;
    }
    QPluginLoader loader(QCoreApplication::applicationDirPath()
                         + QStringLiteral("/maplorn-webview"));
    auto *factory = qobject_cast<WebViewFactory *>(loader.instance());
    if (!factory) {
        qWarning("no web view: %s", qUtf8Printable(loader.errorString()));
        return;
    }
    QWidget *view = factory->create(
        m_url, [this](bool loading) { setLoading(loading); }, this);
    m_layout->insertWidget(1, view, 1);
    view->show();
}

void WebPane::setLoading(bool loading)
{
    m_loadingView->setVisible(loading);
}
