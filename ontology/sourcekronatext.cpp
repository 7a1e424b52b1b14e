#include "ontology/sourcekronatext.h"

#include "nu/parser/bcp.h"
#include "ontology/buildersource.h"
#include "ontology/pathids.h"

#include <QFile>
#include <QTextStream>

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

void SourceKronaText::read(BuilderSource& builder)
{
    PathIds paths(builder);
    QFile file(fileName);
    QTextStream stream;
    if (!openText(file, stream))
        return;
    builder.notifySourceTotalSize(file.size());

    nu::parser::BCP rows(stream);
    rows.setRowTerminator(QStringLiteral("\n"));
    rows.setFieldSeparator(QStringLiteral("\t"));
    rows.setFinalTerminator(QStringLiteral("\n"));
    int line = 0;
    while (rows.next()) {
        builder.checkCancelled(++line);
        builder.notifySourceCurrentPos(file.pos());

        bool ok = false;
        const qint64 count = rows.getRef(0).toLongLong(&ok, 10);
        // Negative counts would make shares of the whole meaningless.
        if (!ok || count < 0)
            continue;
        // Empty fields at the end of a line name nothing (the format's own tools drop them),
        // so "319<TAB>" counts for the root like "319".
        int last = rows.getFieldCount() - 1;
        while (last > 0 && rows.getRef(last).isEmpty())
            --last;
        int node = PathIds::root;
        for (int i = 1; i <= last; ++i)
            node = paths.child(node, QStringView(rows.getRef(i)));
        paths.addCount(node, count);
    }
    paths.writeCounts();
}

} // namespace Ontology
} // namespace Zem
