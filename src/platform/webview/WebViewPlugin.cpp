// The web view, in a library of its own: see WebPane.
#include "WebViewFactory.h"

#include <QDesktopServices>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineView>

namespace {

// Keeps to the service's own pages; links that lead elsewhere open in the browser.
class ServicePage : public QWebEnginePage
{
public:
    using QWebEnginePage::QWebEnginePage;

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override
    {
        if (type != NavigationTypeLinkClicked || url.host() == this->url().host())
            return QWebEnginePage::acceptNavigationRequest(url, type, isMainFrame);
        QDesktopServices::openUrl(url);
        return false;
    }
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
        auto *page = new ServicePage(profile, view);
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
