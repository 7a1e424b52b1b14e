#pragma once

#include "nu/edit/propertyitem.h"
#include "nu/edit/undomanager.h"
#include "nu/jsondatafile.h"

#include <QGraphicsScene>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace nu {
namespace edit {

class GraphicsItemManager;
class Handler;
class PropertiesWidget;

// The editor's scene: holds the chart's graphics items, whose ids and editable wrappers the item
// manager keeps, and the undo history of the chart. A press selects the topmost editable item
// and shows its knobs; dragging a knob, creating, deleting and importing are each one undo step.
class Scene : public QGraphicsScene
{
    Q_OBJECT
public:
    // The radius of a new arc text or bracket, in scene units.
    static constexpr double arcRadius = 100.0;
    // The canvas of a new or empty chart, in scene units.
    static constexpr QRectF defaultCanvas{-500, -500, 1000, 1000};
    // A rectangular bracket has no editable type yet: asking for one makes nothing.
    static constexpr int rectBracketType = 9;

    // The live knob sets; the scene deletes them when the selection changes.
    using Handlers = std::vector<std::unique_ptr<Handler>>;
    // Property values by full name.
    using Values = std::vector<std::pair<QString, QVariant>>;

    // The manager is not owned; it works on this scene from now on.
    explicit Scene(GraphicsItemManager& manager, QObject* parent = nullptr);
    ~Scene() override;

    GraphicsItemManager& getItemManager() const { return manager; }
    // For the properties sheet, which records its changes itself.
    UndoManager& getUndoManager() { return undoManager; }
    // A new properties sheet, owned by parent, that shows the item selected or created here and
    // records its edits in this scene's history. It must not outlive the scene.
    PropertiesWidget* getPropertiesWidget(QWidget* parent = nullptr);

    // Whether the chart differs from the one last saved or loaded.
    bool hasChanged() const { return undoManager.hasChanged(); }
    bool canUndo() const { return undoManager.canUndo(); }
    bool canRedo() const { return undoManager.canRedo(); }
    // Marks the chart as saved.
    void setClean();

    // Deletes every item and the whole undo history.
    void reset();
    bool getSubSpaceVisible() const { return subSpaceVisible; }

    // Shows the item's knobs instead of the current ones; false (and no knobs) for an item the
    // manager does not know or cannot give knobs.
    bool generateItemHandler(QGraphicsItem* item);
    // The item the knobs are on, or null.
    QGraphicsItem* getHandledItem() const;
    // Shows the item's knobs and tells whom it may concern; false when it has none.
    bool selectItem(QGraphicsItem* item);
    // Records the item in the open undo step and deletes it with its children, children first.
    void deleteItem(QGraphicsItem* item);
    // Drops the knobs shown on this item, if any; called before the item is deleted.
    virtual void deleteItemHandler(QGraphicsItem* item);
    // A knob being deleted by its Qt parent (the item's parent going) leaves the list.
    void releaseHandler(Handler* handler);
    // A knob changed its item.
    void notifyHandlerChanged();

    // New annotations, each one undo step: at point, or on parent (which then places them) when
    // one is given. Each returns the new item's id (the text's for an elbow text), which is then
    // selected, or 0 when nothing was made.
    PropertyItem::Id itemAddArcBracket(const QPointF& point, QGraphicsItem* parent = nullptr);
    // Type 9 is no editable type: makes nothing.
    PropertyItem::Id itemAddRectBracket(const QPointF& point, QGraphicsItem* parent = nullptr);
    PropertyItem::Id itemAddArcText(const QPointF& point, QGraphicsItem* parent = nullptr);
    PropertyItem::Id itemAddRectText(const QPointF& point, QGraphicsItem* parent = nullptr);
    PropertyItem::Id itemAddElbowText(const QPointF& point, QGraphicsItem* parent = nullptr);
    PropertyItem::Id itemAddLine(const QPointF& point, QGraphicsItem* parent = nullptr);
    PropertyItem::Id itemAddSubSpace(const QPointF& point, QGraphicsItem* parent = nullptr);

    // Sets the values on the items as one undo step (an item without one of the values keeps
    // it); false when nothing changed, and then no step is recorded.
    bool changeItems(const std::vector<QGraphicsItem*>& items, const Values& values);
    // The same, with values of its own for each item.
    bool changeItems(const std::vector<std::pair<QGraphicsItem*, Values>>& changes);

    // The bounds of everything drawn, knobs apart, in scene coordinates: what is painted, not the
    // boxes of turned items; empty for an empty scene.
    QRectF getDrawingRect() const;
    // What an image shows: the drawing with the same margin on every side.
    QRectF getImageRect() const;
    // The drawing as it is shown, without knobs, on white; scale is pixels per scene unit. SVG
    // and PDF keep texts as text. The file is written completely or not at all: throw
    // graphics::SceneImage::WriteException.
    void saveToSvg(const QString& path);
    void saveToPng(const QString& path, double scale = 1.0);
    void saveToPdf(const QString& path);

