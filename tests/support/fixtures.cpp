#include "tests/support/fixtures.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace Sorvik {
namespace Test {

QString fixturePath(const QString& name)
{
    return QDir(QStringLiteral(SORVIK_SOURCE_DIR "/tests/data")).filePath(name);
}

QByteArray fileContents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString realDataPath(const QString& name)
{
    const QDir real(QStringLiteral(SORVIK_SOURCE_DIR "/../shared/data/real"));
    if (!real.exists())
        return QString();
    const QString path = name.isEmpty() ? real.absolutePath() : real.absoluteFilePath(name);
    return QFileInfo::exists(path) ? QDir::cleanPath(path) : QString();
}

} // namespace Test
} // namespace Sorvik
