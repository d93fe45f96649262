// The page with the chart that compares an amount of last month and this month. Main thread.
#pragma once

#include "Page.h"

#include <memory>

class ColoredBarChart;

namespace Ui {
class Portal;
}

class PortalViewController : public Page
{
    Q_OBJECT

public:
    ~PortalViewController() override;

    [[nodiscard]] static PortalViewController *getViewController();

protected:
    void viewWillAppear() override;
    void resizeEvent(QResizeEvent *event) override;

private:
    PortalViewController();

    std::unique_ptr<Ui::Portal> m_ui;
    std::unique_ptr<ColoredBarChart> m_plotItem;
};
