// The table of audio tracks, onto which files can be dropped. Main thread.
#pragma once

#include <QTableView>

#include <functional>

class TrackTable : public QTableView
{
    Q_OBJECT

public:
    using TakesFiles = std::function<bool(const QStringList &paths)>;

    explicit TrackTable(QWidget *parent = nullptr);

    // Whether files that are held over the table could be dropped now.
    void setTakesFiles(const TakesFiles &takesFiles) { m_takesFiles = takesFiles; }

Q_SIGNALS:
    // Files were dropped, in this order, some of which are taken.
    void filesDropped(const QStringList &paths);

    // The current row was double-clicked, or its key pressed: Return, Delete.
    void openRequested();
    void removeRequested();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    TakesFiles m_takesFiles;
};
