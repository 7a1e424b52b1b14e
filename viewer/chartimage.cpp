#include "viewer/chartimage.h"

#include "nu/graphics/baseitem.h"
#include "nu/graphics/sceneimage.h"

#include <QGraphicsScene>

#include <algorithm>

namespace Sorvik {
namespace Viewer {

namespace {

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

} // namespace

ChartImage::ChartImage(QGraphicsItem& c)
    : chart(c)
{
}

void ChartImage::setSize(int pixels)
{
    size = std::clamp(pixels, 1, maximumSize);
}

QRectF ChartImage::getSourceRect() const
{
    QRectF area;
    if (const auto* item = dynamic_cast<const nu::graphics::BaseItem*>(&chart))
        area = item->getAreaRect();
    else
        area = chart.boundingRect() | chart.childrenBoundingRect();
    area = chart.mapRectToScene(area);
    // A square about the chart's middle with a small margin, so that a round chart fills the
    // square image evenly.
    const double side = std::max(area.width(), area.height()) * 1.02;
    QRectF square(0, 0, side, side);
    square.moveCenter(area.center());
    return square;
}

void ChartImage::draw(const std::function<void(const nu::graphics::SceneImage&)>& use) const
{
    SceneLoan loan(chart);
    nu::graphics::SceneImage image(*loan.scene(), getSourceRect());
    image.setSize(QSize(size, size));
    image.setTitle(QStringLiteral("Sorvik chart"));
    use(image);
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

void ChartImage::save(const QString& fileName) const
{
    const auto format = nu::graphics::SceneImage::formatOf(fileName);
    draw([&](const nu::graphics::SceneImage& image) { image.save(fileName, format); });
}

} // namespace Viewer
} // namespace Sorvik
