#include "editor/scene.h"

#include "nu/edit/arcbracketitem.h"
#include "nu/edit/arctextitem.h"
#include "nu/edit/lineitem.h"
#include "nu/edit/piecharttextitem.h"
#include "nu/edit/recttextitem.h"
#include "nu/edit/subspaceitem.h"

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

} // namespace Edit
} // namespace Sorvik
