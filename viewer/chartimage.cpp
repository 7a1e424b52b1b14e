#include "viewer/chartimage.h"

#include "nu/graphics/baseitem.h"
#include "nu/graphics/placedtext.h"
#include "nu/graphics/sceneimage.h"
#include "viewer/chartgrid.h"
#include "viewer/piechartitem.h"

#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Sorvik {
namespace Viewer {

namespace {

// The legend's size relative to the chart's labels.
constexpr double legendScale = 0.8;
// The title's size relative to the chart's labels, and its gap from the chart in its heights.
constexpr double titleScale = 1.6;
constexpr double titleGap = 0.6;

// Lends an item to a private scene for the time of a drawing; the item leaves the scene before
// the scene, which would otherwise delete it, is destroyed.
class SceneLoan
{
public:
    explicit SceneLoan(QGraphicsItem& i)
        : item(i)
    {
        if (item.scene())
            return;
        own = std::make_unique<QGraphicsScene>();
        // One drawing of everything: an index would cost more to build than it saves.
        own->setItemIndexMethod(QGraphicsScene::NoIndex);
        own->addItem(&item);
    }
    ~SceneLoan()
    {
        if (own)
            own->removeItem(&item);
    }
    SceneLoan(const SceneLoan&) = delete;
    SceneLoan& operator=(const SceneLoan&) = delete;

