// The first module: the service's own page for its users. Main thread.
#pragma once

#include "Page.h"

#include <memory>

namespace Ui {
class Home;
}

class HomeViewController : public Page
{
    Q_OBJECT

public:
    ~HomeViewController() override;

    [[nodiscard]] static HomeViewController *getViewController();

protected:
    void viewDidLoad() override;

private:
    HomeViewController();

    std::unique_ptr<Ui::Home> m_ui;
};
