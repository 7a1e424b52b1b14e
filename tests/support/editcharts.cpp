#include "tests/support/editcharts.h"

#include "nu/edit/arcbracketitem.h"
#include "nu/edit/arctextitem.h"
#include "nu/edit/chartitemtypes.h"
#include "nu/edit/handler.h"
#include "nu/edit/lineitem.h"
#include "nu/edit/piecharttextitem.h"
#include "nu/edit/recttextitem.h"
#include "nu/edit/subspaceitem.h"
#include "nu/graphics/piecharttextitem.h"

#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QJsonDocument>
#include <QJsonObject>

#include <map>

namespace Sorvik {
namespace Test {

namespace {

using Values = std::initializer_list<std::pair<const char*, QVariant>>;

long add(nu::edit::GraphicsItemManager& manager, int type, long parent, Values values)
{
    const auto item = manager.createItem(type);
    if (!item)
        return 0;
    if (const auto parentItem = manager.getItem(parent))
        item->setParent(parentItem.get());
    // A wrapper decides its properties when it is made: values go through one made after parenting.
    const auto placed = manager.getItem(item->getId());
    for (const auto& value : values)
        placed->setPropertyValue(QString::fromLatin1(value.first), value.second);
    return item->getId();
}

} // namespace

EditorItemManager::EditorItemManager()
{
    nu::edit::registerChartItemTypes(*this);
}

int addAnnotatedChart(nu::edit::GraphicsItemManager& manager)
{
    using namespace nu::edit;
    const long root = add(manager, PieChartTextItem::TypeId, 0,
                          {{"position.x", 5.0},
                           {"rotation", 15.0},
                           {"count", 1},
                           {"radius", 40.0},
                           {"fill.color", "#ff336699"},
                           {"text.text", "root"},
                           {"text.show", false}});
    const long bacteria = add(manager, PieChartTextItem::TypeId, root,
                              {{"count", 6},
                               {"radius", 30.0},
                               {"border.width", 2},
                               {"border.style", 3},
                               {"text.text", "Bacteria"},
                               {"text.pen.color", "#80ff0000"},
                               {"text.brush.style", 9}});
    add(manager, PieChartTextItem::TypeId, root,
        {{"count", 3}, {"radius", 30.0}, {"fill.style", 0}, {"text.text", "Archaea"}});
    const long bracket =
        add(manager, ArcBracketItem::TypeId, bacteria,
            {{"radius", 12.0}, {"tip-length", 6.0}, {"line.width", 2}, {"line.color", "#ff00aa00"}});
    add(manager, ArcTextItem::TypeId, bracket,
        {{"text", "Firmicutes"}, {"radius", 8.0}, {"orientation", 1}, {"font", "Serif,14,-1,5,75,0,0,0,0,0"}});
    add(manager, ArcBracketItem::TypeId, 0,
        {{"position.x", 200.0}, {"position.y", -20.5}, {"rotation", 30.0}, {"angle", 60.0}, {"radius", 100.0}});
    add(manager, RectTextItem::TypeId, 0,
        {{"position.x", 150.0},
         {"position.y", -80.0},
         {"text", "Figure 1"},
         {"rotation", -10.0},
         {"anchor.horizontal", 2},
         {"anchor.vertical", 0},
         {"fill.color", "#ff202020"}});
    const long line = add(manager, LineItem::TypeId, 0,
                          {{"position.x", -200.0},
                           {"position.y", 100.0},
                           {"end.x", 40.0},
                           {"end.y", -20.0},
                           {"line.color", "#ff0000ff"},
                           {"line.style", 2}});
    const long elbow =
        add(manager, LineItem::TypeId, line, {{"end.x", 30.0}, {"end.y", 0.0}, {"ignoretransformations", true}});
    add(manager, RectTextItem::TypeId, elbow, {{"text", "note"}, {"position.x", 2.0}});
    add(manager, SubSpaceItem::TypeId, 0,
        {{"position.x", 10.0}, {"position.y", 10.0}, {"rotation", 15.0}, {"ignoretransformations", true}});
    return 11;
}

std::map<long, QString> chartState(nu::edit::GraphicsItemManager& manager, bool withGeometry)
{
    std::map<long, QString> result;
    for (const QJsonValue& value : manager.toJson()) {
        const QJsonObject item = value.toObject();
        const long id = static_cast<long>(item.value(QStringLiteral("id")).toVariant().toLongLong());
        QString text = QString::fromUtf8(QJsonDocument(item).toJson(QJsonDocument::Compact));
        if (withGeometry) {
            const QRectF rect = manager.getGraphicsItem(id)->sceneBoundingRect();
            text += QStringLiteral(" @ %1 %2 %3 %4").arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
        }
        result[id] = text;
    }
    return result;
}

QJsonArray normalizedItems(const QJsonArray& items)
{
    std::map<qint64, int> position;
    for (int i = 0; i < items.size(); ++i)
        position[items[i].toObject().value(QStringLiteral("id")).toVariant().toLongLong()] = i + 1;
    QJsonArray result;
    for (int i = 0; i < items.size(); ++i) {
        QJsonObject item = items[i].toObject();
        const auto parent = position.find(item.value(QStringLiteral("parent-id")).toVariant().toLongLong());
        item.insert(QStringLiteral("id"), i + 1);
        item.insert(QStringLiteral("parent-id"), parent == position.end() ? 0 : parent->second);
        result.append(item);
    }
    return result;
}

nu::graphics::PieChartTextItem* sliceLabelled(const QGraphicsScene& scene, const QString& prefix)
{
    for (QGraphicsItem* item : scene.items()) {
        auto slice = dynamic_cast<nu::graphics::PieChartTextItem*>(item);
        if (slice && (prefix.isEmpty() ? !slice->parentItem() : slice->getText().text.startsWith(prefix)))
            return slice;
    }
    return nullptr;
}

nu::edit::HandlerPosition* positionKnob(const QGraphicsScene& scene)
{
    for (QGraphicsItem* item : scene.items()) {
        if (auto knob = dynamic_cast<nu::edit::HandlerPosition*>(item))
            return knob;
    }
    return nullptr;
}

} // namespace Test
} // namespace Sorvik
