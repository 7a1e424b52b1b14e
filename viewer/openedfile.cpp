#include "viewer/openedfile.h"

#include "ontology/inputformat.h"
#include "ontology/inputsample.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace Sorvik {
namespace Viewer {

namespace {

// How every SQLite database file begins.
const QByteArray sqliteHeader = QByteArrayLiteral("SQLite format 3\0");

QString shown(const QString& fileName)
{
    return QDir::toNativeSeparators(fileName);
}

} // namespace

OpenedFile::OpenedFile(const QString& fileName)
{
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly))
        return;
    if (file.read(sqliteHeader.size()) == sqliteHeader) {
        kind = Chart;
        return;
    }
    file.close();
    format = Zem::Ontology::InputFormat::detect(Zem::Ontology::InputSample(fileName));
    if (format)
        kind = Input;
}

QString OpenedFile::getInputProblem(const Zem::Ontology::InputFormat& format, const QString& fileName)
{
    if (fileName.trimmed().isEmpty())
        return QObject::tr("No input file was chosen: choose %1 to make the pie chart from.").arg(format.description);
    const QFileInfo info(fileName);
    if (!info.exists())
        return QObject::tr("%1 doesn't exist.").arg(shown(fileName));
    if (info.isDir())
        return QObject::tr("%1 is a folder, not a file.").arg(shown(fileName));
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return QObject::tr("%1 couldn't be read: %2.").arg(shown(fileName), file.errorString());
    if (info.size() == 0)
        return QObject::tr("%1 is empty.").arg(shown(fileName));
    file.close();
    const Zem::Ontology::InputSample sample(fileName);
    if (!sample.isReadable())
        return QObject::tr("%1 couldn't be read: %2.").arg(shown(fileName), sample.getError());
    if (format.check) {
        const QString problem = format.check(sample);
        if (!problem.isEmpty())
            return QObject::tr("%1 doesn't look like %2: %3.").arg(shown(fileName), format.description, problem);
    }
    return QString();
}

QString OpenedFile::withChartSuffix(const QString& fileName)
{
    if (fileName.isEmpty() || !QFileInfo(fileName).suffix().isEmpty())
        return fileName;
    return fileName + QStringLiteral(".piechart");
}

} // namespace Viewer
} // namespace Sorvik