    QGraphicsScene* scene() const { return item.scene(); }

private:
    QGraphicsItem& item;
    std::unique_ptr<QGraphicsScene> own;
};

// A line of text whose box is its glyphs' own, so that the margins round it come out even;
// vector images keep it as text.
class TextItem : public QGraphicsItem
{
public:
    TextItem(const QString& text, const QFont& font)
        : placed(nu::graphics::PlacedText::straight(text, font, QTransform()))
        , bounds(placed.getPath().boundingRect())
    {
    }
    QRectF boundingRect() const override { return bounds; }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override
    {
        placed.draw(*painter, QPen(Qt::NoPen), QBrush(Qt::black));
    }

private:
    nu::graphics::PlacedText placed;
    QRectF bounds;
};

} // namespace

ChartImage::ChartImage(QGraphicsItem& c)
    : chart(c)
{
}

void ChartImage::setSize(int pixels)
{
    size = std::clamp(pixels, 1, maximumSize);
}

QRectF ChartImage::getChartRect() const
{
    // A viewer chart knows the exact area of its slices and labels; bounding boxes of turned
    // items would grow with every ring.
    if (const auto* slices = dynamic_cast<const PieChartItem*>(&chart))
        return slices->getChartRect();
    if (const auto* grid = dynamic_cast<const ChartGrid*>(&chart))
        return grid->getChartRect();
    QRectF area;
    if (const auto* item = dynamic_cast<const nu::graphics::BaseItem*>(&chart))
        area = item->getAreaRect();
    else
        area = chart.boundingRect() | chart.childrenBoundingRect();
    return chart.mapRectToScene(area);
}

void ChartImage::draw(const std::function<void(const nu::graphics::SceneImage&)>& use) const
{
    SceneLoan loan(chart);
    QRectF area = getChartRect();
    // Labels are laid out for the size they are drawn at, and may not use all the room they
    // were given: measured again at about the final scale, the margins come out even.
    // The labels are laid out once for that scale, measured, and drawn as measured.
    auto* slices = dynamic_cast<PieChartItem*>(&chart);
    auto* grid = dynamic_cast<ChartGrid*>(&chart);
    if ((slices || grid) && !area.isEmpty()) {
        const QSizeF key = legend.getSize() * legendScale;
        const double width = legend.isEmpty() ? area.width() : area.width() * 1.1 + key.width();
        const double longer = std::max({width, area.height(), key.height()}) * 1.06;
        if (slices) {
            slices->setLabelPixelsPerUnit(size / longer);
            area = slices->getDrawnRect(size / longer);
        } else {
            // Fitted to what it draws, the grid shrinks: it is measured once more at the new scale.
            grid->setLabelPixelsPerUnit(size / longer);
            area = grid->getDrawnRect(size / longer);
            const double again = std::max({legend.isEmpty() ? area.width() : area.width() * 1.1 + key.width(),
                                           area.height(), key.height()})
                                 * 1.06;
            grid->setLabelPixelsPerUnit(size / again);
            area = grid->getDrawnRect(size / again);
        }
    }
    const auto release = [slices, grid] {
        if (slices)
            slices->setLabelPixelsPerUnit(0);
        if (grid)
            grid->setLabelPixelsPerUnit(0);
    };
    // The title is lettered as the (first) chart's labels are.
    const PieChartItem* lettering = slices ? slices : (grid ? grid->chartAt(0) : nullptr);
    std::vector<std::unique_ptr<QGraphicsItem>> extras;
    std::unique_ptr<QGraphicsItem> key;
    if (!legend.isEmpty()) {
        // Beside the chart, centred on its height, a gap of a tenth of the chart's width away.
        key = legend.createItem();
        // A little smaller than the labels, and never taller than the chart.
        const QSizeF natural = legend.getSize();
        const double scale = std::min(legendScale, area.height() / natural.height());
        key->setScale(scale);
        const QSizeF room = natural * scale;
        key->setPos(area.right() + area.width() * 0.1, area.center().y() - room.height() / 2);
        loan.scene()->addItem(key.get());
        area |= QRectF(key->pos(), room);
        extras.push_back(std::move(key));
    }
    if (!title.isEmpty() && !area.isEmpty()) {
        // Centred above everything, in bold, never wider than what it stands over.
        QFont font = lettering ? lettering->getText().font : QFont();
        font.setBold(true);
        auto heading = std::make_unique<TextItem>(title, font);
        const QRectF natural = heading->boundingRect();
        const double scale = std::min(titleScale, area.width() / natural.width());
        heading->setScale(scale);
        const QSizeF room = natural.size() * scale;
        const QPointF topLeft(area.center().x() - room.width() / 2, area.top() - room.height() * (1 + titleGap));
        heading->setPos(topLeft - natural.topLeft() * scale);
        loan.scene()->addItem(heading.get());
        area |= QRectF(topLeft, room);
        extras.push_back(std::move(heading));
    }
    // The same margin on every side, so the image takes the drawing's proportions.
    const double margin = std::max(area.width(), area.height()) * 0.03;
    const QRectF source = area.adjusted(-margin, -margin, margin, margin);
    const double longer = std::max(source.width(), source.height());
    const auto side = [&](double length) { return std::max(1, static_cast<int>(std::lround(size * length / longer))); };
    nu::graphics::SceneImage image(*loan.scene(), source);
    image.setSize(QSize(side(source.width()), side(source.height())));
    image.setTitle(title.isEmpty() ? QStringLiteral("Sorvik chart") : title);
    image.setDotsPerInch(dotsPerInch);
    const auto takeOff = [&] {
        for (const auto& item : extras)
            loan.scene()->removeItem(item.get());
        release();
    };
    try {
        use(image);
    } catch (...) {
        takeOff();
        throw;
    }
    takeOff();
}

QImage ChartImage::toImage() const
{
    QImage result;
    draw([&result](const nu::graphics::SceneImage& image) { result = image.toImage(); });
    return result;
}

QByteArray ChartImage::toSvg() const
{
    QByteArray result;
    draw([&result](const nu::graphics::SceneImage& image) { result = image.toSvg(); });
    return result;
}

QByteArray ChartImage::toPdf() const
{
    QByteArray result;
    draw([&result](const nu::graphics::SceneImage& image) { result = image.toPdf(); });
    return result;
}

void ChartImage::save(const QString& fileName) const
{
    const auto format = nu::graphics::SceneImage::formatOf(fileName);
    draw([&](const nu::graphics::SceneImage& image) { image.save(fileName, format); });
}

} // namespace Viewer
} // namespace Sorvik
