#include "nu/edit/handler.h"

#include "nu/edit/scene.h"
#include "nu/edit/selectionshape.h"

#include "nu/graphics/arcbracketitem.h"
#include "nu/graphics/arctextitem.h"
#include "nu/graphics/geometry.h"
#include "nu/graphics/lineitem.h"
#include "nu/graphics/positionchilditem.h"
#include "nu/graphics/radiusitem.h"
#include "nu/graphics/rotationchilditem.h"

#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QPainter>


namespace nu {
namespace edit {

using namespace handlergeometry;

Handler::Handler(const QColor& color)
    : color(color)
{
    setZValue(99999.9);
}

Handler::Handler(QGraphicsItem* parent, const QColor& color)
    : QGraphicsItem(parent)
    , color(color)
{
    setFlag(QGraphicsItem::ItemIsMovable);
    setFlag(QGraphicsItem::ItemStacksBehindParent);
}

Handler::~Handler()
{
    if (Scene* editor = getEditorScene())
        editor->releaseHandler(this);
}

QRectF Handler::boundingRect() const
{
    return graphics::centeredRect(knobCentre, radius).adjusted(-1, -1, 1, 1);
}

void Handler::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    painter->setPen(QPen(Qt::black));
    painter->setBrush(QBrush(color));
    painter->drawEllipse(knobCentre, radius, radius);
}

void Handler::setKnobCentre(const QPointF& centre)
{
    if (centre == knobCentre)
        return;
    prepareGeometryChange();
    knobCentre = centre;
}

bool Handler::isDeletable() const
{
    return false;
}

void Handler::notApply()
{
    color = Qt::gray;
    setFlag(QGraphicsItem::ItemIsMovable, false);
    update();
}

QPointF Handler::localPoint(const QGraphicsSceneMouseEvent* event) const
{
    // Mapped here rather than taken from the event: the knob moved since the scene last brought
    // its cached transform up to date. A knob that ignores transformations is mapped through the
    // view the event came from.
    QWidget* viewport = event->widget();
    if (auto view = viewport ? qobject_cast<QGraphicsView*>(viewport->parentWidget()) : nullptr) {
        const QTransform toViewport = view->viewportTransform();
        return deviceTransform(toViewport).inverted().map(toViewport.map(event->scenePos()));
    }
    return sceneTransform().inverted().map(event->scenePos());
}

Scene* Handler::getEditorScene() const
{
    return dynamic_cast<Scene*>(scene());
}

void Handler::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    // A grey knob takes no drag: the press goes on to what lies beneath.
    if (!(flags() & QGraphicsItem::ItemIsMovable) || event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    QGraphicsItem::mousePressEvent(event);
    dragging = true;
    pressOffset = localPoint(event);
    if (Scene* editor = getEditorScene())
        editor->slotMoveHandlerStart(getHandledItem());
}

void Handler::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    if (!dragging) {
        event->ignore();
        return;
    }
    // The knob's centre goes where the mouse is, less where on the knob it was pressed; the item
    // follows, and the knob then goes where the item's new value puts it.
    const QPointF target = mapToParent(localPoint(event) - pressOffset);
    setPos(target);
    dragTo(target);
    handlerChanged();
}

void Handler::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    QGraphicsItem::mouseReleaseEvent(event);
    if (!dragging)
        return;
    dragging = false;
    updateHandler();
    if (Scene* editor = getEditorScene())
        editor->slotMoveHandlerEnd(getHandledItem());
}

HandlerPosition::Outline::Outline(QGraphicsItem* parent)
    : QGraphicsItem(parent)
{
    // Under the knobs, which are made after it.
    setFlag(QGraphicsItem::ItemStacksBehindParent);
    setAcceptedMouseButtons(Qt::NoButton);
}

void HandlerPosition::Outline::setPath(const QPainterPath& p)
{
    if (p == path)
        return;
    prepareGeometryChange();
    path = p;
}

QRectF HandlerPosition::Outline::boundingRect() const
{
    // Room for the pens, which are a few pixels wide at any zoom.
    return path.boundingRect().adjusted(-4, -4, 4, 4);
}

QPainterPath HandlerPosition::Outline::shape() const
{
    return QPainterPath();
}

void HandlerPosition::Outline::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    // A blue line on a white edge reads on light and dark fills alike.
    QPen under(Qt::white, 4.0);
    under.setCosmetic(true);
    QPen over(QColor(0x1e, 0x6f, 0xd9), 2.0, Qt::DashLine);
    over.setCosmetic(true);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(under);
    painter->drawPath(path);
    painter->setPen(over);
    painter->drawPath(path);
}

HandlerPosition::HandlerPosition(graphics::BaseItem& item)
    : Handler(QColor(Qt::yellow))
    , item(item)
{
    setFlag(QGraphicsItem::ItemIsMovable);
    // In the item's parent's frame, so that a drag point is a position of the item.
    if (item.parentItem())
        setParentItem(item.parentItem());
    else if (item.scene())
        item.scene()->addItem(this);
    setFlag(QGraphicsItem::ItemStacksBehindParent, false);
    outline = new Outline(this);
}

