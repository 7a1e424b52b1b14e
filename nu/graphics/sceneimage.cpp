#include "nu/graphics/sceneimage.h"

#include "nu/graphics/svgwriter.h"

#include <QBuffer>
#include <QFileInfo>
#include <QGraphicsScene>
#include <QImageWriter>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

#include <algorithm>
#include <cmath>
#include <limits>

namespace nu {
namespace graphics {

namespace {

int pixels(double length)
{
    // Far beyond any image that could be allocated: toImage() then fails cleanly.
    const double largest = std::numeric_limits<int>::max() / 8;
    return static_cast<int>(std::clamp(std::ceil(length - 1e-9), 1.0, largest));
}

} // namespace

const char* SceneImage::UnknownFormatException::what() const noexcept
{
    return "the image file name must end in .png, .svg or .pdf";
}

const char* SceneImage::WriteException::what() const noexcept
{
    return "the image file could not be written";
}

SceneImage::Format SceneImage::formatOf(const QString& fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QLatin1String("png"))
        return Format::Png;
    if (suffix == QLatin1String("svg"))
        return Format::Svg;
    if (suffix == QLatin1String("pdf"))
        return Format::Pdf;
    throw UnknownFormatException();
}

SceneImage::SceneImage(QGraphicsScene& s, const QRectF& r)
    : scene(s)
    , source(r)
{
    setScale(1.0);
}

void SceneImage::setSize(const QSize& pixels)
{
    size = QSize(std::max(1, pixels.width()), std::max(1, pixels.height()));
}

void SceneImage::setScale(double scale)
{
    if (!(scale > 0) || !std::isfinite(scale))
        scale = 1.0;
    size = QSize(pixels(source.width() * scale), pixels(source.height() * scale));
}

void SceneImage::render(QPainter& painter) const
{
    const QRectF target(QPointF(0, 0), QSizeF(size));
    painter.fillRect(target, Qt::white);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    scene.render(&painter, target, source, Qt::KeepAspectRatio);
}

QImage SceneImage::toImage() const
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image;
    QPainter painter(&image);
    render(painter);
    painter.end();
    return image;
}

QByteArray SceneImage::toSvg() const
{
    SvgWriter writer(size);
    writer.setTitle(title);
    QPainter painter(&writer);
    render(painter);
    painter.end();
    return writer.getSvg();
}

QByteArray SceneImage::toPdf() const
{
    // A page as large as the image would be on a screen of 96 pixels to the inch, drawn in those
    // pixels, so that PDF and PNG come out alike.
    constexpr int pixelsPerInch = 96;
    QByteArray pdf;
    QBuffer buffer(&pdf);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(pixelsPerInch);
    writer.setCreator(QStringLiteral("Sorvik"));
    writer.setTitle(title);
    const QSizeF points(size.width() * 72.0 / pixelsPerInch, size.height() * 72.0 / pixelsPerInch);
    writer.setPageLayout(QPageLayout(QPageSize(points, QPageSize::Point, QString(), QPageSize::ExactMatch),
                                     QPageLayout::Portrait, QMarginsF()));
    QPainter painter;
    if (!painter.begin(&writer))
        throw WriteException();
    render(painter);
    painter.end();
    return pdf;
}

QByteArray SceneImage::toBytes(Format format) const
{
    if (format == Format::Svg)
        return toSvg();
    if (format == Format::Pdf)
        return toPdf();
    QImage image = toImage();
    if (image.isNull())
        throw WriteException();
    if (dotsPerInch > 0) {
        const int dotsPerMetre = static_cast<int>(std::lround(dotsPerInch / 0.0254));
        image.setDotsPerMeterX(dotsPerMetre);
        image.setDotsPerMeterY(dotsPerMetre);
    }
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!QImageWriter(&buffer, "png").write(image))
        throw WriteException();
    return png;
}

void SceneImage::save(const QString& fileName, Format format) const
{
    // Drawn before the file is touched: a drawing that fails leaves no empty file behind.
    const QByteArray content = toBytes(format);
    // Unbuffered, so that a short write (a full disk) shows in write()'s count.
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        throw WriteException();
    if (file.write(content) != content.size()) {
        file.cancelWriting();
        throw WriteException();
    }
    if (!file.commit())
        throw WriteException();
}

} // namespace graphics
} // namespace nu
