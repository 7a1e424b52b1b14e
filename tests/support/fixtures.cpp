#include "tests/support/fixtures.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <zlib.h>

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

QString writeFile(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? fileName : QString();
}

QByteArray gzipped(const QByteArray& data)
{
    z_stream z{};
    if (deflateInit2(&z, Z_BEST_SPEED, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK)
        return QByteArray();
    QByteArray out(int(deflateBound(&z, uLong(data.size()))), Qt::Uninitialized);
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.constData()));
    z.avail_in = uInt(data.size());
    z.next_out = reinterpret_cast<Bytef*>(out.data());
    z.avail_out = uInt(out.size());
    const int result = deflate(&z, Z_FINISH);
    out.resize(int(z.total_out));
    deflateEnd(&z);
    return result == Z_STREAM_END ? out : QByteArray();
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
