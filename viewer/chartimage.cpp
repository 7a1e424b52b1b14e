#include "viewer/chartimage.h"

#include "nu/graphics/baseitem.h"

#include <QBuffer>
#include <QFileInfo>
#include <QGraphicsScene>
#include <QImageWriter>
#include <QPainter>
#include <QSaveFile>
#include <QSvgGenerator>

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

const char* ChartImage::UnknownFormatException::what() const noexcept
{
    return "the image file name must end in .png or .svg";
}

const char* ChartImage::WriteException::what() const noexcept
{
    return "the image file could not be written";
}

ChartImage::ChartImage(QGraphicsItem& c)
    : chart(c)
{
}

void ChartImage::setSize(int pixels)
{
    size = std::clamp(pixels, 1, maximumSize);
}

ChartImage::Format ChartImage::formatOf(const QString& fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QLatin1String("png"))
        return Format::Png;
    if (suffix == QLatin1String("svg"))
        return Format::Svg;
    throw UnknownFormatException();
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

void ChartImage::render(QPainter& painter) const
{
    SceneLoan loan(chart);
    const QRectF target(0, 0, size, size);
    painter.fillRect(target, Qt::white);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    loan.scene()->render(&painter, target, getSourceRect(), Qt::KeepAspectRatio);
}

QImage ChartImage::toImage() const
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    render(painter);
    painter.end();
    return image;
}

QByteArray ChartImage::toSvg() const
{
    QByteArray svg;
    QBuffer buffer(&svg);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(QSize(size, size));
    generator.setViewBox(QRect(0, 0, size, size));
    generator.setTitle(QStringLiteral("Sorvik chart"));
    QPainter painter(&generator);
    render(painter);
    painter.end();
    return svg;
}

void ChartImage::save(const QString& fileName) const
{
    const Format format = formatOf(fileName);
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        throw WriteException();
    bool written = false;
    if (format == Format::Svg) {
        const QByteArray svg = toSvg();
        written = file.write(svg) == svg.size();
    } else {
        QImageWriter writer(&file, "png");
        written = writer.write(toImage());
    }
    if (!written || !file.commit())
        throw WriteException();
}

} // namespace Viewer
} // namespace Sorvik
