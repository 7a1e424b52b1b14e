#pragma once

#include "nu/graphics/drawabletext.h"
#include "nu/graphics/piechartitem.h"
#include "nu/graphics/placedtext.h"

#include <optional>

namespace nu {
namespace graphics {

// A chart slice with its label bent along the middle of its ring. A label that does not fit in
// the slice is not drawn at all; labels in the lower half of the chart run the other way round,
// so that they never stand on their heads. The disc at a chart's centre has its label straight
// across its middle, set smaller when it is long. The tool tip is the label's text.
class PieChartTextItem : public PieChartItem
{
public:
    explicit PieChartTextItem(QGraphicsItem* parent = nullptr);

    DrawableText getText() const { return text; }
    void setText(const DrawableText& text);
    bool getTextShow() const { return textShow; }
    void setTextShow(bool show);

    // "label [12.50%]".
    QString getDefaultText() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    // The label as drawn (item coordinates), or an empty one when it is hidden or does not fit.
    PlacedText getLabel() const;
    QPainterPath getLabelPath() const;

protected:
    // Paints the slice and its label with the given attributes instead of the stored ones.
    void paintSlice(QPainter* painter, const QStyleOptionGraphicsItem* option, const QPen& pen,
                    const QBrush& brush, const QBrush& textBrush);

private:
    PlacedText getCentreLabel() const;

    DrawableText text;
    bool textShow = true;
    // textRect of the label, which takes a glyph layout: computed when first needed.
    mutable std::optional<QRectF> labelSize;
};

} // namespace graphics
} // namespace nu
