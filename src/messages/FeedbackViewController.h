// The page of the questions that users ask: everybody sees the own ones, the root user all. One
// half of them is shown at a time, those without or with an answer, newest first. Main thread; the
// service calls block it.
#pragma once

#include "BLSync.h"
#include "Page.h"
#include "Submitters.h"
#include "Waiting.h"

#include <memory>

class FeedbackPanel;

namespace Ui {
class Feedback;
}

class FeedbackViewController : public Page
{
    Q_OBJECT

public:
    ~FeedbackViewController() override;

    [[nodiscard]] static FeedbackViewController *getViewController();

protected:
    void viewDidLoad() override;
    void viewWillAppear() override;

private:
    FeedbackViewController();

    void inits();
    void wait(const std::function<void()> &work);
    void loadData();
    void load();
    void segmentedAction();
    void deleteAction();
    void remove(const QString &id);
    void addAction();
    void updateAction();

    std::unique_ptr<Ui::Feedback> m_ui;
    Waiting m_waiting;
    BLSyncFeedback m_blSyncFeedback;
    Submitters m_submitters;
    QList<FeedbackJson> m_data;
    FeedbackPanel *m_panel; // owned by the page
};
