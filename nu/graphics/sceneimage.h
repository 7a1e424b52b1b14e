#pragma once

#include <QByteArray>
#include <QImage>
#include <QRectF>
#include <QSize>
#include <QString>

#include <exception>

class QGraphicsScene;
class QPainter;

namespace nu {
namespace graphics {

// Draws a region of a scene into an image on a white background: a PNG of a given number of
// pixels, an SVG with the same view box, or a PDF page of that size at 96 pixels to the inch.
// The region is fitted into the image keeping its proportions. SVG and PDF keep texts as texts.
// A file is written completely or not at all.
class SceneImage
{
public:
    enum class Format { Png, Svg, Pdf };

    class UnknownFormatException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };
    class WriteException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };

    // The format a file name asks for by its extension (.png, .svg, .pdf, any case); throws
    // UnknownFormatException for any other.
    static Format formatOf(const QString& fileName);

    SceneImage(QGraphicsScene& scene, const QRectF& source);

    QRectF getSource() const { return source; }
    // At least one pixel each way.
    void setSize(const QSize& pixels);
    QSize getSize() const { return size; }
    // Pixels per scene unit: the image becomes as large as the region times the scale, rounded
    // up. A scale that is not above 0 is taken as 1.
    void setScale(double scale);
    // The document's title, which SVG and PDF files carry.
    void setTitle(const QString& title) { this->title = title; }
    // Pixels per inch written into a PNG (none when not above 0).
    void setDotsPerInch(double dpi) { dotsPerInch = dpi; }

    // A null image when there is not enough memory for one of this size.
    QImage toImage() const;
    QByteArray toSvg() const;
    QByteArray toPdf() const;
    // The file's content in the format; throws WriteException when the image cannot be made.
    QByteArray toBytes(Format format) const;
    // Throws WriteException when the file cannot be written or the image not be made; a file of
    // that name is then left as it was.
    void save(const QString& fileName, Format format) const;

private:
    void render(QPainter& painter) const;

    QGraphicsScene& scene;
    QRectF source;
    QSize size{1, 1};
    QString title;
    double dotsPerInch = 0;
};

} // namespace graphics
} // namespace nu