void HandlerPosition::updateHandler()
{
    setFlag(QGraphicsItem::ItemIgnoresTransformations, item.getIgnoreTransformations());
    setPos(item.pos());
    setKnobCentre(placeKnob());
    // The handle shares the item's parent and origin: only the item's own turn lies between.
    outline->setPath(item.itemTransform(this).map(selectionShape(item)));
    for (HandlerSub* handler : handlers)
        handler->updateHandler();
}

QGraphicsItem* HandlerPosition::getHandledItem() const
{
    return &item;
}

void HandlerPosition::handlerChanged()
{
    updateHandler();
    if (Scene* editor = getEditorScene())
        editor->notifyHandlerChanged();
}

bool HandlerPosition::isDeletable() const
{
    return true;
}

void HandlerPosition::addHandler(HandlerSub* handler)
{
    if (!handler)
        return;
    handler->setParentItem(this);
    handlers.push_back(handler);
}

void HandlerPosition::dragTo(const QPointF& p)
{
    item.setPos(p);
}

HandlerPositionOffset::HandlerPositionOffset(graphics::PositionChildItem& item)
    : HandlerPosition(item)
    , item(item)
{
}

void HandlerPositionOffset::dragTo(const QPointF& p)
{
    item.setPositionOffsetFromParent(p - item.getPositionParent());
}

HandlerSub::HandlerSub(HandlerPosition* position)
    : Handler(position, QColor(Qt::red))
    , position(*position)
{
}

QGraphicsItem* HandlerSub::getHandledItem() const
{
    return position.getHandledItem();
}

void HandlerSub::handlerChanged()
{
    // The other knobs of the item may depend on the value this one changed (a bracket's tips on
    // its rotation): the whole set is brought up to date.
    position.handlerChanged();
}

HandlerRotationRadiusItem::HandlerRotationRadiusItem(HandlerPosition* position, graphics::RadiusItem& item)
    : HandlerSub(position)
    , item(item)
{
}

void HandlerRotationRadiusItem::updateHandler()
{
    setPos(polarPoint(item.getRadiusFull(), item.getRot()));
}

void HandlerRotationRadiusItem::dragTo(const QPointF& p)
{
    item.setRot(directionOf(p));
}

HandlerRotationRotationChildItem::HandlerRotationRotationChildItem(HandlerPosition* position,
                                                                   graphics::RotationChildItem& item)
    : HandlerSub(position)
    , item(item)
{
}

void HandlerRotationRotationChildItem::updateHandler()
{
    setPos(polarPoint(Length, item.getRot()));
}

void HandlerRotationRotationChildItem::dragTo(const QPointF& p)
{
    item.setRotationOffsetFromParent(wrapAngle(directionOf(p) - item.getRotationParent()));
}

StartTipHandler::StartTipHandler(HandlerPosition* position, graphics::ArcBracketItem& item)
    : HandlerSub(position)
    , item(item)
{
}

void StartTipHandler::updateHandler()
{
    setPos(polarPoint(item.getRadius() - item.getTipLength(), item.getRot()));
}

void StartTipHandler::dragTo(const QPointF& p)
{
    item.setTipLength(tipLengthAt(p, item.getRadius()));
}

void EndTipHandler::updateHandler()
{
    const graphics::ArcBracketItem& bracket = getBracket();
    setPos(polarPoint(bracket.getRadius() - bracket.getTipLength(), bracket.getRot() + bracket.getAngle()));
}

RadiusRotationHandler::RadiusRotationHandler(HandlerPosition* position, graphics::ArcTextItem& item)
    : HandlerSub(position)
    , item(item)
{
}

double RadiusRotationHandler::getClearance() const
{
    return graphics::textRect(item.getText(), item.getFont(), item.getPen()).height() / 2 + knobClearance;
}

void RadiusRotationHandler::updateHandler()
{
    setPos(polarPoint(item.getRadius() + getClearance(), item.getRot()));
}

void RadiusRotationHandler::dragTo(const QPointF& p)
{
    item.setRadiusOffsetFromParent(lengthOf(p) - getClearance() - item.getRadiusParent());
    item.setRotationOffsetFromParent(wrapAngle(directionOf(p) - item.getRotationParent()));
}

LineItemEndHandler::LineItemEndHandler(HandlerPosition* position, graphics::LineItem& item)
    : HandlerSub(position)
    , item(item)
{
}

void LineItemEndHandler::updateHandler()
{
    setPos(rotated(item.getEndPoint(), item.getRot()));
}

void LineItemEndHandler::dragTo(const QPointF& p)
{
    item.setEndPoint(rotated(p, -item.getRot()));
}

} // namespace edit
} // namespace nu
