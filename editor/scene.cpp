#include "editor/scene.h"

#include "nu/edit/chartitemtypes.h"
#include "nu/edit/piecharttextitem.h"

#include "nu/graphics/color.h"
#include "nu/graphics/piecharttextitem.h"

#include <QGraphicsSceneMouseEvent>
#include <QKeyEvent>

#include <vector>

namespace Sorvik {
namespace Edit {

const QString Scene::DESCRIPTOR = QStringLiteral("sorvik-piechart");
const int Scene::VERSION = 1;

Scene::ItemManager::ItemManager()
{
    nu::edit::registerChartItemTypes(*this);
}

nu::JsonDataFile::Info Scene::getFileInfo(const QString& path)
{
    return nu::JsonDataFile::Info(path, DESCRIPTOR, VERSION);
}

Scene::Scene(ItemManager& manager, QObject* parent)
    : nu::edit::Scene(manager, parent)
{
}

void Scene::setCursorMode(CursorMode mode)
{
    if (mode == cursorMode)
        return;
    cursorMode = mode;
    emit signalCursorModeChanged(mode);
}

nu::edit::PropertyItem::Id Scene::createItem(CursorMode mode, const QPointF& point, QGraphicsItem* parent)
{
    switch (mode) {
    case CursorMode::ArcText:
        return itemAddArcText(point, parent);
    case CursorMode::ArcBracket:
        return itemAddArcBracket(point, parent);
    case CursorMode::RectText:
        return itemAddRectText(point, parent);
    case CursorMode::ElbowText:
        return itemAddElbowText(point, parent);
    case CursorMode::Line:
        return itemAddLine(point, parent);
    case CursorMode::SubSpace:
        return itemAddSubSpace(point, parent);
    case CursorMode::Select:
    case CursorMode::Paint:
        break;
    }
    return 0;
}

void Scene::setPaintColor(const QColor& color)
{
    if (!color.isValid() || color == paintColor)
        return;
    paintColor = color;
}

bool Scene::paintAt(const QPointF& point, bool subtree, const QTransform& deviceTransform)
{
    // The slice itself, whatever annotation lies over it.
    nu::graphics::PieChartTextItem* slice = nullptr;
    for (QGraphicsItem* item : items(point, Qt::IntersectsItemShape, Qt::DescendingOrder, deviceTransform)) {
        slice = dynamic_cast<nu::graphics::PieChartTextItem*>(item);
        if (slice && getItemManager().findId(slice))
            break;
        slice = nullptr;
    }
    if (!slice)
        return false;
    // The slice takes the colour, the rings outside it shades of it lighter outward, as the
    // viewer colours a taxon's subtree; each label turns black or white to stay readable.
    std::vector<std::pair<QGraphicsItem*, int>> painted{{slice, 0}};
    for (std::size_t next = 0; subtree && next < painted.size(); ++next) {
        for (QGraphicsItem* child : painted[next].first->childItems()) {
            if (dynamic_cast<nu::graphics::PieChartTextItem*>(child) && getItemManager().findId(child))
                painted.emplace_back(child, painted[next].second + 1);
        }
    }
    std::vector<std::pair<QGraphicsItem*, Values>> changes;
    for (const auto& [item, depth] : painted) {
        const QColor fill = nu::graphics::Color::shadeOutward(paintColor, depth);
        // A slice without a fill is given a solid one: otherwise the colour would not show.
        changes.emplace_back(item, Values{{QStringLiteral("fill.color"), fill.name(QColor::HexArgb)},
                                          {QStringLiteral("fill.style"), int(Qt::SolidPattern)},
                                          {QStringLiteral("text.brush.color"),
                                           nu::graphics::Color::readableOn(fill).name(QColor::HexArgb)}});
    }
    return changeItems(changes);
}

void Scene::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && cursorMode != CursorMode::Select) {
        setCursorMode(CursorMode::Select);
        event->accept();
        return;
    }
    nu::edit::Scene::keyPressEvent(event);
}

void Scene::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    if (cursorMode == CursorMode::Select || event->button() != Qt::LeftButton) {
        nu::edit::Scene::mousePressEvent(event);
        return;
    }
    if (cursorMode == CursorMode::Paint) {
        // No drag and no selection: the press only paints.
        event->accept();
        paintAt(event->scenePos(), event->modifiers() & Qt::ShiftModifier, deviceTransformOf(event));
        return;
    }
    // The press makes an item and starts no drag, not even on a knob under it.
    event->accept();
    const auto picked = pickItem(event->scenePos(), deviceTransformOf(event));
    QGraphicsItem* parent = picked.first == Pick::Item ? picked.second : nullptr;
    // A knob stands on its item: the new item goes on that item.
    if (picked.first == Pick::Handle)
        parent = getHandledItem();
    createItem(cursorMode, event->scenePos(), parent);
    setCursorMode(CursorMode::Select);
}

nu::edit::PropertyItem::Id Scene::copyPieChart(const nu::graphics::PieChartTextItem& root)
{
    // Laid out once, when the whole copy stands.
    const nu::edit::ItemManager::Batch batch(getItemManager());
    const nu::edit::PropertyItem::Id id = copySlice(root, nullptr);
    emit signalSceneChanged();
    return id;
}

nu::edit::PropertyItem::Id Scene::copySlice(const nu::graphics::PieChartTextItem& from,
                                            nu::edit::PropertyItem* parent)
{
    const auto item = getItemManager().createItem(nu::edit::PieChartTextItem::TypeId);
    auto to = item ? dynamic_cast<nu::graphics::PieChartTextItem*>(getItemManager().getGraphicsItem(item->getId()))
                   : nullptr;
    if (!to)
        return 0;
    to->setCount(from.getCount());
    to->setRadiusOffset(from.getRadiusOffset());
    to->setBrush(from.getBrush());
    // A hairline as the original's outline is drawn, one pixel at any zoom, unless it has its own.
    to->setPen(from.getPen().style() == Qt::NoPen ? QPen(QBrush(Qt::black), 0) : from.getPen());
    nu::graphics::DrawableText label = from.getText();
    label.text = from.getDefaultText();
    to->setText(label);
    to->setTextShow(from.getTextShow());
    to->changeOrder(from.getOrder());
    if (parent) {
        item->setParent(parent);
    } else {
        to->setPos(from.scenePos());
        to->setRot(from.getRot());
        to->setRadius(from.getRadius());
    }
    for (auto child : from.sortedChildren<nu::graphics::PieChartTextItem>())
        copySlice(*child, item.get());
    return item->getId();
}

} // namespace Edit
} // namespace Sorvik
