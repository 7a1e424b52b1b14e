#pragma once

#include <QPainterPath>

class QGraphicsItem;

namespace nu {
namespace edit {

// Where the editor picks an item and draws its selection outline, in the item's coordinates:
// a text anywhere in the box (or, bent, the band) its letters take, a line or bracket within a
// few units of its stroke, anything else on its shape.
QPainterPath selectionShape(const QGraphicsItem& item);

// How far beyond the band or box of a text its knobs sit, so that they never cover a letter.
constexpr double knobClearance = 7.0;

} // namespace edit
} // namespace nu
