// A web page in a window. The view is made after the window's first painting; a page that does not
// load leaves it empty. Main thread.
#pragma once

#include <QUrl>
#include <QWidget>

class QLabel;
class QProgressBar;
class QVBoxLayout;

class WebPane : public QWidget
{
    Q_OBJECT

public:
    explicit WebPane(QWidget *parent = nullptr);

    // Shows the page once this has been painted.
    void open(const QUrl &url);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void makeView();
    void setLoading(bool loading);

    QUrl m_url;
    QVBoxLayout *m_layout;
    QProgressBar *m_loadingView;
    QLabel *m_refusal; // in the view's place where it cannot be shown
    bool m_isMade = false;
};
