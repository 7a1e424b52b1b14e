#include "ontology/sourceqiimetext.h"

#include "nu/parser/bcp.h"
#include "ontology/buildersource.h"
#include "ontology/nodekeys.h"
#include "ontology/pathids.h"

#include <QFile>
#include <QHash>
#include <QTextStream>

#include <cmath>
#include <limits>

namespace Zem {
namespace Ontology {

namespace {

void configure(nu::parser::BCP& rows)
{
    rows.setRowTerminator(QStringLiteral("\n"));
    rows.setFieldSeparator(QStringLiteral("\t"));
    rows.setFinalTerminator(QStringLiteral("\n"));
}

} // namespace

SourceQiimeText::SourceQiimeText(const QString& name, int valueColumn, double factor)
    : fileName(name)
    , column(valueColumn)
    , multiplier(factor)
{
}

QString SourceQiimeText::getDescription() const
{
    return fileName;
}

QStringList SourceQiimeText::readHeader(nu::parser::BCP& rows)
{
    while (rows.next()) {
        const QStringRef line = rows.getLineRef();
        if (line.startsWith(QLatin1Char('#')) && !line.contains(QLatin1Char('\t')))
            continue;
        QStringList header;
        for (int i = 0; i < rows.getFieldCount(); ++i)
            header << rows.get(i);
        return header;
    }
    return QStringList();
}

QStringList SourceQiimeText::readColumnNames(const QString& fileName)
{
    QFile file(fileName);
    QTextStream stream;
    if (!openText(file, stream))
        return QStringList();
    nu::parser::BCP rows(stream);
    configure(rows);
    QStringList header;
    try {
        header = readHeader(rows);
    } catch (const nu::parser::BCP::RowTooLongException&) {
        return QStringList();
    }
    if (header.size() < 2)
        return QStringList();
    header.removeFirst();
    return header;
}

QString SourceQiimeText::cleanName(const QString& part)
{
    QString name = part;
    name.replace(QLatin1Char('_'), QLatin1Char(' '));
    return name.trimmed();
}

void SourceQiimeText::read(BuilderSource& builder)
{
    PathIds paths(builder);
    QFile file(fileName);
    QTextStream stream;
    if (!openText(file, stream))
        return;
    builder.notifySourceTotalSize(file.size());

    nu::parser::BCP rows(stream);
    configure(rows);
    readHeader(rows);

    const QString other = QStringLiteral("Other");
    // The value text of each path, or the sum of its values when a path recurs.
    QHash<int, QPair<QString, double>> percentages;
    int line = 0;
    while (rows.next()) {
        builder.checkCancelled(++line);
        builder.notifySourceCurrentPos(file.pos());
        if (column < 0 || column >= rows.getFieldCount() - 1)
            continue;

        int node = PathIds::root;
        const QVector<QStringRef> parts = rows.getRef(0).split(QLatin1Char(';'));
        for (const QStringRef& part : parts) {
            const QString name = cleanName(part.toString());
            if (name == other)
                break;
            node = paths.child(node, QStringView(name));
        }

        const QStringRef valueText = rows.getRef(column + 1);
        bool ok = false;
        const double value = valueText.toDouble(&ok);
        const double scaled = value * multiplier;
        // Counts must be whole, non-negative and representable.
        if (!ok || !std::isfinite(scaled) || scaled < 0.0 || scaled >= 9.0e18)
            continue;
        paths.addCount(node, static_cast<qint64>(scaled));
        auto it = percentages.find(node);
        if (it == percentages.end())
            percentages.insert(node, qMakePair(valueText.toString(), value));
        else
            it.value() = qMakePair(QString::number(it.value().second + value), it.value().second + value);
    }
    paths.writeCounts();
    for (auto it = percentages.constBegin(); it != percentages.constEnd(); ++it)
        builder.addData(paths.getId(it.key()), NodeKey::percentage, it.value().first);
}

} // namespace Ontology
} // namespace Zem
