#pragma once

#include <QByteArray>
#include <QPaintDevice>
#include <QSize>
#include <QString>

#include <memory>

class QBrush;
class QPainter;

namespace nu {
namespace graphics {

class PlacedText;

// A paint device that writes what is painted on it as an SVG document, of the given size in
// pixels with the same view box. Unlike Qt's own generator it keeps texts as texts, bent ones
// as <textPath> along their circle, and lets an item gather what it paints in a group with a
// <title>, which browsers show as a tool tip. Shapes are written in the image's coordinates;
// brushes that SVG has no plain form for (patterns, gradients) reach it as images, which the
// painter makes of them. Clipping is left to the view box.
class SvgWriter : public QPaintDevice
{
public:
    explicit SvgWriter(const QSize& size);
    ~SvgWriter() override;
    SvgWriter(const SvgWriter&) = delete;
    SvgWriter& operator=(const SvgWriter&) = delete;

    // The document's own title.
    void setTitle(const QString& title) { this->title = title; }
    // The whole document, once the painter has ended.
    QByteArray getSvg() const;

    QPaintEngine* paintEngine() const override;

    // Whether the painter paints on an SvgWriter.
    static bool isWriting(QPainter& painter) { return of(painter) != nullptr; }
    // When the painter paints on an SvgWriter, writes the text as text in the brush's colour
    // and returns true; otherwise does nothing and returns false.
    static bool drawText(QPainter& painter, const PlacedText& text, const QBrush& brush);

    // While it lives, what is painted goes into one group with this title (nothing happens on
    // other devices or with an empty title).
    class Group
    {
    public:
        Group(QPainter& painter, const QString& title);
        ~Group();
        Group(const Group&) = delete;
        Group& operator=(const Group&) = delete;

    private:
        SvgWriter* writer = nullptr;
    };

    // Text made safe for XML character data and attribute values.
    static QByteArray escaped(const QString& text);

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    class Engine;
    static SvgWriter* of(QPainter& painter);

    std::unique_ptr<Engine> engine;
    QSize size;
    QString title;
};

} // namespace graphics
} // namespace nu
