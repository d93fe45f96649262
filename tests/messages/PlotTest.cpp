// Charts: what they show, where its parts lie, how they come into a view.
#include "BarChartGeometry.h"
#include "ColoredBarChart.h"
#include "PlotGallery.h"
#include "PlotPainting.h"
#include "PlotView.h"
#include "PortalViewController.h"
#include "WindowTestMain.h"

#include <QPaintEngine>

#include <algorithm>
#include <set>

namespace {

// Notes how much of its values it is asked to paint.
class NotingItem : public PlotItem
{
public:
    NotingItem()
        : PlotItem(QStringLiteral("Noting"), QStringLiteral("Tests"), PlotTheme::darkGradient())
    {
    }

    mutable QList<double> parts;
    mutable QColor text;

protected:
    void paintPlot(QPainter &, const PlotTheme &theme, double part) const override
    {
        parts.append(part);
        text = theme.text;
    }
};

// Notes the texts that are painted and the heights of their letters.
class TextNotes : public QPaintDevice, QPaintEngine
{
public:
    explicit TextNotes(const QSize &size)
        : QPaintEngine(AllFeatures)
        , m_size(size)
    {
    }

    QMultiMap<QString, int> sizes;

private:
    bool begin(QPaintDevice *) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState &) override {}
    void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override {}
    void drawPath(const QPainterPath &) override {}
    void drawPolygon(const QPointF *, int, PolygonDrawMode) override {}
    void drawTextItem(const QPointF &, const QTextItem &item) override
    {
        sizes.insert(item.text(), item.font().pixelSize());
    }
    [[nodiscard]] Type type() const override { return User; }
    [[nodiscard]] QPaintEngine *paintEngine() const override
    {
        return const_cast<TextNotes *>(this);
    }
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override
    {
        constexpr int dpi = 96;
        return metric == PdmWidth ? m_size.width() : metric == PdmHeight ? m_size.height() : dpi;
    }

    QSize m_size;
};

BarChartModel portalModel()
{
    return {{QStringLiteral("Last Month"), QStringLiteral("This Month")},
            {QStringLiteral("100"), QStringLiteral("40")}};
}

}

class PlotTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ranges_data();
    void ranges();
    void colors();
    void partsKeepTheirPlaces_data();
    void partsKeepTheirPlaces();
    void ticks_data();
    void ticks();
    void linesAreSharp_data();
    void linesAreSharp();
    void textsOfOneKindAreOneSize();
    void growsFromZero();
    void followsItsView();
    void chartsRegisterThemselves();
    void portalShowsItsChart();
};

void PlotTest::ranges_data()
{
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<double>("first");
    QTest::addColumn<double>("last");
    QTest::addColumn<double>("top");

    QTest::newRow("the portal's") << QStringList{"100", "40"} << -0.41875 << 1.41875 << 110.0;
    QTest::newRow("one bar") << QStringList{"0.5"} << -0.39375 << 0.39375 << 0.55;
    QTest::newRow("none") << QStringList{} << -0.39375 << 0.39375 << 10.0;
    QTest::newRow("nothing above zero") << QStringList{"0", "-5"} << -0.41875 << 1.41875 << 10.0;
    QTest::newRow("no numbers") << QStringList{"", "inf", "nan", "x", "2"} << -0.49375 << 4.49375
                                << 2.2;
}

void PlotTest::ranges()
{
    QFETCH(const QStringList, values);
    const BarChartModel model({}, values);
    QTEST(model.categoryRange().location, "first");
    QTEST(model.categoryRange().end(), "last");
    QCOMPARE(model.valueRange().location, 0.0);
    QTEST(model.valueRange().end(), "top");
}

void PlotTest::colors()
{
    const QStringList expected{"#ff0000", "#00ff00", "#0000ff", "#ffff00", "#800080",
                               "#00ffff", "#ff8000", "#ff00ff", "#000000", "#ff0000"};
    for (int bar = 0; bar < expected.size(); ++bar)
        QCOMPARE(BarChartModel::barColor(bar).name(), expected.at(bar));
}

void PlotTest::partsKeepTheirPlaces_data()
{
    QTest::addColumn<QSizeF>("frame");
    QTest::addColumn<bool>("hasLegend");

    QTest::newRow("small") << QSizeF(300, 200) << true;
    QTest::newRow("large") << QSizeF(1200, 800) << true;
    QTest::newRow("wide") << QSizeF(1200, 200) << true;
    QTest::newRow("high") << QSizeF(240, 900) << true;
    QTest::newRow("no room for a legend") << QSizeF(120, 90) << false;
    QTest::newRow("nothing") << QSizeF(10, 10) << false;
}

