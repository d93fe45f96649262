#include "FeedbackPanel.h"

#include "Alerts.h"
#include "Checks.h"
#include "DateTools.h"
#include "Fields.h"
#include "Form.h"
#include "Localized.h"
#include "Session.h"
#include "Submitters.h"
#include "ui_FeedbackPanel.h"

namespace {

const QString insertOperation = QStringLiteral("INSERT");
const QString updateOperation = QStringLiteral("UPDATE");

// Of text, that the sheet is high at first.
constexpr int askedLines = 15;
constexpr int answeredLines = 26;

QString loggedUserID()
{
    return Session::getLoggedUserxJson().value_or(UserxJson()).ID;
}

}

FeedbackPanel::FeedbackPanel(QWidget *parent)
    : QDialog(parent)
    , m_ui(madeForm<Ui::FeedbackPanel>(this))
    , m_waiting(this, m_ui->loadingView2)
{
    connect(m_ui->cancelButton, &QAbstractButton::clicked, this, &FeedbackPanel::cancelAction);
    connect(m_ui->saveButton, &QAbstractButton::clicked, this, &FeedbackPanel::saveAction);
}

FeedbackPanel::~FeedbackPanel() = default;

void FeedbackPanel::presentNew()
{
    m_operation = insertOperation;
    fill({}, false);
    m_ui->submittedByLabel->clear();
    m_ui->askTimeLabel->clear();
    focusWhatIsAllowed();
    open();
}

void FeedbackPanel::present(const FeedbackJson &feedback, Submitters &submitters)
{
    m_operation = updateOperation;
    fill(feedback, feedback.AnsweredBy.toInt() != 0 || Session::isRoot());
    m_ui->submittedByLabel->setText(submitters.submitter(feedback.UserID).nameAndCompany());
    if (isAnswered())
        m_ui->answeredByLabel->setText(submitters.submitter(feedback.AnsweredBy).nameAndCompany());
    focusWhatIsAllowed();
    open();
}

void FeedbackPanel::fill(const FeedbackJson &feedback, bool showsAnswer)
{
    m_feedback = feedback;
    m_ui->questionTextView->setPlainText(feedback.Question);
    m_ui->askTimeLabel->setText(feedback.AskTime);
    m_ui->answerTextView->setPlainText(isAnswered() ? feedback.Answer : QString());
    m_ui->answeredByLabel->clear();
    m_ui->answerTimeLabel->setText(isAnswered() ? feedback.AnswerTime : QString());
    m_ui->askedRow->setVisible(m_operation == updateOperation);
    m_ui->answerBox->setVisible(showsAnswer);
    allowWhatIsAllowed();
    const int lines = showsAnswer ? answeredLines : askedLines;
    resize(width(), lines * fontMetrics().lineSpacing());
}

bool FeedbackPanel::isAnswered() const
{
    return m_feedback.AnsweredBy.toInt() != 0;
}

void FeedbackPanel::setAllStatus(bool enabled)
{
    Fields::setEditable(m_ui->questionTextView, enabled);
    Fields::setEditable(m_ui->answerTextView, enabled);
    m_ui->cancelButton->setEnabled(enabled);
    m_ui->saveButton->setEnabled(enabled);
}

// A question is its asker's until it is answered; an answer is its author's.
void FeedbackPanel::allowWhatIsAllowed()
{
    setAllStatus(true);
    if (m_operation == insertOperation)
        return;
    Fields::setEditable(m_ui->questionTextView, m_feedback.UserID == loggedUserID());
    if (!isAnswered())
        return;
    setAllStatus(false);
    m_ui->cancelButton->setEnabled(true);
    const bool isMine = m_feedback.AnsweredBy == loggedUserID();
    Fields::setEditable(m_ui->answerTextView, isMine);
    m_ui->saveButton->setEnabled(isMine);
}

void FeedbackPanel::focusWhatIsAllowed()
{
    if (!m_ui->questionTextView->isReadOnly())
        m_ui->questionTextView->setFocus();
    else if (!m_ui->answerTextView->isReadOnly())
        m_ui->answerTextView->setFocus();
    else
        m_ui->cancelButton->setFocus();
}

bool FeedbackPanel::verify()
{
    return runChecks({
        {[this] { return m_ui->questionTextView->toPlainText().isEmpty(); },
         localized("Feedback", "Question cannot be null."),
         localized("Feedback", "Please enter the Question."), m_ui->questionTextView},
    });
}

FeedbackJson FeedbackPanel::getJson() const
{
    FeedbackJson feedback = m_feedback;
    feedback.Question = m_ui->questionTextView->toPlainText();
    feedback.Answer = m_ui->answerTextView->toPlainText();
    if (m_operation == insertOperation) {
        feedback.UserID = loggedUserID();
        feedback.AskTime = MiscTool::getNow();
        feedback.AnsweredBy = QStringLiteral("0");
        feedback.AnswerTime = MiscTool::getDefaultStartTime();
    } else if (!feedback.Answer.isEmpty()) {
        feedback.AnsweredBy = loggedUserID();
        feedback.AnswerTime = MiscTool::getNow();
    }
    return feedback;
}

void FeedbackPanel::saveAction()
{
    if (!verify())
        return;
    const auto setStatus = [this](bool enabled) {
        if (enabled)
            allowWhatIsAllowed();
        else
            setAllStatus(false);
    };
    m_waiting.run(setStatus, [this] { save(); });
}

// Who does not see the answer must not take back one that came since the list was loaded.
bool FeedbackPanel::store() const
{
    FeedbackJson feedback = getJson();
    if (m_operation == insertOperation)
        return m_blSyncFeedback.insert(feedback);
    if (m_ui->answerBox->isHidden()) {
        const std::optional<FeedbackJson> current = m_blSyncFeedback.getJson(feedback.ID);
        if (!current)
            return false;
        feedback.Answer = current->Answer;
        feedback.AnsweredBy = current->AnsweredBy;
        feedback.AnswerTime = current->AnswerTime;
    }
    return m_blSyncFeedback.update(feedback);
}

void FeedbackPanel::save()
{
    const bool isSaved = store();
    m_waiting.end();
    if (isSaved) {
        accept();
        Q_EMIT saved();
    } else {
        MiscTool::showAlert(localized("Feedback", "Failed to save."),
                            localized("Feedback", "Please try again later."));
    }
}

void FeedbackPanel::cancelAction()
{
    reject();
}

void FeedbackPanel::reject()
{
    if (m_ui->cancelButton->isEnabled())
        QDialog::reject();
}
