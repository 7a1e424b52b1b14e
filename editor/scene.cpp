#include "editor/scene.h"

#include "nu/edit/arcbracketitem.h"
#include "nu/edit/arctextitem.h"
#include "nu/edit/lineitem.h"
#include "nu/edit/piecharttextitem.h"
#include "nu/edit/recttextitem.h"
#include "nu/edit/subspaceitem.h"

#include <QGraphicsSceneMouseEvent>

namespace Sorvik {
namespace Edit {

const QString Scene::DESCRIPTOR = QStringLiteral("sorvik-piechart");
const int Scene::VERSION = 1;

Scene::ItemManager::ItemManager()
{
    registerType<nu::edit::ArcBracketItem>();
    registerType<nu::edit::ArcTextItem>();
    registerType<nu::edit::PieChartTextItem>();
    registerType<nu::edit::RectTextItem>();
    registerType<nu::edit::LineItem>();
    registerType<nu::edit::SubSpaceItem>();
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
        break;
    }
    return 0;
}

void Scene::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    if (cursorMode == CursorMode::Select || event->button() != Qt::LeftButton) {
        nu::edit::Scene::mousePressEvent(event);
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

} // namespace Edit
} // namespace Sorvik
