#pragma once

#include "nu/edit/graphicsitemmanager.h"

#include <QJsonArray>
#include <QString>

#include <map>

class QGraphicsScene;
namespace nu {
namespace edit {
class HandlerPosition;
}
namespace graphics {
class PieChartTextItem;
}
} // namespace nu

namespace Sorvik {
namespace Test {

// An item manager with the editor's six item types (arc bracket, arc text, labelled slice,
// straight text, line, subspace).
class EditorItemManager : public nu::edit::GraphicsItemManager
{
public:
    EditorItemManager();
};

// Adds an annotated chart to the manager's scene: a centre slice with two outer slices, a bracket
// on one slice with an arc text on the bracket, a free bracket, a straight text, a bent line of
// two lines ending in a text, and a subspace; every item with some values away from the defaults.
// The manager must have the editor's six item types registered. Returns the number of items.
int addAnnotatedChart(nu::edit::GraphicsItemManager& manager);

// Every item of the manager by id: its chart-file form and, with geometry, where it is drawn (its
// bounds in the scene). Two charts that would save and draw alike compare equal.
std::map<long, QString> chartState(nu::edit::GraphicsItemManager& manager, bool withGeometry = true);

// A chart file's "data" array with every id replaced by the element's position (1, 2, ...) and
// every parent id by its parent's position (0 for none), so that charts loaded under other ids
// compare equal.
QJsonArray normalizedItems(const QJsonArray& items);

// The slice whose label starts with prefix; with an empty prefix, the chart's centre. Null when
// there is none.
nu::graphics::PieChartTextItem* sliceLabelled(const QGraphicsScene& scene, const QString& prefix = QString());
// The position knob of the scene's selection, or null.
nu::edit::HandlerPosition* positionKnob(const QGraphicsScene& scene);

} // namespace Test
} // namespace Sorvik