// The paddings are those that were chosen, letters can be read, and nothing lies in another's
// place.
void PlotTest::partsKeepTheirPlaces()
{
    QFETCH(const QSizeF, frame);
    const BarChartModel model = portalModel();
    const BarChartGeometry geometry(model, frame);
    const double unit = geometry.titleSize();
    const QRectF area = geometry.plotArea();
    QTEST(!geometry.legend({70, 35}).isNull(), "hasLegend");
    if (area.isEmpty()) {
        QVERIFY(geometry.valueTicks().isEmpty());
        return;
    }
    QCOMPARE(area, geometry.frame().adjusted(2.5 * unit, 1.25 * unit, -unit, -unit));
    QVERIFY(geometry.labelSize() >= 7 && (frame.height() < 200 || geometry.labelSize() >= 9));

    const QRectF lastMonth = geometry.bar(0);
    const QRectF thisMonth = geometry.bar(1);
    QVERIFY(area.contains(lastMonth) && area.contains(thisMonth));
    QVERIFY(!lastMonth.intersects(thisMonth));
    QCOMPARE(lastMonth.width() / (geometry.x(1) - geometry.x(0)), 0.75);
    QCOMPARE(lastMonth.bottom(), area.bottom());
    QCOMPARE(lastMonth.height() / area.height(), 100 / 110.0);
    QCOMPARE(thisMonth.height() / lastMonth.height(), 0.4);
    QCOMPARE(geometry.bar(0, 0.5).height(), lastMonth.height() / 2);
    QCOMPARE(geometry.bar(0, 0).height(), 0.0);
    QCOMPARE(area.bottom() - geometry.barLabelArea(0).bottom(), 0.375 * unit);
    QCOMPARE(geometry.barLabelArea(0).center().x(), lastMonth.center().x());

    QCOMPARE(area.left() - geometry.axisTitleArea().right(), 1.25 * unit);
    QVERIFY(geometry.frame().contains(geometry.axisTitleArea()));
    QRectF below;
    for (const BarChartGeometry::Tick &tick : geometry.valueTicks()) {
        if (!tick.isMajor)
            continue;
        const QRectF label = geometry.tickLabelArea(tick);
        QVERIFY(geometry.frame().contains(label));
        QVERIFY(!label.intersects(geometry.axisTitleArea()) && !label.intersects(area));
        QVERIFY(below.isNull() || label.bottom() <= below.top() + 1e-6);
        below = label;
    }
}

void PlotTest::ticks_data()
{
    QTest::addColumn<QString>("largest");
    QTest::addColumn<int>("height");
    QTest::addColumn<double>("interval");
    QTest::addColumn<double>("last");

    QTest::newRow("every ten up to the end") << "100" << 200 << 10.0 << 110.0;
    QTest::newRow("large frame") << "100" << 800 << 10.0 << 110.0;
    QTest::newRow("no room for each") << "100" << 120 << 20.0 << 100.0;
    QTest::newRow("large values") << "123456" << 400 << 10000.0 << 130000.0;
    QTest::newRow("endless values") << "1e308" << 400 << 5e298 << 1.1e300;
    QTest::newRow("small values") << "1" << 400 << 10.0 << 0.0;
}

void PlotTest::ticks()
{
    QFETCH(const QString, largest);
    QFETCH(const int, height);
    const BarChartGeometry geometry({{}, {largest}}, QSizeF(1.5 * height, height));
    QList<double> major;
    for (const BarChartGeometry::Tick &tick : geometry.valueTicks())
        if (tick.isMajor)
            major.append(tick.value);
    QCOMPARE(major.first(), 0.0);
    QTEST(major.last(), "last");
    if (major.size() > 1)
        QTEST(major.at(1), "interval");
}

void PlotTest::linesAreSharp_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("thickness");

    QTest::newRow("one") << 1.0 << 1;
    QTest::newRow("between") << 1.5 << 2;
    QTest::newRow("a little more") << 1.25 << 1;
    QTest::newRow("two") << 2.0 << 2;
}

