#include "RecordTable.h"

#include <QHeaderView>
#include <QKeyEvent>

RecordTable::RecordTable(QWidget *parent)
    : QTableWidget(parent)
{
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    verticalHeader()->hide();
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setStretchLastSection(true);
    connect(this, &QTableWidget::cellDoubleClicked, this, &RecordTable::openRequested);
}

void RecordTable::setIdentifiers(const QStringList &identifiers)
{
    for (int column = 0; column < columnCount(); ++column)
        horizontalHeaderItem(column)->setData(Qt::UserRole, identifiers.value(column));
}

void RecordTable::setRows(const QList<QStringList> &rows)
{
    clearContents();
    setCurrentItem(nullptr);
    setRowCount(static_cast<int>(rows.size()));
    for (int row = 0; row < rowCount(); ++row)
        for (int column = 0; column < columnCount(); ++column)
            // A cell has one line.
            setItem(row, column,
                    new QTableWidgetItem(rows.at(row).value(column).replace(u'\n', u' ')));
}

int RecordTable::selectedRow() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void RecordTable::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && selectedRow() >= 0)
        Q_EMIT openRequested();
    else
        QTableWidget::keyPressEvent(event);
}
