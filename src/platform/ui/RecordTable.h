// A list of records: rows of texts, of which one can be selected and opened. Main thread.
#pragma once

#include <QTableWidget>

class RecordTable : public QTableWidget
{
    Q_OBJECT

public:
    explicit RecordTable(QWidget *parent = nullptr);

    // What the columns are called in any language: the data of their headers.
    void setIdentifiers(const QStringList &identifiers);
    // One text a column; none is selected then.
    void setRows(const QList<QStringList> &rows);
    [[nodiscard]] int selectedRow() const; // -1 without one

Q_SIGNALS:
    // By a double click or the Return key.
    void openRequested();

protected:
    void keyPressEvent(QKeyEvent *event) override;
};
