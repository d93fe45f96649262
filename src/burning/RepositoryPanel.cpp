#include "RepositoryPanel.h"

#include "Alerts.h"
#include "Background.h"
#include "FormatTools.h"
#include "Localized.h"
#include "ui_Repository.h"

#include <algorithm>

namespace {

enum Column { nameColumn, sizeColumn };

}

RepositoryPanel::RepositoryPanel(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::Repository>())
{
    m_ui->setupUi(this);
    setWindowModality(Qt::WindowModal);
    m_ui->repositoryTable->horizontalHeader()->setSectionResizeMode(nameColumn,
                                                                    QHeaderView::Stretch);
    m_ui->repositoryTable->horizontalHeader()->setSectionResizeMode(sizeColumn,
                                                                    QHeaderView::ResizeToContents);
    connect(m_ui->foldersSegment, &QAbstractButton::clicked, this, &RepositoryPanel::changeAction);
    connect(m_ui->imagesSegment, &QAbstractButton::clicked, this, &RepositoryPanel::changeAction);
    connect(m_ui->repositoryDeleteButton, &QAbstractButton::clicked, this,
            &RepositoryPanel::repositoryDeleteAction);
    connect(m_ui->repositoryCancelButton, &QAbstractButton::clicked, this,
            &RepositoryPanel::repositoryCancelAction);
    connect(m_ui->selectButton, &QAbstractButton::clicked, this,
            &RepositoryPanel::repositorySelectAction);
    connect(m_ui->repositoryTable, &QTableWidget::cellDoubleClicked, this,
            &RepositoryPanel::repositorySelectAction);
}

RepositoryPanel::~RepositoryPanel() = default;

DataRepository::Kind RepositoryPanel::kind() const
{
    return m_ui->imagesSegment->isChecked() ? DataRepository::Kind::Image
                                            : DataRepository::Kind::Folder;
}

int RepositoryPanel::selectedRow() const
{
    const QModelIndexList rows = m_ui->repositoryTable->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void RepositoryPanel::changeAction()
{
    m_repositoryData = DataRepository::names(kind());
    reload();
}

int RepositoryPanel::numberOfRowsInTableView() const
{
    return static_cast<int>(m_repositoryData.size());
}

void RepositoryPanel::reload()
{
    QTableWidget *table = m_ui->repositoryTable;
    table->clearSelection();
    table->setRowCount(numberOfRowsInTableView());
    for (int row = 0; row < table->rowCount(); ++row) {
        table->setItem(row, nameColumn, new QTableWidgetItem(m_repositoryData.at(row)));
        auto *size = new QTableWidgetItem(QStringLiteral("…"));
        size->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        table->setItem(row, sizeColumn, size);
    }
    measure();
}

// All sizes of this content, once; those of an earlier content are not waited for.
void RepositoryPanel::measure()
{
    m_measuring.request_stop();
    const auto work = [kind = kind(), names = m_repositoryData](const std::stop_token &stop) {
        QList<qint64> sizes;
        for (const QString &name : names)
            sizes.append(DataRepository::sizeOf(kind, name, stop));
        return stop.stop_requested() ? QList<qint64>() : sizes;
    };
    m_measuring =
        inBackground(this, work, [this, names = m_repositoryData](const QList<qint64> &sizes) {
            if (names == m_repositoryData && sizes.size() == names.size())
                showSizes(sizes);
        });
}

void RepositoryPanel::showSizes(const QList<qint64> &sizes)
{
    for (int row = 0; row < numberOfRowsInTableView(); ++row)
        m_ui->repositoryTable->item(row, sizeColumn)
            ->setText(MiscTool::convertBytes(sizes.at(row)));
}

void RepositoryPanel::repositoryDeleteAction()
{
    const int row = selectedRow();
    if (row < 0
        || !Alerts::confirm(this, localized("BurnData", "Are you sure to delete?"),
                            localized("BurnData", "The operation is irreversible.")))
        return;
    Q_EMIT deleting(kind());
    const QString name = m_repositoryData.at(row);
    m_ui->repositoryDeleteButton->setEnabled(false);
    runJobInBackground(
        this,
        [kind = kind(), name](const std::stop_token &) {
            return DataRepository::remove(kind, name);
        },
        [this, kind = kind(), name](bool removed) { deleted(kind, name, removed); });
}

void RepositoryPanel::deleted(DataRepository::Kind deletedKind, const QString &name, bool removed)
{
    m_ui->repositoryDeleteButton->setEnabled(true);
    if (!removed || deletedKind != kind())
        return;
    m_repositoryData.removeOne(name);
    reload();
}

void RepositoryPanel::repositorySelectAction()
{
    const int row = selectedRow();
    if (row < 0)
        return;
    Q_EMIT selected(kind(), DataRepository::pathOf(kind(), m_repositoryData.at(row)));
    accept();
}

void RepositoryPanel::repositoryCancelAction()
{
    reject();
}
