#pragma once

#include "nu/edit/handlergeometry.h"

#include <QColor>
#include <QGraphicsItem>

#include <vector>

namespace nu {

namespace graphics {
class ArcBracketItem;
class ArcTextItem;
class BaseItem;
class LineItem;
class PositionChildItem;
class RadiusItem;
class RotationChildItem;
} // namespace graphics

namespace edit {

class HandlerPosition;
class Scene;

// A round knob the editor puts on the selected item; dragging it changes one geometric value of
// the item. A drag is one undo step: the press opens it and the release closes it in the editor
// scene. Handles live in the editor scene, which keeps them (Scene::generateItemHandler); one
// deleted with an item's parent tells the scene it is gone.
class Handler : public QGraphicsItem
{
public:
    // A knob above every item.
    explicit Handler(const QColor& color);
    // A movable knob on a parent handle, painted under it.
    Handler(QGraphicsItem* parent, const QColor& color);
    ~Handler() override;

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    // Moves the knob to where the item's value puts it.
    virtual void updateHandler() = 0;
    virtual QGraphicsItem* getHandledItem() const = 0;
    // The knob changed its item: bring the knobs up to date and tell the scene.
    virtual void handlerChanged() = 0;
    // Whether the editor's Delete removes the handled item.
    virtual bool isDeletable() const;

    // Grey and immovable: the item takes this value from its parent.
    void notApply();

    double getRadius() const { return radius; }
    QColor getColor() const { return color; }
    // Where the round knob is drawn and taken, in knob coordinates: its origin unless the
    // origin lies on what the knob edits.
    QPointF getKnobCentre() const { return knobCentre; }

protected:
    void setKnobCentre(const QPointF& centre);
    // The knob was dragged to p (in its parent's coordinates): change the item accordingly.
    virtual void dragTo(const QPointF& p) = 0;
    Scene* getEditorScene() const;
    // Where the event's mouse is, in knob coordinates.
    QPointF localPoint(const QGraphicsSceneMouseEvent* event) const;

    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;

private:
    double radius = 4.0;
    QColor color;
    QPointF knobCentre;
    bool dragging = false;
    // Where on the knob the drag began, in knob coordinates.
    QPointF pressOffset;
};

class HandlerSub;

// The knob on an item's origin, which moves the item; the item's other knobs are its children,
// so that they move with it. It sits in the frame of the item's parent, and outlines the item
// under its knobs so that the selection shows.
class HandlerPosition : public Handler
{
public:
    // The selected item's outline: drawn, never hit.
    class Outline : public QGraphicsItem
    {
    public:
        explicit Outline(QGraphicsItem* parent);
        void setPath(const QPainterPath& path);
        const QPainterPath& getPath() const { return path; }
        QRectF boundingRect() const override;
        QPainterPath shape() const override;
        void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    private:
        QPainterPath path;
    };

    explicit HandlerPosition(graphics::BaseItem& item);

    void updateHandler() override;
    QGraphicsItem* getHandledItem() const override;
    void handlerChanged() override;
    // The editor deletes every item it shows knobs on, chart slices included (with what hangs on
    // them).
    bool isDeletable() const override;

    // Takes a knob made with this handle as its parent.
    void addHandler(HandlerSub* handler);
    const std::vector<HandlerSub*>& getHandlers() const { return handlers; }
    const Outline& getOutline() const { return *outline; }

protected:
    void dragTo(const QPointF& p) override;
    graphics::BaseItem& getItem() const { return item; }
    // Where the knob is drawn relative to the item's origin, in knob coordinates.
    virtual QPointF placeKnob() const { return QPointF(); }

private:
    graphics::BaseItem& item;
    Outline* outline = nullptr;
    std::vector<HandlerSub*> handlers;
};

// A position knob for an item whose position is an offset from its parent's anchor point.
class HandlerPositionOffset : public HandlerPosition
{
public:
    explicit HandlerPositionOffset(graphics::PositionChildItem& item);

protected:
    void dragTo(const QPointF& p) override;

private:
    graphics::PositionChildItem& item;
};

// A knob for one further value of the item of its position handle.
class HandlerSub : public Handler
{
public:
    explicit HandlerSub(HandlerPosition* position);

