#include "nu/graphics/svgwriter.h"

#include "nu/graphics/placedtext.h"

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <QImageWriter>
#include <QPaintEngine>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <cmath>
#include <limits>

namespace nu {
namespace graphics {

namespace {

// Coordinates in the image's pixels: a hundredth is below what any viewer shows.
void appendNumber(QByteArray& out, double value)
{
    if (!std::isfinite(value))
        value = 0;
    double rounded = std::round(value * 100) / 100;
    if (rounded == 0)
        rounded = 0;
    if (rounded == std::floor(rounded) && std::abs(rounded) < 1e15) {
        out += QByteArray::number(static_cast<qint64>(rounded));
        return;
    }
    QByteArray text = QByteArray::number(rounded, 'f', 2);
    while (text.endsWith('0'))
        text.chop(1);
    out += text;
}

void appendPoint(QByteArray& out, const QPointF& point)
{
    appendNumber(out, point.x());
    out += ' ';
    appendNumber(out, point.y());
}

QByteArray matrix(const QTransform& t)
{
    QByteArray out = " transform=\"matrix(";
    const double values[] = {t.m11(), t.m12(), t.m21(), t.m22(), t.dx(), t.dy()};
    for (int i = 0; i < 6; ++i) {
        if (i > 0)
            out += ' ';
        const double v = std::isfinite(values[i]) ? values[i] : 0.0;
        out += QByteArray::number(std::abs(v) < 1e-12 ? 0.0 : v, 'g', i < 4 ? 8 : 10);
    }
    out += ")\"";
    return out;
}

QByteArray colour(const QColor& c)
{
    return c.name(QColor::HexRgb).toLatin1();
}

void appendOpacity(QByteArray& out, const char* name, double opacity)
{
    if (opacity >= 1.0)
        return;
    out += ' ';
    out += name;
    out += "=\"";
    out += QByteArray::number(std::max(0.0, opacity), 'g', 3);
    out += '"';
}

// The outline in the image's coordinates; a subpath that ends where it began is closed.
QByteArray pathData(const QPainterPath& path, const QTransform& transform)
{
    QByteArray d;
    d.reserve(path.elementCount() * 14);
    QPointF subpathStart;
    const int n = path.elementCount();
    for (int i = 0; i < n; ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        const QPointF local(e.x, e.y);
        switch (e.type) {
        case QPainterPath::MoveToElement:
            d += 'M';
            appendPoint(d, transform.map(local));
            subpathStart = local;
            break;
        case QPainterPath::LineToElement: {
            const bool last = i + 1 == n || path.elementAt(i + 1).type == QPainterPath::MoveToElement;
            if (last && local == subpathStart) {
                d += 'Z';
            } else {
                d += 'L';
                appendPoint(d, transform.map(local));
            }
            break;
        }
        case QPainterPath::CurveToElement:
            d += 'C';
            appendPoint(d, transform.map(local));
            for (int k = 1; k <= 2 && i + 1 < n; ++k) {
                const QPainterPath::Element c = path.elementAt(++i);
                d += ' ';
                appendPoint(d, transform.map(QPointF(c.x, c.y)));
            }
            break;
        case QPainterPath::CurveToDataElement:
            // Always taken with the curve it belongs to.
            break;
        }
    }
    return d;
}

double scaleOf(const QTransform& t)
{
    return std::sqrt(std::abs(t.determinant()));
}

double pixelSize(const QFont& font)
{
    return font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * PlacedText::layoutDotsPerInch() / 72.0;
}

QByteArray fontAttributes(const QFont& font, double size)
{
    // A viewer without the font falls back to a sans-serif one rather than to a serif default.
    QString family = font.family();
    family.remove(QLatin1Char('\''));
    QByteArray out = " font-family=\"'" + SvgWriter::escaped(family) + "', sans-serif\" font-size=\"";
    out += QByteArray::number(size, 'g', 6);
    out += '"';
    if (font.weight() >= QFont::DemiBold)
        out += " font-weight=\"bold\"";
    if (font.style() != QFont::StyleNormal)
        out += " font-style=\"italic\"";
    return out;
}

} // namespace

class SvgWriter::Engine : public QPaintEngine
{
public:
    Engine()
        : QPaintEngine(QPaintEngine::PrimitiveTransform | QPaintEngine::PixmapTransform | QPaintEngine::AlphaBlend
                       | QPaintEngine::Antialiasing | QPaintEngine::PainterPaths | QPaintEngine::ConstantOpacity)
    {
    }

