#include "TrackTable.h"

#include "Localized.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QUrl>

namespace {

QStringList localFiles(const QMimeData *content)
{
    QStringList paths;
    for (const QUrl &url : content->urls())
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    return paths;
}

}

TrackTable::TrackTable(QWidget *parent)
    : QTableView(parent)
{
    setAcceptDrops(true);
    connect(this, &QAbstractItemView::doubleClicked, this, &TrackTable::openRequested);
}

void TrackTable::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && currentIndex().isValid())
        Q_EMIT openRequested();
    else if (event->key() == Qt::Key_Delete)
        Q_EMIT removeRequested();
    else
        QTableView::keyPressEvent(event);
}

void TrackTable::dragEnterEvent(QDragEnterEvent *event)
{
    event->setAccepted(m_takesFiles && m_takesFiles(localFiles(event->mimeData())));
    if (event->isAccepted())
        event->setDropAction(Qt::CopyAction);
}

void TrackTable::dragMoveEvent(QDragMoveEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

// Queued: what the drop leads to may show an alert, and the program that the files come from waits
// until this has returned.
void TrackTable::dropEvent(QDropEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
    const QStringList paths = localFiles(event->mimeData());
    QMetaObject::invokeMethod(
        this, [this, paths] { Q_EMIT filesDropped(paths); }, Qt::QueuedConnection);
}

void TrackTable::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    if (!model() || model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap,
                     localized("BurnAudio", "Add audio files, or drop them here."));
}
