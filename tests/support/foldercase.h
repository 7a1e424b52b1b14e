#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace Sorvik {
namespace Test {

// A fresh folder for each test function, under one top folder that lasts as long as the test
// object. Call start() from init().
class FolderCase : public QObject
{
protected:
    void start();
    // Sends the temporary files of the code under test to the top folder's "tmp", where a test
    // can see that none is left behind.
    void catchTemporaryFiles();
    QString path(const QString& name) const { return dir->filePath(name); }
    // Writes the file into the case's folder: its name, or an empty string when it failed.
    QString write(const QString& name, const QByteArray& content) const;

    QTemporaryDir top;
    std::unique_ptr<QTemporaryDir> dir;
};

} // namespace Test
} // namespace Sorvik
