#pragma once

#include "nu/edit/graphicsitemmanager.h"
#include "nu/edit/scene.h"
#include "nu/jsondatafile.h"

namespace Sorvik {
namespace Edit {

// The editor window's scene, and the chart file it saves: a JSON file with the descriptor
// "sorvik-piechart", version 1.
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

    static const QString DESCRIPTOR;
    static const int VERSION;
    static nu::JsonDataFile::Info getFileInfo(const QString& path);

    explicit Scene(ItemManager& manager, QObject* parent = nullptr);
};

} // namespace Edit
} // namespace Sorvik