// Wherever the view begins in its window: no pixel is covered in part.
void PlotTest::linesAreSharp()
{
    QFETCH(const double, scale);
    QFETCH(const int, thickness);
    constexpr int size = 60;
    for (const QPointF offset : {QPointF(0, 0), QPointF(7, 3), QPointF(2.3, 1.9)}) {
        QImage image(size, size, QImage::Format_RGB32);
        image.fill(Qt::black);
        image.setDevicePixelRatio(scale);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(offset);
        PlotPainting::drawHorizontal(painter, -size, size, 11.2, Qt::white);
        PlotPainting::drawVertical(painter, 13.7, -size, size, Qt::white);
        painter.end();
        int covered = 0;
        for (int i = 0; i < size * size; ++i) {
            const QRgb color = image.pixel(i % size, i / size);
            QVERIFY(color == qRgb(0, 0, 0) || color == qRgb(255, 255, 255));
            covered += int(color == qRgb(255, 255, 255));
        }
        QCOMPARE(covered, thickness * (2 * size - thickness));
    }
}

// A long one makes the others as small, and is then not cut off.
void PlotTest::textsOfOneKindAreOneSize()
{
    const QStringList titles{"Last", "This month, from its first day"};
    ColoredBarChart chart;
    chart.setTitleArray(titles);
    chart.setValueArray({"130000", "40"});
    for (const QSize frame : {QSize(600, 400), QSize(1200, 800)}) {
        chart.setFrameSize(frame);
        TextNotes notes(frame);
        QPainter painter(&notes);
        chart.paint(painter, 1);
        painter.end();
        std::set<int> tickSizes;
        for (auto text = notes.sizes.cbegin(); text != notes.sizes.cend(); ++text)
            if (text.key().front().isDigit())
                tickSizes.insert(text.value());
        QCOMPARE(tickSizes.size(), 1U);
        QVERIFY(notes.sizes.contains(QStringLiteral("130k")));
        const QList<int> sizes = notes.sizes.values(titles.first()); // in the legend, at the bar
        QCOMPARE(sizes.size(), 2);
        QCOMPARE(notes.sizes.values(titles.last()), sizes);
    }
}

void PlotTest::growsFromZero()
{
    NotingItem item;
    PlotView view;
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    item.renderInView(&view, {}, true);
    QTRY_VERIFY(!item.parts.isEmpty() && item.parts.last() == 1.0);
    QVERIFY(item.parts.first() < 1.0);
    QVERIFY(std::ranges::is_sorted(item.parts));

    PlotTheme theme = PlotTheme::darkGradient();
    theme.text = Qt::red;
    item.parts.clear();
    item.renderInView(&view, theme, false);
    QTRY_COMPARE(item.parts, QList<double>{1.0});
    QCOMPARE(item.text, QColor(Qt::red));
}

void PlotTest::followsItsView()
{
    auto item = std::make_unique<NotingItem>();
    PlotView former;
    PlotView view;
    item->renderInView(&former, {}, true);
    item->renderInView(&view, {}, true);
    QVERIFY(!former.plotItem() && view.plotItem() == item.get());
    item.reset();
    QVERIFY(!view.plotItem());
    view.grab(); // paints nothing, and does not crash
}

void PlotTest::chartsRegisterThemselves()
{
    PlotGallery &gallery = PlotGallery::instance();
    const QString title = QStringLiteral("Colored Bar Chart");
    QCOMPARE(gallery.sections(), QStringList{QStringLiteral("Bar Plots")});
    QCOMPARE(gallery.titles(QStringLiteral("Bar Plots")), QStringList{title});
    QVERIFY(!gallery.registerPlotItem(&ColoredBarChart::make));
    QVERIFY(dynamic_cast<ColoredBarChart *>(gallery.plotItem(title).get()));
    QVERIFY(!gallery.plotItem(QStringLiteral("Pie")));
}

void PlotTest::portalShowsItsChart()
{
    const std::unique_ptr<Page> page(PortalViewController::getViewController());
    const auto *view = page->findChild<PlotView *>(QStringLiteral("hostingView"));
    QVERIFY(!view->plotItem());
    page->resize(300, 200);
    page->show();
    const auto *chart = dynamic_cast<const ColoredBarChart *>(view->plotItem());
    QVERIFY(chart);
    QCOMPARE(chart->title(), QStringLiteral("Portal"));
    QCOMPARE(chart->plotData(), (QList<double>{100, 40}));
    QCOMPARE(chart->frameSize(), QSizeF(300, 200));
    page->resize(1200, 800);
    QTRY_COMPARE(chart->frameSize(), QSizeF(1200, 800));
    page->hide();
    page->show();
    QVERIFY(view->plotItem());
}

MAPLORN_WINDOW_TEST_MAIN(PlotTest)
#include "PlotTest.moc"
