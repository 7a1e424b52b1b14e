#include "nu/edit/scene.h"

#include "nu/edit/arcbracketitem.h"
#include "nu/edit/arctextitem.h"
#include "nu/edit/graphicsitemmanager.h"
#include "nu/edit/handler.h"
#include "nu/edit/lineitem.h"
#include "nu/edit/loadjson.h"
#include "nu/edit/propertieswidget.h"
#include "nu/edit/recttextitem.h"
#include "nu/edit/selectionshape.h"
#include "nu/edit/subspaceitem.h"

#include "nu/graphics/angularparentitem.h"
#include "nu/graphics/baseitem.h"
#include "nu/graphics/customtraceitem.h"
#include "nu/graphics/geometry.h"
#include "nu/graphics/piecharttextitem.h"
#include "nu/graphics/sceneimage.h"
#include "nu/graphics/subspaceitem.h"

#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QKeyEvent>

#include <algorithm>

namespace nu {
namespace edit {

namespace {

// Room around the drawing in an exported image, in scene units.
constexpr double imageMargin = 10.0;
// Room around the drawing on a fitted canvas, in scene units.
constexpr double canvasMargin = 20.0;
// Between the end of an elbow's level line and its text, so that the two stay apart.
constexpr double elbowTextGap = 6.0;

// Hides the knobs for the time of a drawing.
class KnobsHidden
{
public:
    explicit KnobsHidden(const Scene::Handlers& handlers)
    {
        for (const auto& handler : handlers) {
            if (handler->isVisible()) {
                handler->setVisible(false);
                hidden.push_back(handler.get());
            }
        }
    }
    ~KnobsHidden()
    {
        for (Handler* handler : hidden)
            handler->setVisible(true);
    }
    KnobsHidden(const KnobsHidden&) = delete;
    KnobsHidden& operator=(const KnobsHidden&) = delete;

private:
    std::vector<Handler*> hidden;
};

} // namespace

Scene::Scene(GraphicsItemManager& manager, QObject* parent)
    : QGraphicsScene(parent)
    , manager(manager)
    , undoManager(manager)
{
    // The signals carry ids under this name; receivers through a queue or a spy need it known.
    qRegisterMetaType<PropertyItem::Id>("nu::edit::PropertyItem::Id");
    setSceneRect(defaultCanvas);
    manager.setScene(*this);
}

Scene::~Scene()
{
    // While this is still an editor scene: the knobs tell it they go.
    deleteHandlers();
}

void Scene::setClean()
{
    undoManager.setClean();
    undoStateChanged();
}

void Scene::reset()
{
    closeDrag();
    deleteHandlers();
    manager.reset();
    undoManager.clear();
    announce(KnobsChanged | Deselected);
}

PropertiesWidget* Scene::getPropertiesWidget(QWidget* parent)
{
    auto* sheet = new PropertiesWidget(undoManager, parent);
    connect(sheet, &PropertiesWidget::signalChangeApplied, this, &Scene::slotUpdate);
    connect(this, &Scene::signalHandlerChanged, sheet, &PropertiesWidget::slotUpdate);
    connect(this, &Scene::signalHandlerChanged, this, &Scene::signalSceneChanged, Qt::UniqueConnection);
    connect(this, &Scene::signalItemCreated, sheet, &PropertiesWidget::slotSetSelection);
    connect(this, &Scene::signalItemSelected, sheet, &PropertiesWidget::slotSetSelection);
    return sheet;
}

bool Scene::generateItemHandler(QGraphicsItem* item)
{
    deleteHandlers();
    // Only items the manager knows: a change by knob is recorded by id.
    if (!manager.findId(item))
        return false;
    std::unique_ptr<Handler> handler = manager.getItemHandler(item);
    if (!handler)
        return false;
    handlers.push_back(std::move(handler));
    return true;
}

QGraphicsItem* Scene::getHandledItem() const
{
    return handlers.empty() ? nullptr : handlers.front()->getHandledItem();
}

bool Scene::selectItem(QGraphicsItem* item)
{
    if (!generateItemHandler(item))
        return false;
    emit signalItemSelected(manager.findId(item));
    return true;
}

void Scene::deleteItem(QGraphicsItem* item)
{
    const PropertyItem::Id id = manager.findId(item);
    if (!id)
        return;
    if (const auto wrapped = manager.getItem(item, id))
        undoManager.deleteItem(*wrapped);
    for (QGraphicsItem* child : item->childItems()) {
        if (manager.findId(child))
            deleteItem(child);
    }
    manager.deleteItem(id);
}

void Scene::deleteItemHandler(QGraphicsItem* item)
{
    const auto found = std::find_if(handlers.begin(), handlers.end(), [item](const std::unique_ptr<Handler>& held) {
        return held->getHandledItem() == item;
    });
    if (found == handlers.end())
        return;
    // Out of the list before it goes, so that its farewell finds nothing to release.
    const std::unique_ptr<Handler> doomed = std::move(*found);
    handlers.erase(found);
}

void Scene::releaseHandler(Handler* handler)
{
    const auto found = std::find_if(handlers.begin(), handlers.end(),
                                    [handler](const std::unique_ptr<Handler>& held) { return held.get() == handler; });
    if (found == handlers.end())
        return;
    // Its Qt parent is deleting it.
    found->release();
    handlers.erase(found);
}

void Scene::notifyHandlerChanged()
{
    emit signalHandlerChanged();
}

void Scene::deleteHandlers()
{
    Handlers doomed;
    doomed.swap(handlers);
}

void Scene::refreshHandlers(PropertyItem::Id handled)
{
    if (!handled)
        return;
    if (generateItemHandler(manager.getGraphicsItem(handled)))
        return;
    emit signalItemSelected(0);
}

std::pair<Scene::Pick, QGraphicsItem*> Scene::pickItem(const QPointF& point, const QTransform& deviceTransform) const
{
    // A few units of slack, so that a thin line can be hit.
    const QRectF area = graphics::centeredRect(point, 4.0);
    const QPolygonF onDevice = deviceTransform.map(QPolygonF(area));
    const auto editable = [this](QGraphicsItem* item) { return manager.findId(item) && manager.isSelectable(item); };
    // Editable items are hit where the editor outlines them (a text anywhere in its box), the
    // rest on their shapes. An item that ignores transformations is placed through the view.
    const auto hit = [&](QGraphicsItem* item) {
        QPainterPath probe;
        probe.addPolygon(item->deviceTransform(deviceTransform).inverted().map(onDevice));
        probe.closeSubpath();
        return (editable(item) ? selectionShape(*item) : item->shape()).intersects(probe);
    };

    // A hidden subspace has no outline to hit: its bounds (around its origin) stand in for it.
    for (QGraphicsItem* item : items(area, Qt::IntersectsItemBoundingRect, Qt::DescendingOrder, deviceTransform)) {
        const auto subSpace = dynamic_cast<graphics::SubSpaceItem*>(item);
        const bool hidden = subSpace && !subSpace->getSubSpaceVisible();
        if (!hidden && !hit(item))
            continue;
        // A grey knob takes no press: what lies beneath is picked (it may even be hidden under
        // an inner ring of the chart).
        if (dynamic_cast<Handler*>(item)) {
            if (item->flags() & QGraphicsItem::ItemIsMovable)
                return {Pick::Handle, item};
            continue;
        }
        if (subSpace)
            return {!hidden && editable(item) ? Pick::Item : Pick::Blocked, item};
        if (editable(item))
            return {Pick::Item, item};
    }
    return {Pick::Nothing, nullptr};
}

QTransform Scene::deviceTransformOf(const QGraphicsSceneMouseEvent* event)
{
    QWidget* viewport = event->widget();
    if (auto view = viewport ? qobject_cast<QGraphicsView*>(viewport->parentWidget()) : nullptr)
        return view->viewportTransform();
    return QTransform();
}

void Scene::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    QGraphicsScene::mousePressEvent(event);
    // A knob took the press: its drag goes on, the selection stays.
    if (dynamic_cast<Handler*>(mouseGrabberItem()))
        return;
    const auto picked = pickItem(event->scenePos(), deviceTransformOf(event));
    if (picked.first == Pick::Handle || picked.first == Pick::Blocked)
        return;
    if (picked.first == Pick::Item && selectItem(picked.second))
        return;
    deleteHandlers();
    emit signalItemSelected(0);
}

void Scene::keyPressEvent(QKeyEvent* event)
{
    QGraphicsScene::keyPressEvent(event);
    if (event->key() == Qt::Key_Delete) {
        slotDeleteSelected();
        event->accept();
    }
}

void Scene::slotMoveHandlerStart(QGraphicsItem* item)
{
    closeDrag();
    undoManager.changeBegin();
    dragOpen = true;
    if (const auto wrapped = manager.getItem(item))
        undoManager.changeItem(*wrapped);
}

void Scene::slotMoveHandlerEnd(QGraphicsItem*)
{
    if (!dragOpen)
        return;
    closeDrag();
    emit signalSceneChanged();
}

void Scene::closeDrag()
{
    if (!dragOpen)
        return;
    dragOpen = false;
    undoManager.changeEnd();
    undoStateChanged();
}

void Scene::slotUpdate()
{
    for (const auto& handler : handlers)
        handler->updateHandler();
    announce(0);
}

void Scene::slotUndo()
{
    stepThroughHistory(&UndoManager::canUndo, &UndoManager::undo);
}

void Scene::slotRedo()
{
    stepThroughHistory(&UndoManager::canRedo, &UndoManager::redo);
}

void Scene::stepThroughHistory(bool (UndoManager::*can)() const, void (UndoManager::*step)())
{
    closeDrag();
    if (!(undoManager.*can)())
        return;
    const PropertyItem::Id handled = manager.findId(getHandledItem());
    (undoManager.*step)();
    // Restored items come back as they were made, visible.
    if (!subSpaceVisible)
        applySubSpaceVisibility(false);
    // The handled item may have been made anew or moved to another parent: new knobs.
    refreshHandlers(handled);
    announce(KnobsChanged);
}

void Scene::slotDeleteSelected()
{
    closeDrag();
    std::vector<QGraphicsItem*> doomed;
    for (const auto& handler : handlers) {
        if (handler->isDeletable())
            doomed.push_back(handler->getHandledItem());
    }
    if (doomed.empty())
        return;
    undoManager.changeBegin();
    {
        const ItemManager::Batch batch(manager);
        for (QGraphicsItem* item : doomed) {
            // Compared, not followed: an earlier deletion may have taken it along.
            if (manager.findId(item))
                deleteItem(item);
        }
    }
    undoManager.changeEnd();
    deleteHandlers();
    announce(KnobsChanged | Deselected);
}

QRectF Scene::getDrawingRect() const
{
    QRectF bounds;
    for (QGraphicsItem* item : items()) {
        // Knobs and the selection outline are no part of the drawing.
        if (!item->isVisible() || dynamic_cast<Handler*>(item) || dynamic_cast<Handler*>(item->parentItem()))
            continue;
        // The outline as painted, turned into the scene: the box of a turned slice reaches far
        // beyond it, and the image's margins would come out uneven.
        const auto* shape = dynamic_cast<const graphics::CustomTraceItem*>(item);
        if (!shape) {
            bounds |= item->sceneBoundingRect();
            continue;
        }
        QPainterPath painted = shape->path();
        if (const auto* slice = dynamic_cast<const graphics::PieChartTextItem*>(item))
            painted.addPath(slice->getLabelPath());
        const QPen& pen = shape->getPen();
        const double reach = pen.style() == Qt::NoPen || pen.isCosmetic() ? 0.0 : pen.widthF() / 2;
        bounds |= item->sceneTransform().map(painted).boundingRect().adjusted(-reach, -reach, reach, reach);
    }
    return bounds;
}

QRectF Scene::getImageRect() const
{
    return getDrawingRect().adjusted(-imageMargin, -imageMargin, imageMargin, imageMargin);
}

void Scene::slotFitCanvas()
{
    setSceneRect(getDrawingRect().adjusted(-canvasMargin, -canvasMargin, canvasMargin, canvasMargin));
}

void Scene::growCanvasOver(const std::vector<PropertyItem::Id>& ids)
{
    QRectF bounds;
    for (PropertyItem::Id id : ids) {
        if (QGraphicsItem* item = manager.getGraphicsItem(id))
            bounds |= item->sceneBoundingRect();
    }
    if (bounds.isNull())
        return;
    const QRectF canvas = sceneRect() | bounds.adjusted(-canvasMargin, -canvasMargin, canvasMargin, canvasMargin);
    if (canvas != sceneRect())
        setSceneRect(canvas);
}

void Scene::saveToSvg(const QString& path)
{
    const KnobsHidden hidden(handlers);
    graphics::SceneImage image(*this, getImageRect());
    image.setTitle(QStringLiteral("Sorvik chart"));
    image.save(path, graphics::SceneImage::Format::Svg);
}

void Scene::saveToPdf(const QString& path)
{
    const KnobsHidden hidden(handlers);
    graphics::SceneImage image(*this, getImageRect());
    image.setTitle(QStringLiteral("Sorvik chart"));
    image.save(path, graphics::SceneImage::Format::Pdf);
}

void Scene::saveToPng(const QString& path, double scale)
{
    const KnobsHidden hidden(handlers);
    graphics::SceneImage image(*this, getImageRect());
    image.setScale(scale);
    image.save(path, graphics::SceneImage::Format::Png);
}

bool Scene::changeItems(const std::vector<QGraphicsItem*>& items, const Values& values)
{
    std::vector<std::pair<QGraphicsItem*, Values>> changes;
    changes.reserve(items.size());
    for (QGraphicsItem* item : items)
        changes.emplace_back(item, values);
    return changeItems(changes);
}

bool Scene::changeItems(const std::vector<std::pair<QGraphicsItem*, Values>>& changes)
{
    closeDrag();
    const int steps = undoManager.getUndoCount();
    undoManager.changeBegin();
    {
        const ItemManager::Batch batch(manager);
        for (const auto& [item, values] : changes) {
            const auto wrapped = manager.getItem(item);
            if (!wrapped)
                continue;
            undoManager.changeItem(*wrapped);
            for (const auto& value : values) {
                if (wrapped->findBasicProperty(value.first))
                    wrapped->setPropertyValue(value.first, value.second);
            }
        }
    }
    undoManager.changeEnd();
    if (undoManager.getUndoCount() == steps)
        return false;
    for (const auto& handler : handlers)
        handler->updateHandler();
    announce(KnobsChanged);
    return true;
}

void Scene::slotEditSubSpacesVisible(bool visible)
{
    const bool changed = visible != subSpaceVisible;
    subSpaceVisible = visible;
    QGraphicsItem* handled = getHandledItem();
    applySubSpaceVisibility(visible);
    if (handled && !getHandledItem())
        emit signalItemSelected(0);
    if (changed)
        emit signalSubSpacesVisibleChanged(visible);
    emit signalSceneChanged();
}

void Scene::applySubSpaceVisibility(bool visible)
{
    for (QGraphicsItem* item : items()) {
        auto subSpace = dynamic_cast<graphics::SubSpaceItem*>(item);
        if (!subSpace)
            continue;
        if (subSpace->getSubSpaceVisible() != visible)
            subSpace->setSubSpaceVisible(visible);
        // No knobs on an invisible item.
        if (!visible)
            deleteItemHandler(item);
    }
}

void Scene::slotDeselect() {}

void Scene::undoStateChanged()
{
    emit signalUndoStateChanged();
}

void Scene::notifyItemCreated(PropertyItem::Id id)
{
    generateItemHandler(manager.getGraphicsItem(id));
    announce(0, id);
}

void Scene::announce(int changes, PropertyItem::Id created)
{
    if (changes & KnobsChanged)
        emit signalHandlerChanged();
    if (created) {
        emit signalItemCreated(created);
        emit signalItemSelected(created);
    } else if (changes & Deselected) {
        emit signalItemSelected(0);
    }
    if (changes & ChartApplied)
        emit signalChangeApplied();
    emit signalSceneChanged();
    undoStateChanged();
}

std::shared_ptr<PropertyItem> Scene::makeItem(int type, const Values& values, const QPointF& point,
                                              QGraphicsItem* parent)
{
    const auto item = manager.createItem(type);
    if (!item)
        return nullptr;
    undoManager.createItem(*item);
    madeInStep.push_back(item->getId());
    for (const auto& value : values)
        item->setPropertyValue(value.first, value.second);
    if (const auto parentItem = manager.getItem(parent)) {
        item->setParent(parentItem.get());
    } else {
        item->setPropertyValue(QStringLiteral("position.x"), point.x());
        item->setPropertyValue(QStringLiteral("position.y"), point.y());
    }
    // A wrapper made after parenting: which properties an item has can depend on its parent.
    return manager.getItem(item->getId());
}

PropertyItem::Id Scene::makeOne(int type, const Values& values, const QPointF& point, QGraphicsItem* parent)
{
    return createInOneStep([&] { return makeItem(type, values, point, parent); });
}

PropertyItem::Id Scene::createInOneStep(const std::function<std::shared_ptr<PropertyItem>()>& make)
{
    closeDrag();
    madeInStep.clear();
    undoManager.changeBegin();
    const auto item = make();
    undoManager.changeEnd();
    if (!item)
        return 0;
    // The canvas takes in what was made, so that nothing new lies outside it.
    growCanvasOver(madeInStep);
    notifyItemCreated(item->getId());
    return item->getId();
}

PropertyItem::Id Scene::itemAddArcBracket(const QPointF& point, QGraphicsItem* parent)
{
    Values values{{QStringLiteral("radius"), arcRadius},
                  {QStringLiteral("tip-length"), 10.0},
                  {QStringLiteral("angle"), 45.0}};
    if (!manager.findId(parent)) {
        // On the canvas the bracket arches over the point asked for, its tips down towards it.
        values.emplace_back(QStringLiteral("rotation"), 90.0 - 45.0 / 2);
        return makeOne(ArcBracketItem::TypeId, values, point + QPointF(0, arcRadius), nullptr);
    }
    // On a slice the angle is an offset from the slice's span.
    if (dynamic_cast<graphics::AngularParentItem*>(parent))
        values.emplace_back(QStringLiteral("angle"), 0.0);
    return makeOne(ArcBracketItem::TypeId, values, point, parent);
}

QString Scene::labelOf(QGraphicsItem* item)
{
    for (QGraphicsItem* up = item ? item->parentItem() : nullptr; up; up = up->parentItem()) {
        // The label as the slice shows it.
        if (auto slice = dynamic_cast<graphics::PieChartTextItem*>(up))
            return slice->getText().text;
    }
    if (auto graphics = dynamic_cast<graphics::BaseItem*>(item))
        return graphics->getDefaultText();
    return QStringLiteral("new text");
}

PropertyItem::Id Scene::itemAddRectBracket(const QPointF& point, QGraphicsItem* parent)
{
    return makeOne(rectBracketType, {{QStringLiteral("tip-length"), -10.0}, {QStringLiteral("length"), 100.0}}, point,
                   parent);
}

PropertyItem::Id Scene::itemAddArcText(const QPointF& point, QGraphicsItem* parent)
{
    Values values{{QStringLiteral("radius"), arcRadius}, {QStringLiteral("text"), QStringLiteral("new text")}};
    // On the canvas the text reads across the top of its circle, its middle where it was asked
    // for: the circle's centre lies below that point.
    if (!manager.findId(parent))
        values.emplace_back(QStringLiteral("rotation"), 90.0);
    return createInOneStep([&] {
        const auto item = makeItem(ArcTextItem::TypeId, values, point + QPointF(0, arcRadius), parent);
        // On a slice (or on a bracket on one) the text starts as the slice's label.
        if (item && item->getParentId()) {
            item->setPropertyValue(QStringLiteral("text"), labelOf(manager.getGraphicsItem(item->getId())));
            turnUpright(*item);
        }
        return item;
    });
}

void Scene::turnUpright(PropertyItem& item)
{
    auto text = dynamic_cast<graphics::ArcTextItem*>(manager.getGraphicsItem(item.getId()));
    if (!text)
        return;
    // Below its circle's centre a text reads upright when it runs the other way round.
    const QPointF middle = text->mapToScene(QPointF(text->getRadius(), 0)) - text->mapToScene(QPointF());
    if (middle.y() > 1e-9)
        item.setPropertyValue(QStringLiteral("orientation"), 1);
}

PropertyItem::Id Scene::itemAddRectText(const QPointF& point, QGraphicsItem* parent)
{
    return makeOne(RectTextItem::TypeId,
                  {{QStringLiteral("position.x"), 0.0},
                   {QStringLiteral("position.y"), 0.0},
                   {QStringLiteral("text"), QStringLiteral("new text")}},
                  point, parent);
}

PropertyItem::Id Scene::itemAddElbowText(const QPointF& point, QGraphicsItem* parent)
{
    // A line up from the anchor, a level line hanging on its end and the text hanging on that:
    // moving the first line moves the rest. The three are one annotation to the user, so they
    // are made in one undo step, and one undo takes the whole of it away rather than leaving a
    // bare bent line behind.
    // On a chart the bend points away from the chart's centre (the parent's origin), over the
    // slice's own outer rings: towards the centre it would hide under the inner rings, which are
    // painted over the slices outside them.
    double across = 1.0;
    double up = -1.0;
    const bool onItem = manager.findId(parent);
    if (onItem) {
        const QPointF outward = point - parent->scenePos();
        across = outward.x() < 0 ? -1.0 : 1.0;
        up = outward.y() > 0 ? 1.0 : -1.0;
    }
    Values first{{QStringLiteral("position.x"), 0.0}, {QStringLiteral("position.y"), 0.0},
                 {QStringLiteral("end.x"), 30.0 * across}, {QStringLiteral("end.y"), 30.0 * up}};
    Values second{{QStringLiteral("position.x"), 0.0}, {QStringLiteral("position.y"), 0.0},
                  {QStringLiteral("end.x"), 40.0 * across}, {QStringLiteral("end.y"), 0.0}};
    Values label{{QStringLiteral("position.x"), elbowTextGap * across}, {QStringLiteral("position.y"), 0.0},
                 {QStringLiteral("text"), QStringLiteral("new text")}};
    // Leftwards the text ends at the line rather than starting on it.
    if (across < 0)
        label.emplace_back(QStringLiteral("anchor.horizontal"), 2);
    // On a chart the label stays upright and legible however the chart is turned or zoomed.
    if (onItem) {
        first.emplace_back(QStringLiteral("ignoretransformations"), true);
        second.emplace_back(QStringLiteral("ignoretransformations"), true);
    }
    // The text is what the user goes on to edit.
    return createInOneStep([&]() -> std::shared_ptr<PropertyItem> {
        const auto line = makeItem(LineItem::TypeId, first, point, parent);
        const auto elbow = line ? makeItem(LineItem::TypeId, second, point, manager.getGraphicsItem(line->getId())) : nullptr;
        return elbow ? makeItem(RectTextItem::TypeId, label, point, manager.getGraphicsItem(elbow->getId())) : nullptr;
    });
}

PropertyItem::Id Scene::itemAddLine(const QPointF& point, QGraphicsItem* parent)
{
    return makeOne(LineItem::TypeId,
                  {{QStringLiteral("position.x"), 0.0}, {QStringLiteral("position.y"), 0.0},
                   {QStringLiteral("end.x"), 40.0}, {QStringLiteral("end.y"), -20.0}},
                  point, parent);
}

PropertyItem::Id Scene::itemAddSubSpace(const QPointF& point, QGraphicsItem* parent)
{
    // Whoever adds a subspace wants to see it.
    if (!subSpaceVisible)
        slotEditSubSpacesVisible(true);
    return makeOne(SubSpaceItem::TypeId,
                  {{QStringLiteral("position.x"), 0.0},
                   {QStringLiteral("position.y"), 0.0},
                   {QStringLiteral("rotation"), 0.0}},
                  point, parent);
}

void Scene::saveToFile(const JsonDataFile::Info& info)
{
    JsonDataFile::save(info, manager.toJson());
    setClean();
}

int Scene::loadFromFile(const JsonDataFile::Info& info)
{
    // Read and checked before anything of the present chart goes.
    const JsonDataFile file(info);
    closeDrag();
    deleteHandlers();
    manager.reset();
    undoManager.clear();
    const int skipped = manager.fromJson(file.data());
    if (!subSpaceVisible)
        applySubSpaceVisibility(false);
    slotFitCanvas();
    announce(KnobsChanged | Deselected | ChartApplied);
    return skipped;
}

int Scene::importFromFile(const JsonDataFile::Info& info)
{
    const JsonDataFile file(info);
    // Every item is new: undoing the import deletes them, redoing makes them again with their
    // parents, so nothing else needs recording.
    struct Recording
    {
        GraphicsItemManager& manager;
        UndoManager& undo;

        std::shared_ptr<PropertyItem> createItem(int type)
        {
            auto item = manager.createItem(type);
            if (item)
                undo.createItem(*item);
            return item;
        }
        std::shared_ptr<PropertyItem> getItem(long id) { return manager.getItem(id); }
        void setParent(long childId, long parentId)
        {
            const auto child = manager.getItem(childId);
            const auto parent = manager.getItem(parentId);
            if (child && parent)
                child->setParent(parent.get());
        }
    };
    closeDrag();
    undoManager.changeBegin();
    int skipped = 0;
    {
        const ItemManager::Batch batch(manager);
        skipped = loadJson(Recording{manager, undoManager}, file.data());
    }
    undoManager.changeEnd();
    if (!subSpaceVisible)
        applySubSpaceVisibility(false);
    slotFitCanvas();
    announce(ChartApplied);
    return skipped;
}

} // namespace edit
} // namespace nu
