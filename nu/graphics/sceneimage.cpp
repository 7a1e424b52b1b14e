#include "nu/graphics/sceneimage.h"

#include <QBuffer>
#include <QFileInfo>
#include <QGraphicsScene>
#include <QImageWriter>
#include <QPainter>
#include <QSaveFile>
#include <QSvgGenerator>

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
    return "the image file name must end in .png or .svg";
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
    QByteArray svg;
    QBuffer buffer(&svg);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(0, 0), size));
    if (!title.isEmpty())
        generator.setTitle(title);
    QPainter painter(&generator);
    render(painter);
    painter.end();
    return svg;
}

void SceneImage::save(const QString& fileName, Format format) const
{
    // Drawn before the file is touched: a drawing that fails leaves no empty file behind.
    QByteArray content;
    if (format == Format::Svg) {
        content = toSvg();
    } else {
        const QImage image = toImage();
        if (image.isNull())
            throw WriteException();
        QBuffer buffer(&content);
        buffer.open(QIODevice::WriteOnly);
        if (!QImageWriter(&buffer, "png").write(image))
            throw WriteException();
    }
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
