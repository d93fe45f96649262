// The sheet to ask a question, to read one with its answer, to change it, or to answer it. Main
// thread; the service calls block it.
#pragma once

#include "BLSync.h"
#include "Waiting.h"

#include <QDialog>

#include <memory>

class Submitters;

namespace Ui {
class FeedbackPanel;
}

class FeedbackPanel : public QDialog
{
    Q_OBJECT

public:
    explicit FeedbackPanel(QWidget *parent);
    ~FeedbackPanel() override;

    // Opens the sheet for a question to be asked.
    void presentNew();
    // Opens the sheet with a question that was asked. May ask the service who answered.
    void present(const FeedbackJson &feedback, Submitters &submitters);

    // Not while it is being saved.
    void reject() override;

Q_SIGNALS:
    // The service has taken what was entered; the sheet has gone.
    void saved();

private:
    void fill(const FeedbackJson &feedback, bool showsAnswer);
    void setAllStatus(bool enabled);
    void allowWhatIsAllowed();
    void focusWhatIsAllowed();
    [[nodiscard]] bool isAnswered() const;
    [[nodiscard]] bool verify();
    [[nodiscard]] FeedbackJson getJson() const;
    [[nodiscard]] bool store() const;
    void saveAction();
    void save();
    void cancelAction();

    std::unique_ptr<Ui::FeedbackPanel> m_ui;
    Waiting m_waiting;
    BLSyncFeedback m_blSyncFeedback;
    QString m_operation;     // "INSERT" or "UPDATE"
    FeedbackJson m_feedback; // that is updated
};
