// The table of audio tracks, onto which files can be dropped. Main thread.
#pragma once

#include <QTableView>

class TrackTable : public QTableView
{
    Q_OBJECT

public:
    explicit TrackTable(QWidget *parent = nullptr);

Q_SIGNALS:
    // Files were dropped, in this order; of any kind.
    void filesDropped(const QStringList &paths);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};