    QGraphicsItem* getHandledItem() const override;
    void handlerChanged() override;

protected:
    HandlerPosition& getPosition() const { return position; }

private:
    HandlerPosition& position;
};

// The direction of an item drawn at a radius: a knob on that radius at the item's rotation.
class HandlerRotationRadiusItem : public HandlerSub
{
public:
    HandlerRotationRadiusItem(HandlerPosition* position, graphics::RadiusItem& item);
    void updateHandler() override;

protected:
    void dragTo(const QPointF& p) override;

private:
    graphics::RadiusItem& item;
};

// The rotation of an item kept as an offset from its parent's direction: a knob 30 units out.
class HandlerRotationRotationChildItem : public HandlerSub
{
public:
    static constexpr double Length = 30.0;

    HandlerRotationRotationChildItem(HandlerPosition* position, graphics::RotationChildItem& item);
    void updateHandler() override;

protected:
    void dragTo(const QPointF& p) override;

private:
    graphics::RotationChildItem& item;
};

// The span of an arc (a bracket, a pie): a knob on the arc at the end of the span.
template <class T>
class HandlerAngleAngularItemRadiusItem : public HandlerSub
{
public:
    HandlerAngleAngularItemRadiusItem(HandlerPosition* position, T& item)
        : HandlerSub(position)
        , item(item)
    {
    }
    void updateHandler() override
    {
        setPos(handlergeometry::polarPoint(item.getRadiusFull(), item.getRot() + item.getAngle()));
    }

protected:
    void dragTo(const QPointF& p) override
    {
        item.setAngle(handlergeometry::spanTo(p, item.getRot(), item.getAngle()));
    }

private:
    T& item;
};

// The radius of an arc item kept as an offset from its parent's radius: a knob on its outer edge
// in the middle of its span.
template <class T>
class HandlerRadiusAngularItemRadiusChildItem : public HandlerSub
{
public:
    HandlerRadiusAngularItemRadiusChildItem(HandlerPosition* position, T& item)
        : HandlerSub(position)
        , item(item)
    {
    }
    void updateHandler() override
    {
        setPos(handlergeometry::polarPoint(item.getRadiusFull(), item.getRot() + item.getAngle() / 2));
    }

protected:
    void dragTo(const QPointF& p) override
    {
        item.setRadiusOffsetFromParent(handlergeometry::lengthOf(p) - item.getRadiusParent());
    }

private:
    T& item;
};

// A bracket's tip length, by the inner end of its start tip.
class StartTipHandler : public HandlerSub
{
public:
    StartTipHandler(HandlerPosition* position, graphics::ArcBracketItem& item);
    void updateHandler() override;

protected:
    void dragTo(const QPointF& p) override;
    graphics::ArcBracketItem& getBracket() const { return item; }

private:
    graphics::ArcBracketItem& item;
};

// A bracket's tip length, by the inner end of its end tip.
class EndTipHandler : public StartTipHandler
{
public:
    using StartTipHandler::StartTipHandler;
    void updateHandler() override;
};

// An arc text's radius and rotation at once: a knob on the line through the middle of the text,
// just outside the band the letters take.
class RadiusRotationHandler : public HandlerSub
{
public:
    RadiusRotationHandler(HandlerPosition* position, graphics::ArcTextItem& item);
    void updateHandler() override;

protected:
    void dragTo(const QPointF& p) override;

private:
    // From the text's centre line to the knob.
    double getClearance() const;

    graphics::ArcTextItem& item;
};

// A line's far end.
class LineItemEndHandler : public HandlerSub
{
public:
    LineItemEndHandler(HandlerPosition* position, graphics::LineItem& item);
    void updateHandler() override;

protected:
    void dragTo(const QPointF& p) override;

private:
    graphics::LineItem& item;
};

} // namespace edit
} // namespace nu
