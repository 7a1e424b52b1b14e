#pragma once

#include "nu/edit/graphicsitemmanager.h"
#include "nu/edit/scene.h"
#include "nu/jsondatafile.h"

namespace Sorvik {
namespace Edit {

// The editor window's scene, and the chart file it saves: a JSON file with the descriptor
// "sorvik-piechart", version 1. A cursor mode decides what a press does: select, or make one
// annotation there (on the editable item under the press, if any) and go back to select.
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

    enum class CursorMode { Select, ArcText, ArcBracket, RectText, ElbowText, Line, SubSpace };
    Q_ENUM(CursorMode)

    static const QString DESCRIPTOR;
    static const int VERSION;
    static nu::JsonDataFile::Info getFileInfo(const QString& path);

    explicit Scene(ItemManager& manager, QObject* parent = nullptr);

    CursorMode getCursorMode() const { return cursorMode; }
    void setCursorMode(CursorMode mode);

    // Makes what the mode makes at point, on parent when given; the new item's id or 0.
    nu::edit::PropertyItem::Id createItem(CursorMode mode, const QPointF& point, QGraphicsItem* parent);

signals:
    // Also when a creation ends and the mode returns to select.
    void signalCursorModeChanged(Sorvik::Edit::Scene::CursorMode mode);

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;

private:
    CursorMode cursorMode = CursorMode::Select;
};

} // namespace Edit
} // namespace Sorvik