    // Writes the chart file; the chart is then clean. Throws JsonDataFile::FileOpenException.
    void saveToFile(const JsonDataFile::Info& info);
    // Replaces the chart by the file's, with a fresh history, and fits the canvas. The file is
    // read and checked first: a file that can't be loaded throws JsonDataFile's exceptions and
    // leaves the chart as it was. Returns how many elements of the file were skipped.
    int loadFromFile(const JsonDataFile::Info& info);
    // Adds the file's items to the chart as one undo step, and fits the canvas. Throws as load.
    int importFromFile(const JsonDataFile::Info& info);

    // The editable item under a scene point, for a press: the topmost item, skipping those that
    // are not editable and grey knobs; a knob or a subspace ends the search. A hidden subspace
    // still covers its origin: it is not picked, and neither is anything beneath it there.
    enum class Pick { Nothing, Handle, Blocked, Item };
    std::pair<Pick, QGraphicsItem*> pickItem(const QPointF& point,
                                             const QTransform& deviceTransform = QTransform()) const;

signals:
    void signalItemCreated(nu::edit::PropertyItem::Id id);
    // 0 when nothing is selected.
    void signalItemSelected(nu::edit::PropertyItem::Id id);
    void signalSceneChanged();
    void signalHandlerChanged();
    // A chart was loaded or imported.
    void signalChangeApplied();
    // What can be undone or redone, or whether the chart is saved, may have changed.
    void signalUndoStateChanged();
    void signalSubSpacesVisibleChanged(bool visible);

public slots:
    void slotMoveHandlerStart(QGraphicsItem* item);
    void slotMoveHandlerEnd(QGraphicsItem* item);
    // After a change made elsewhere (the properties sheet): the knobs follow.
    void slotUpdate();
    void slotUndo();
    void slotRedo();
    // Deletes the selected item with everything on it, as one undo step.
    void slotDeleteSelected();
    // The scene rectangle becomes the drawing's bounds grown by 20 on every side.
    void slotFitCanvas();
    void slotEditSubSpacesVisible(bool visible);
    void slotDeselect();

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    // The transform of the view an event came through, for items that ignore transformations.
    static QTransform deviceTransformOf(const QGraphicsSceneMouseEvent* event);
    // Shows the new item's knobs and announces it.
    void notifyItemCreated(PropertyItem::Id id);

private:
    // What an action changed besides the drawing, for announce().
    enum Change { KnobsChanged = 1, Deselected = 2, ChartApplied = 4 };
    // Tells the views, the sheet and the window what an action changed, always in this order:
    // the knobs, the new item (created, then selected), the selection cleared, a chart loaded or
    // imported, the drawing, and what can be undone.
    void announce(int changes, PropertyItem::Id created = 0);
    // Within an open undo step: a new item of the type with the values, placed on parent or at
    // point. Null when the type can't be made.
    std::shared_ptr<PropertyItem> makeItem(int type, const Values& values, const QPointF& point,
                                           QGraphicsItem* parent);
    PropertyItem::Id makeOne(int type, const Values& values, const QPointF& point, QGraphicsItem* parent);
    // A new arc text below its circle's centre (on the lower half of a chart) runs the other way
    // round, so that it reads upright.
    void turnUpright(PropertyItem& item);
    // Grows the canvas, if need be, to take in the items with a margin.
    void growCanvasOver(const std::vector<PropertyItem::Id>& ids);
    // Runs make in one undo step; what it returns is selected and announced. 0 when it made nothing.
    PropertyItem::Id createInOneStep(const std::function<std::shared_ptr<PropertyItem>()>& make);
    void deleteHandlers();
    // What a text made on the item starts as: the label of the slice it hangs on, if any.
    static QString labelOf(QGraphicsItem* item);
    // Ends a knob drag still under way as its own step, before another action (a shortcut
    // pressed while the mouse is held) opens one.
    void closeDrag();
    // Knobs anew on the handled item after its values or its parent changed under them.
    void refreshHandlers(PropertyItem::Id handled);
    // Undo or redo, when there is a step, with the knobs and views following.
    void stepThroughHistory(bool (UndoManager::*can)() const, void (UndoManager::*step)());
    void applySubSpaceVisibility(bool visible);
    void undoStateChanged();

    GraphicsItemManager& manager;
    UndoManager undoManager;
    Handlers handlers;
    bool subSpaceVisible = true;
    bool dragOpen = false;
    // The items made by the creation under way.
    std::vector<PropertyItem::Id> madeInStep;
};

} // namespace edit
} // namespace nu
