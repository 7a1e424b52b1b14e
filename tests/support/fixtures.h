#pragma once

#include <QByteArray>
#include <QString>

namespace Sorvik {
namespace Test {

// A file of the project's own test data (tests/data/...).
QString fixturePath(const QString& name);

// A file's bytes, or none when it can't be read.
QByteArray fileContents(const QString& path);

// Writes the bytes to the file: its name, or an empty string when it could not be written.
QString writeFile(const QString& fileName, const QByteArray& content);
// data compressed as one gzip member, as gzip(1) writes it.
QByteArray gzipped(const QByteArray& data);

// A folder of the real public inputs beside the checkout (../shared/data/real/...), or an empty
// string when the checkout has none.
QString realDataPath(const QString& name = QString());

} // namespace Test
} // namespace Sorvik
