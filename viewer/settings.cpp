#include "viewer/settings.h"

#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

namespace Sorvik {
namespace App {

namespace {
QSettings store()
{
    return QSettings(QStringLiteral("zem"), QStringLiteral("sorvik-piechart"));
}
} // namespace

const QString Settings::taxonomyFileName = QStringLiteral("ncbi.ontology");

QString Settings::getPath() const
{
    return store().value(QStringLiteral("path")).toString();
}

void Settings::setPath(const QString& path)
{
    store().setValue(QStringLiteral("path"), path);
}

QDir Settings::getPathDir() const
{
    return QDir(getPath());
}

QString Settings::getTaxonomyFile() const
{
    return getPathDir().absoluteFilePath(taxonomyFileName);
}

QString Settings::getPalette() const
{
    return store().value(QStringLiteral("chart/palette"), QStringLiteral("soft")).toString();
}

void Settings::setPalette(const QString& name)
{
    store().setValue(QStringLiteral("chart/palette"), name);
}

bool Settings::isCollapsing() const
{
    return store().value(QStringLiteral("chart/collapse-chains"), true).toBool();
}

void Settings::setCollapsing(bool on)
{
    store().setValue(QStringLiteral("chart/collapse-chains"), on);
}

bool Settings::isShowingRawNames() const
{
    return store().value(QStringLiteral("chart/raw-names"), false).toBool();
}

void Settings::setShowingRawNames(bool on)
{
    store().setValue(QStringLiteral("chart/raw-names"), on);
}

QString Settings::getDataFolder() const
{
    const QString path = getPath();
    return path.isEmpty() ? getDefaultDataFolder() : QDir(path).absolutePath();
}

QString Settings::getDefaultDataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
}

QString Settings::getLastFolder(const QString& purpose) const
{
    return store().value(QStringLiteral("last-folder/") + purpose).toString();
}

void Settings::setLastFolder(const QString& purpose, const QString& fileOrFolder)
{
    const QFileInfo info(fileOrFolder);
    store().setValue(QStringLiteral("last-folder/") + purpose, info.isDir() ? info.absoluteFilePath() : info.absolutePath());
}

} // namespace App
} // namespace Sorvik