    bool begin(QPaintDevice*) override
    {
        body.clear();
        return true;
    }
    bool end() override
    {
        while (groups > 0)
            endGroup();
        return true;
    }
    Type type() const override { return QPaintEngine::SVG; }

    void updateState(const QPaintEngineState& state) override
    {
        const DirtyFlags dirty = state.state();
        if (dirty & DirtyPen)
            pen = state.pen();
        if (dirty & DirtyBrush)
            brush = state.brush();
        if (dirty & DirtyTransform)
            transform = state.transform();
        if (dirty & DirtyOpacity)
            opacity = state.opacity();
    }

    void drawPath(const QPainterPath& path) override { writePath(path, brush); }

    // Rectangles that stay upright (a background, a legend's swatches) stay rectangles.
    void drawRects(const QRectF* rects, int count) override
    {
        if (!shows(brush))
            return;
        for (int i = 0; i < count; ++i) {
            if (transform.type() > QTransform::TxScale) {
                QPainterPath path;
                path.addRect(rects[i]);
                writePath(path, brush);
                continue;
            }
            const QRectF r = transform.mapRect(rects[i]).normalized();
            body += "<rect x=\"";
            appendNumber(body, r.x());
            body += "\" y=\"";
            appendNumber(body, r.y());
            body += "\" width=\"";
            appendNumber(body, r.width());
            body += "\" height=\"";
            appendNumber(body, r.height());
            body += '"';
            writeStyle(Qt::WindingFill, brush);
            body += "/>\n";
        }
    }
    void drawRects(const QRect* rects, int count) override
    {
        for (int i = 0; i < count; ++i) {
            const QRectF r(rects[i]);
            drawRects(&r, 1);
        }
    }

    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override
    {
        if (count < 2)
            return;
        QPainterPath path;
        path.setFillRule(mode == OddEvenMode ? Qt::OddEvenFill : Qt::WindingFill);
        path.moveTo(points[0]);
        for (int i = 1; i < count; ++i)
            path.lineTo(points[i]);
        if (mode != PolylineMode)
            path.closeSubpath();
        writePath(path, mode == PolylineMode ? QBrush() : brush);
    }

    void drawPixmap(const QRectF& r, const QPixmap& pixmap, const QRectF& source) override
    {
        drawImage(r, pixmap.toImage(), source, Qt::AutoColor);
    }

    void drawImage(const QRectF& r, const QImage& image, const QRectF& source, Qt::ImageConversionFlags) override
    {
        const QImage part = image.copy(source.toAlignedRect());
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        if (part.isNull() || !QImageWriter(&buffer, "png").write(part))
            return;
        body += "<image x=\"";
        appendNumber(body, r.x());
        body += "\" y=\"";
        appendNumber(body, r.y());
        body += "\" width=\"";
        appendNumber(body, r.width());
        body += "\" height=\"";
        appendNumber(body, r.height());
        body += "\" preserveAspectRatio=\"none\"";
        body += matrix(transform);
        appendOpacity(body, "opacity", opacity);
        body += " xlink:href=\"data:image/png;base64,";
        body += png.toBase64();
        body += "\"/>\n";
    }

    void drawTextItem(const QPointF& p, const QTextItem& item) override
    {
        body += "<text";
        body += matrix(transform);
        body += " x=\"";
        appendNumber(body, p.x());
        body += "\" y=\"";
        appendNumber(body, p.y());
        body += '"';
        body += fontAttributes(item.font(), pixelSize(item.font()));
        body += " fill=\"" + colour(pen.color()) + '"';
        appendOpacity(body, "fill-opacity", pen.color().alphaF() * opacity);
        body += " xml:space=\"preserve\">" + escaped(item.text()) + "</text>\n";
    }

