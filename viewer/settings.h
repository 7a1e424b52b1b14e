#pragma once

#include <QDir>
#include <QString>

namespace Sorvik {
namespace App {

// The program's persistent settings: the data folder "path", where the working chart and the
// NCBI taxonomy cache live, and how charts are drawn. Each call reads or writes the store afresh.
class Settings
{
public:
    // The NCBI taxonomy cache in the data folder, shared by the viewer and sorvik-cli.
    static const QString taxonomyFileName;
    // The view limits a chart is first shown with: rings, and the smallest share in percent.
    static constexpr int firstViewMaxLevels = 5;
    static constexpr double firstViewMinPercentage = 0.5;

    QString getPath() const;
    void setPath(const QString& path);
    // The viewer's data folder: "path" (the current folder when it is unset).
    QDir getPathDir() const;
    // The viewer's taxonomy cache, in getPathDir().
    QString getTaxonomyFile() const;
    // sorvik-cli's data folder: "path", or when it is unset the platform's application data
    // folder, so that runs in different folders share one taxonomy. Empty when the platform
    // has no such folder (no home folder).
    QString getDataFolder() const;
    // The application data folder that getDataFolder() falls back on.
    static QString getDefaultDataFolder();

    // How charts are drawn: the palette's name, whether single-child chains are drawn as one
    // slice, and whether names are shown as stored (rank prefixes and underscores).
    QString getPalette() const;
    void setPalette(const QString& name);
    bool isCollapsing() const;
    void setCollapsing(bool on);
    bool isShowingRawNames() const;
    void setShowingRawNames(bool on);

    // Last folders used in file dialogs, so the next dialog opens where the user was.
    QString getLastFolder(const QString& purpose) const;
    void setLastFolder(const QString& purpose, const QString& fileOrFolder);
};

} // namespace App
} // namespace Sorvik
