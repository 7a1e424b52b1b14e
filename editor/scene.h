#pragma once

#include "nu/edit/graphicsitemmanager.h"
#include "nu/edit/scene.h"
#include "nu/jsondatafile.h"

#include <QColor>

namespace nu {
namespace graphics {
class PieChartTextItem;
}
} // namespace nu

namespace Sorvik {
namespace Edit {

// The editor window's scene, and the chart file it saves: a JSON file with the descriptor
// "sorvik-piechart", version 1. A cursor mode decides what a press does: select, make one
// annotation there (on the editable item under the press, if any) and go back to select, or
// paint the slice under the press (Shift: with its outer slices) until another mode is chosen.
// Escape goes back to select.
class Scene : public nu::edit::Scene
{
    Q_OBJECT
public:
    // The item types a user edits, saves and loads: arc brackets, arc texts, labelled slices,
    // straight texts, lines and subspaces. Bare slices and pies live inside labelled slices and are
    // never saved or created on their own.
    class ItemManager : public nu::edit::GraphicsItemManager
    {
    public:
        ItemManager();
    };

    enum class CursorMode { Select, ArcText, ArcBracket, RectText, ElbowText, Line, SubSpace, Paint };
    Q_ENUM(CursorMode)

    static const QString DESCRIPTOR;
    static const int VERSION;
    static nu::JsonDataFile::Info getFileInfo(const QString& path);

    explicit Scene(ItemManager& manager, QObject* parent = nullptr);

    CursorMode getCursorMode() const { return cursorMode; }
    void setCursorMode(CursorMode mode);

    // Makes what the mode makes at point, on parent when given; the new item's id or 0.
    nu::edit::PropertyItem::Id createItem(CursorMode mode, const QPointF& point, QGraphicsItem* parent);

    QColor getPaintColor() const { return paintColor; }
    void setPaintColor(const QColor& color);
    // Fills the topmost chart slice at point with the paint colour, and with subtree its outer
    // slices too, in shades lighter ring by ring outward, as one undo step; every label painted
    // turns black or white, whichever reads on its fill. False when there is no slice there or
    // nothing changed.
    bool paintAt(const QPointF& point, bool subtree, const QTransform& deviceTransform = QTransform());

    // Adds an editable copy of a chart (the slice and every slice outside it, with their counts,
    // order, ring widths, colours and labels) without recording it in the history; the copy's
    // labels are the originals' with their shares. Returns the copy's centre slice id.
    nu::edit::PropertyItem::Id copyPieChart(const nu::graphics::PieChartTextItem& root);

signals:
    // Also when a creation ends and the mode returns to select.
    void signalCursorModeChanged(Sorvik::Edit::Scene::CursorMode mode);

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    nu::edit::PropertyItem::Id copySlice(const nu::graphics::PieChartTextItem& from, nu::edit::PropertyItem* parent);

    CursorMode cursorMode = CursorMode::Select;
    QColor paintColor{0x4c, 0x9a, 0xd8};
};

} // namespace Edit
} // namespace Sorvik
