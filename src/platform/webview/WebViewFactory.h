// What the plug-in with the web engine offers. Main thread.
#pragma once

#include <QtPlugin>

#include <functional>

class QUrl;
class QWidget;

class WebViewFactory
{
public:
    virtual ~WebViewFactory() = default;

    // A view that shows the page, owned by its parent. onLoading is called with true when a
    // request begins and with false when it has ended, however that went.
    [[nodiscard]] virtual QWidget *
    create(const QUrl &url, const std::function<void(bool)> &onLoading, QWidget *parent) = 0;
};

#define WebViewFactory_iid "maplorn-disc.WebViewFactory"
Q_DECLARE_INTERFACE(WebViewFactory, WebViewFactory_iid)
