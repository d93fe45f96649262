// A chart: what it is called, where it stands in the gallery, how it is painted. Whoever made it
// owns it; the view that shows it lets go of it when it goes. Main thread.
#pragma once

#include "PlotTheme.h"

#include <QPointer>
#include <QSizeF>
#include <QString>

#include <optional>

class PlotView;
class QPainter;

class PlotItem
{
public:
    virtual ~PlotItem();
    PlotItem(const PlotItem &) = delete;
    PlotItem &operator=(const PlotItem &) = delete;

    [[nodiscard]] QString title() const { return m_title; }
    void setTitle(const QString &title);
    [[nodiscard]] QString section() const { return m_section; }

    // Shows the item in the view, and no longer in another, in this theme or else its own;
    // animated, its values grow from zero.
    void renderInView(PlotView *view, const std::optional<PlotTheme> &theme, bool animated);
    // The view's size has changed.
    void setFrameSize(const QSizeF &size);
    [[nodiscard]] QSizeF frameSize() const { return m_frameSize; }

    // The values have grown by this part.
    void paint(QPainter &painter, double part) const;

protected:
    PlotItem(QString title, QString section, PlotTheme theme);

    virtual void paintPlot(QPainter &painter, const PlotTheme &theme, double part) const = 0;
    // After a change of what is shown.
    void update();

private:
    void leaveView();

    QString m_title;
    QString m_section;
    PlotTheme m_ownTheme;
    PlotTheme m_theme;
    QSizeF m_frameSize;
    QPointer<PlotView> m_view;
};
