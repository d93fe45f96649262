#include "FeedbackViewController.h"

#include "Alerts.h"
#include "FeedbackPanel.h"
#include "Form.h"
#include "Localized.h"
#include "Session.h"
#include "ui_Feedback.h"

namespace {

enum Column { askTimeColumn, submittedByColumn, questionColumn };

// Of the user's own questions; root's are everybody's.
QString ownClause()
{
    if (Session::isRoot())
        return {};
    const UserxJson user = Session::getLoggedUserxJson().value_or(UserxJson());
    return QStringLiteral("UserID=") + user.ID + QStringLiteral(" AND ");
}

bool isAnswered(const FeedbackJson &feedback)
{
    return feedback.AnsweredBy.toInt() >= 1;
}

void tellThatItIsForbidden()
{
    MiscTool::showAlert(localized("Feedback", "Forbidden to delete."),
                        localized("Feedback", "There is critical data referenced."));
}

}

FeedbackViewController::FeedbackViewController()
    : m_ui(madeForm<Ui::Feedback>(this))
    , m_waiting(this, m_ui->loadingView)
    , m_panel(new FeedbackPanel(this))
{
    m_ui->table->setIdentifiers(
        {QStringLiteral("AskTime"), QStringLiteral("SubmittedBy"), QStringLiteral("Question")});
    constexpr int companyWidth = 160;
    QHeaderView *header = m_ui->table->horizontalHeader();
    header->setSectionResizeMode(askTimeColumn, QHeaderView::ResizeToContents);
    header->resizeSection(submittedByColumn, companyWidth);
}

FeedbackViewController::~FeedbackViewController() = default;

FeedbackViewController *FeedbackViewController::getViewController()
{
    return new FeedbackViewController;
}

void FeedbackViewController::viewDidLoad()
{
    inits();
}

void FeedbackViewController::viewWillAppear()
{
    loadData();
}

void FeedbackViewController::inits()
{
    using Self = FeedbackViewController;
    for (QPushButton *segment : {m_ui->unansweredSegment, m_ui->answeredSegment})
        connect(segment, &QAbstractButton::clicked, this, &Self::segmentedAction);
    connect(m_ui->refreshButton, &QAbstractButton::clicked, this, &Self::loadData);
    connect(m_ui->deleteButton, &QAbstractButton::clicked, this, &Self::deleteAction);
    connect(m_ui->addButton, &QAbstractButton::clicked, this, &Self::addAction);
    connect(m_ui->table, &RecordTable::openRequested, this, &Self::updateAction);
    connect(m_panel, &FeedbackPanel::saved, this, &Self::loadData);
}

void FeedbackViewController::segmentedAction()
{
    loadData();
}

// A load that is queued already shows what is chosen by then.
void FeedbackViewController::wait(const std::function<void()> &work)
{
    m_waiting.run([](bool) {}, work);
}

void FeedbackViewController::loadData()
{
    wait([this] { load(); });
}

void FeedbackViewController::load()
{
    const QString answered = m_ui->answeredSegment->isChecked() ? QStringLiteral("AnsweredBy>0")
                                                                : QStringLiteral("AnsweredBy=0");
    const auto rows =
        m_blSyncFeedback.select(ownClause() + answered + QStringLiteral(" ORDER BY AskTime DESC"));
    m_submitters.clear();
    QList<FeedbackJson> questions; // the table shows the former ones while askers are looked up
    QList<QStringList> texts;
    for (const QVariantMap &row : rows.value_or(QList<QVariantMap>())) {
        const FeedbackJson feedback = FeedbackJson::getJson(row);
        questions.append(feedback);
        texts.append(
            {feedback.AskTime, m_submitters.submitter(feedback.UserID).company, feedback.Question});
    }
    m_data = questions;
    m_ui->table->setRows(texts);
}

void FeedbackViewController::deleteAction()
{
    const int row = m_ui->table->selectedRow();
    if (row < 0)
        return;
    if (isAnswered(m_data.at(row))) {
        tellThatItIsForbidden();
        return;
    }
    Alerts::confirmOnWindow(
        this, localized("Feedback", "Are you sure to delete?"),
        localized("Feedback", "The operation is irreversible."),
        [this, id = m_data.at(row).ID] { wait([this, id] { remove(id); }); }, "Feedback");
}

// It may have been answered since the list was loaded; where that cannot be asked, it stays.
void FeedbackViewController::remove(const QString &id)
{
    const std::optional<FeedbackJson> current = m_blSyncFeedback.getJson(id);
    const bool isForbidden = current && isAnswered(*current);
    const bool isRemoved = current && !isForbidden && m_blSyncFeedback.deleteByID(id);
    m_waiting.end();
    if (isForbidden)
        tellThatItIsForbidden();
    else if (!isRemoved)
        MiscTool::showAlert(localized("Feedback", "Failed to delete."),
                            localized("Feedback", "Please try again later."));
    loadData();
}

void FeedbackViewController::addAction()
{
    m_panel->presentNew();
}

// Queued: who answered may have to be looked up, and a click ends before a service call begins.
void FeedbackViewController::updateAction()
{
    const int row = m_ui->table->selectedRow();
    if (row >= 0)
        wait([this, feedback = m_data.at(row)] { m_panel->present(feedback, m_submitters); });
}
