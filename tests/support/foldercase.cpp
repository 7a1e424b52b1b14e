#include "tests/support/foldercase.h"

#include "tests/support/fixtures.h"

#include <QDir>
#include <QtTest>

namespace Sorvik {
namespace Test {

void FolderCase::start()
{
    QVERIFY(top.isValid());
    dir = std::make_unique<QTemporaryDir>(top.filePath(QStringLiteral("case-XXXXXX")));
    QVERIFY(dir->isValid());
}

void FolderCase::catchTemporaryFiles()
{
    QVERIFY(top.isValid() && QDir(top.path()).mkpath(QStringLiteral("tmp")));
    qputenv("TMPDIR", QFile::encodeName(top.filePath(QStringLiteral("tmp"))));
}

QString FolderCase::write(const QString& name, const QByteArray& content) const
{
    return writeFile(path(name), content);
}

} // namespace Test
} // namespace Sorvik