    void writeText(const PlacedText& text, const QTransform& world, const QBrush& fill, double alpha)
    {
        const QByteArray paint = " fill=\"" + colour(fill.color()) + '"';
        if (text.getKind() == PlacedText::Kind::Straight) {
            body += "<text";
            body += matrix(text.getTransform() * world);
            body += fontAttributes(text.getFont(), pixelSize(text.getFont()));
            body += paint;
            appendOpacity(body, "fill-opacity", fill.color().alphaF() * alpha);
            body += " xml:space=\"preserve\">" + escaped(text.getText()) + "</text>\n";
            return;
        }
        // The baseline's circle, from well before the text's middle to well after it, runs the
        // way the text reads; the text is centred on it.
        const double direction = text.getDirection();
        const double baseline = std::abs(text.getRadius() - text.getStart().y() * direction);
        const double width = text.getWidth();
        const double middle = (text.getStart().x() + width / 2) * direction / text.getRadius();
        const double half = std::min(3.1, std::max(0.2, width / std::max(baseline, 1e-6)));
        const auto at = [baseline](double angle) {
            return QPointF(baseline * std::cos(angle), baseline * std::sin(angle));
        };
        const QByteArray id = "t" + QByteArray::number(++textPaths);
        const QByteArray sweep = direction > 0 ? " 0 0 1 " : " 0 0 0 ";
        QByteArray radii;
        appendNumber(radii, baseline);
        radii = radii + ' ' + radii;
        body += "<defs><path id=\"" + id + "\" d=\"M";
        appendPoint(body, at(middle - direction * half));
        body += 'A' + radii + sweep;
        appendPoint(body, at(middle));
        body += 'A' + radii + sweep;
        appendPoint(body, at(middle + direction * half));
        body += "\"/></defs>\n<text";
        body += matrix(world);
        body += fontAttributes(text.getFont(), pixelSize(text.getFont()) * text.getScale());
        body += paint;
        appendOpacity(body, "fill-opacity", fill.color().alphaF() * alpha);
        body += " text-anchor=\"middle\" xml:space=\"preserve\"><textPath xlink:href=\"#" + id
                + "\" startOffset=\"50%\">" + escaped(text.getText()) + "</textPath></text>\n";
    }

    void beginGroup(const QString& title)
    {
        ++groups;
        body += "<g><title>" + escaped(title) + "</title>\n";
    }
    void endGroup()
    {
        if (groups == 0)
            return;
        --groups;
        body += "</g>\n";
    }

    QByteArray body;

private:
    // Whether anything is painted with the fill and the pen.
    bool shows(const QBrush& fill) const
    {
        return fill.style() != Qt::NoBrush || (pen.style() != Qt::NoPen && pen.brush().style() != Qt::NoBrush);
    }

    void writePath(const QPainterPath& path, const QBrush& fill)
    {
        if (!shows(fill) || path.isEmpty())
            return;
        body += "<path d=\"" + pathData(path, transform) + '"';
        writeStyle(path.fillRule(), fill);
        body += "/>\n";
    }

    void writeStyle(Qt::FillRule rule, const QBrush& fill)
    {
        const bool filled = fill.style() != Qt::NoBrush;
        const bool stroked = pen.style() != Qt::NoPen && pen.brush().style() != Qt::NoBrush;
        if (filled) {
            body += " fill=\"" + colour(fill.color()) + '"';
            appendOpacity(body, "fill-opacity", fill.color().alphaF());
            if (rule == Qt::OddEvenFill)
                body += " fill-rule=\"evenodd\"";
        } else {
            body += " fill=\"none\"";
        }
        if (stroked)
            writeStroke();
        appendOpacity(body, "opacity", opacity);
    }

