// The widget that shows a chart, growing from zero when it is new. Main thread.
#pragma once

#include <QVariantAnimation>
#include <QWidget>

class PlotItem;

class PlotView : public QWidget
{
    Q_OBJECT

public:
    explicit PlotView(QWidget *parent = nullptr);

    [[nodiscard]] const PlotItem *plotItem() const { return m_plotItem; }
    // Null shows none.
    void setPlotItem(const PlotItem *item, bool animated);

    [[nodiscard]] QSize sizeHint() const override { return {600, 400}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {240, 160}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const PlotItem *m_plotItem = nullptr;
    QVariantAnimation m_growth;
};
