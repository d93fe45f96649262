// The web view, in a library of its own: see WebPane.
#include "WebViewFactory.h"

#include <QDesktopServices>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineView>

namespace {

// What a link may open outside: a page or a letter, never a file or a program.
void openOutside(const QUrl &url)
{
    if (const QString scheme = url.scheme(); scheme == QLatin1StringView("https")
                                             || scheme == QLatin1StringView("http")
                                             || scheme == QLatin1StringView("mailto"))
        QDesktopServices::openUrl(url);
}

// Stands for a window that a page wants to open: its address goes to the browser.
class NewWindow : public QWebEnginePage
{
public:
    using QWebEnginePage::QWebEnginePage;

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType, bool) override
    {
        openOutside(url);
        deleteLater();
        return false;
    }
};

// Keeps to the service's own pages; links that lead elsewhere open in the browser.
class ServicePage : public QWebEnginePage
{
public:
    ServicePage(const QUrl &home, QWebEngineProfile *profile, QObject *parent)
        : QWebEnginePage(profile, parent)
        , m_host(home.host())
    {
    }

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override
    {
        if (!isMainFrame || url.host() == m_host)
            return QWebEnginePage::acceptNavigationRequest(url, type, isMainFrame);
        if (type == NavigationTypeLinkClicked)
            openOutside(url);
        return false;
    }

    QWebEnginePage *createWindow(WebWindowType) override { return new NewWindow(profile(), this); }

private:
    QString m_host;
};

}

class WebViewPlugin : public QObject, public WebViewFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID WebViewFactory_iid)
    Q_INTERFACES(WebViewFactory)

public:
    QWidget *create(const QUrl &url, const std::function<void(bool)> &onLoading,
                    QWidget *parent) override
    {
        auto *view = new QWebEngineView(parent);
        view->setObjectName(QStringLiteral("webView"));
        // A profile without a name keeps nothing on the disk. It must outlive the page.
        auto *profile = new QWebEngineProfile(view);
        auto *page = new ServicePage(url, profile, view);
        page->settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
        page->setBackgroundColor(parent->palette().color(QPalette::Window));
        view->setContextMenuPolicy(Qt::NoContextMenu);
        view->setPage(page);
        connect(view, &QWebEngineView::loadStarted, view, [onLoading] { onLoading(true); });
        connect(view, &QWebEngineView::loadFinished, view, [onLoading] { onLoading(false); });
        connect(view, &QObject::destroyed, page, [profile, page] {
            delete page;
            delete profile;
        });
        view->load(url);
        return view;
    }
};

#include "WebViewPlugin.moc"