    void writeStroke()
    {
        const double width = (pen.widthF() > 0 ? pen.widthF() : 1.0) * (pen.isCosmetic() ? 1.0 : scaleOf(transform));
        body += " stroke=\"" + colour(pen.color()) + "\" stroke-width=\"";
        appendNumber(body, std::max(width, 0.01));
        body += '"';
        appendOpacity(body, "stroke-opacity", pen.color().alphaF());
        switch (pen.capStyle()) {
        case Qt::SquareCap:
            body += " stroke-linecap=\"square\"";
            break;
        case Qt::RoundCap:
            body += " stroke-linecap=\"round\"";
            break;
        default:
            break;
        }
        switch (pen.joinStyle()) {
        case Qt::BevelJoin:
            body += " stroke-linejoin=\"bevel\"";
            break;
        case Qt::RoundJoin:
            body += " stroke-linejoin=\"round\"";
            break;
        default:
            break;
        }
        if (pen.style() != Qt::SolidLine) {
            body += " stroke-dasharray=\"";
            const QVector<qreal> dashes = pen.dashPattern();
            for (int i = 0; i < dashes.size(); ++i) {
                if (i > 0)
                    body += ' ';
                appendNumber(body, dashes[i] * width);
            }
            body += '"';
        }
    }

    QPen pen;
    QBrush brush;
    QTransform transform;
    double opacity = 1.0;
    int groups = 0;
    int textPaths = 0;
};

SvgWriter::SvgWriter(const QSize& s)
    : engine(std::make_unique<Engine>())
    , size(std::max(1, s.width()), std::max(1, s.height()))
{
}

SvgWriter::~SvgWriter() = default;

QPaintEngine* SvgWriter::paintEngine() const
{
    return engine.get();
}

int SvgWriter::metric(PaintDeviceMetric metric) const
{
    const double dpi = PlacedText::layoutDotsPerInch();
    switch (metric) {
    case PdmWidth:
        return size.width();
    case PdmHeight:
        return size.height();
    case PdmWidthMM:
        return static_cast<int>(std::lround(size.width() * 25.4 / dpi));
    case PdmHeightMM:
        return static_cast<int>(std::lround(size.height() * 25.4 / dpi));
    case PdmNumColors:
        return std::numeric_limits<int>::max();
    case PdmDepth:
        return 32;
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return static_cast<int>(dpi);
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return static_cast<int>(devicePixelRatioFScale());
    }
    return 0;
}

QByteArray SvgWriter::getSvg() const
{
    QByteArray svg = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n"
                     "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
                     "version=\"1.1\" width=\"";
    const QByteArray w = QByteArray::number(size.width());
    const QByteArray h = QByteArray::number(size.height());
    svg += w + "\" height=\"" + h + "\" viewBox=\"0 0 " + w + ' ' + h + "\">\n";
    if (!title.isEmpty())
        svg += "<title>" + escaped(title) + "</title>\n";
    svg += "<desc>Drawn by Sorvik</desc>\n";
    svg += engine->body;
    svg += "</svg>\n";
    return svg;
}

QByteArray SvgWriter::escaped(const QString& text)
{
    QString safe;
    safe.reserve(text.size() + 8);
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '&':
            safe += QLatin1String("&amp;");
            break;
        case '<':
            safe += QLatin1String("&lt;");
            break;
        case '>':
            safe += QLatin1String("&gt;");
            break;
        case '"':
            safe += QLatin1String("&quot;");
            break;
        default:
            // XML holds no other control characters, not even escaped.
            if (c.unicode() >= 0x20 || c == QLatin1Char('\t') || c == QLatin1Char('\n'))
                safe += c;
            else if (c == QLatin1Char('\r'))
                safe += QLatin1Char(' ');
            break;
        }
    }
    return safe.toUtf8();
}

SvgWriter* SvgWriter::of(QPainter& painter)
{
    auto* writer = dynamic_cast<SvgWriter*>(painter.device());
    return writer && painter.isActive() && painter.paintEngine() == writer->engine.get() ? writer : nullptr;
}

bool SvgWriter::drawText(QPainter& painter, const PlacedText& text, const QBrush& brush)
{
    SvgWriter* writer = of(painter);
    if (!writer)
        return false;
    if (!text.isEmpty())
        writer->engine->writeText(text, painter.combinedTransform(), brush, painter.opacity());
    return true;
}

SvgWriter::Group::Group(QPainter& painter, const QString& title)
{
    if (title.isEmpty())
        return;
    writer = of(painter);
    if (writer)
        writer->engine->beginGroup(title);
}

SvgWriter::Group::~Group()
{
    if (writer)
        writer->engine->endGroup();
}

} // namespace graphics
} // namespace nu
