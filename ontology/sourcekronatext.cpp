#include "ontology/sourcekronatext.h"

#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/inputsample.h"
#include "ontology/pathids.h"

#include <QStringRef>
#include <QVector>

namespace Zem {
namespace Ontology {

SourceKronaText::SourceKronaText(const QString& name)
    : fileName(name)
{
}

QString SourceKronaText::getDescription() const
{
    return fileName;
}

QString SourceKronaText::check(const InputSample& sample)
{
    return sample.judge(0, [](const QString& line) {
        if (line.startsWith(QLatin1Char('#')))
            return QString();
        const QStringRef first = line.leftRef(line.indexOf(QLatin1Char('\t')));
        bool ok = false;
        first.toLongLong(&ok, 10);
        return ok ? QString() : QStringLiteral("%1 is not a count").arg(InputSample::quote(first.toString()));
    });
}

void SourceKronaText::read(BuilderSource& builder)
{
    PathIds& paths = builder.getPathIds();
    nu::LineReader lines(fileName);
    if (!lines.isOpen())
        return;
    builder.notifySourceTotalSize(std::max<qint64>(0, lines.getSize()));

    while (nextLine(lines, builder)) {
        if (lines.isTooLong()) {
            skipLine(lines, tooLongReason());
            continue;
        }
        const QString& line = lines.getLine();
        // Blank lines hold nothing, and "#" starts a comment in the format's own tools.
        if (line.trimmed().isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QVector<QStringRef> fields = line.splitRef(QLatin1Char('\t'));
        bool ok = false;
        const qint64 count = fields.at(0).toLongLong(&ok, 10);
        if (!ok) {
            skipLine(lines, QStringLiteral("%1 is not a count").arg(quoted(fields.at(0))));
            continue;
        }
        // Negative counts would make shares of the whole meaningless.
        if (count < 0) {
            skipLine(lines, QStringLiteral("%1 is a negative count").arg(quoted(fields.at(0))));
            continue;
        }
        // Empty fields at the end of a line name nothing (the format's own tools drop them),
        // so "319<TAB>" counts for the root like "319".
        int last = fields.size() - 1;
        while (last > 0 && fields.at(last).isEmpty())
            --last;
        int node = PathIds::root;
        for (int i = 1; i <= last; ++i)
            node = paths.child(node, QStringView(fields.at(i)));
        paths.addCount(node, count);
    }
    paths.writeCounts();
}

} // namespace Ontology
} // namespace Zem
