#include "ontology/sourceqiimetext.h"

#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/inputsample.h"
#include "ontology/nodekeys.h"
#include "ontology/pathids.h"

#include <QHash>
#include <QStringRef>
#include <QVector>

#include <cmath>
#include <limits>

namespace Zem {
namespace Ontology {

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

QStringList SourceQiimeText::readHeader(nu::LineReader& lines)
{
    while (lines.next()) {
        // A header too long to keep names no columns; the rows below may still be read.
        if (lines.isTooLong())
            return QStringList();
        const QString& line = lines.getLine();
        if (line.startsWith(QLatin1Char('#')) && !line.contains(QLatin1Char('\t')))
            continue;
        return line.split(QLatin1Char('\t'));
    }
    return QStringList();
}

QStringList SourceQiimeText::readColumnNames(const QString& fileName)
{
    nu::LineReader lines(fileName);
    if (!lines.isOpen())
        return QStringList();
    QStringList header;
    try {
        header = readHeader(lines);
    } catch (const nu::LineReader::ReadException&) {
        return QStringList();
    }
    if (header.size() < 2)
        return QStringList();
    header.removeFirst();
    return header;
}

QString SourceQiimeText::check(const InputSample& sample)
{
    const QStringList& lines = sample.getLines();
    int header = 0;
    while (header < lines.size() && lines.at(header).startsWith(QLatin1Char('#')) && !lines.at(header).contains(QLatin1Char('\t')))
        ++header;
    // A header names its columns: a number first is a data row.
    bool number = false;
    if (header < lines.size())
        lines.at(header).section(QLatin1Char('\t'), 0, 0).toDouble(&number);
    if (header >= lines.size() || !lines.at(header).contains(QLatin1Char('\t')) || number)
        return QStringLiteral("line %1: it is no header with value columns").arg(header + 1);
    return sample.judge(header + 1, [](const QString& line) {
        const QVector<QStringRef> fields = line.splitRef(QLatin1Char('\t'));
        if (fields.size() < 2)
            return QStringLiteral("it has no values");
        // A sample without a value here ("NA") is the chosen column's business only.
        for (int i = 1; i < fields.size(); ++i) {
            bool ok = false;
            fields.at(i).toDouble(&ok);
            if (ok)
                return QString();
        }
        return QStringLiteral("%1 is not a number").arg(InputSample::quote(fields.at(1).toString()));
    });
}

QString SourceQiimeText::cleanName(const QString& part)
{
    QString name = part;
    name.replace(QLatin1Char('_'), QLatin1Char(' '));
    return name.trimmed();
}

void SourceQiimeText::read(BuilderSource& builder)
{
    PathIds& paths = builder.getPathIds();
    nu::LineReader lines(fileName);
    if (!lines.isOpen())
        return;
    builder.notifySourceTotalSize(std::max<qint64>(0, lines.getSize()));
    readHeader(lines);

    const QString other = QStringLiteral("Other");
    // The value text of each path, or the sum of its values when a path recurs.
    QHash<int, QPair<QString, double>> percentages;
    while (nextLine(lines, builder)) {
        if (lines.isTooLong()) {
            skipLine(lines, tooLongReason());
            continue;
        }
        const QString& line = lines.getLine();
        if (line.trimmed().isEmpty())
            continue;
        const QVector<QStringRef> fields = line.splitRef(QLatin1Char('\t'));
        if (column < 0 || column >= fields.size() - 1) {
            skipLine(lines, QStringLiteral("it has no value column %1").arg(column));
            continue;
        }

        int node = PathIds::root;
        const QVector<QStringRef> parts = fields.at(0).split(QLatin1Char(';'));
        for (const QStringRef& part : parts) {
            const QString name = cleanName(part.toString());
            if (name == other)
                break;
            node = paths.child(node, QStringView(name));
        }

        const QStringRef valueText = fields.at(column + 1);
        bool ok = false;
        const double value = valueText.toDouble(&ok);
        const double scaled = value * multiplier;
        // Counts must be whole, non-negative and representable.
        if (!ok || !std::isfinite(scaled) || scaled < 0.0 || scaled >= 9.0e18) {
            skipLine(lines, QStringLiteral("%1 is not a share").arg(quoted(valueText)));
            continue;
        }
        paths.addCount(node, static_cast<qint64>(scaled));
        auto it = percentages.find(node);
        if (it == percentages.end()) {
            // A path that an earlier table of the same chart gave adds to its value too.
            const QString* before = builder.findNode(paths.getId(node))->data.find(NodeKey::percentage);
            if (before)
                percentages.insert(node, qMakePair(QString::number(before->toDouble() + value), before->toDouble() + value));
            else
                percentages.insert(node, qMakePair(valueText.toString(), value));
        } else {
            it.value() = qMakePair(QString::number(it.value().second + value), it.value().second + value);
        }
    }
    paths.writeCounts();
    for (auto it = percentages.constBegin(); it != percentages.constEnd(); ++it)
        builder.addData(paths.getId(it.key()), NodeKey::percentage, it.value().first);
}

} // namespace Ontology
} // namespace Zem
