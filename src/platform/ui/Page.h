// A page of the main window. Making one costs nothing but its widgets; what it shows is loaded
// when it appears. Main thread.
#pragma once

#include <QWidget>

class Page : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    // A page with a running job is kept when the others are made anew.
    [[nodiscard]] virtual bool hasRunningJob() const { return false; }

protected:
    // Before the first showing.
    virtual void viewDidLoad() {}

    // Before each showing; coming back from minimised is none.
    virtual void viewWillAppear() {}

    void showEvent(QShowEvent *event) override;

private:
    bool m_loaded = false;
};
