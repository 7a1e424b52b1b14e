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
