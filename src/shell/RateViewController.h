// The module that leads to the program's web page, to be rated there. Main thread.
#pragma once

#include "Page.h"

#include <memory>

namespace Ui {
class Rate;
}

class RateViewController : public Page
{
    Q_OBJECT

public:
    ~RateViewController() override;

    [[nodiscard]] static RateViewController *getViewController();

protected:
    void viewWillAppear() override;

private:
    RateViewController();

    static void rateAction();

    std::unique_ptr<Ui::Rate> m_ui;
};
