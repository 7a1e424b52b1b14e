#include "ontology/sourcemergedmetaphlan.h"

#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/inputsample.h"
#include "ontology/pathids.h"
#include "ontology/sampletable.h"

#include <cmath>

namespace Zem {
namespace Ontology {

SourceMergedMetaphlan::SourceMergedMetaphlan(const QString& name, int sampleColumn, bool keep, double factor)
    : SourceMetaphlan(name, keep, factor)
    , column(sampleColumn)
    , table(SampleTable::share(name, QStringLiteral("metaphlan-merged")))
{
}

int SourceMergedMetaphlan::readMergedHeader(const QString& line)
{
    const QVector<QStringRef> names = line.splitRef(QLatin1Char('\t'));
    // The names the tool's versions give the clade column; a QIIME table's is "Taxon" or "#OTU ID".
    const QStringRef clade = names.at(0).trimmed();
    if (clade != QLatin1String("clade_name") && clade != QLatin1String("ID"))
        return -1;
    const QStringRef second = names.value(1).trimmed();
    const int first = second == QLatin1String("NCBI_tax_id") || second == QLatin1String("clade_taxid") ? 2 : 1;
    return names.size() > first ? first : -1;
}

QString SourceMergedMetaphlan::check(const InputSample& sample)
{
    const QStringList& lines = sample.getLines();
    int header = 0;
    while (header < lines.size() && InputSample::isBlankOrComment(lines.at(header)))
        ++header;
    const int first = header < lines.size() && !sample.isTooLong(header) ? readMergedHeader(lines.at(header)) : -1;
    if (first < 0)
        return QStringLiteral("line %1: it is no header of a merged table").arg(header + 1);
    return sample.judge(header + 1, [first](const QString& line) {
        if (line.startsWith(QLatin1Char('#')))
            return QString();
        const QVector<QStringRef> fields = line.splitRef(QLatin1Char('\t'));
        if (fields.size() <= first)
            return QStringLiteral("it has %1 columns").arg(fields.size());
        QString taxid;
        double value = 0.0;
        QString problem = checkClade(fields.at(0).trimmed());
        if (problem.isEmpty() && first == 2)
            problem = readTaxidPath(fields.at(1), taxid);
        return problem.isEmpty() ? readShare(fields.at(first), value) : problem;
    });
}

QStringList SourceMergedMetaphlan::readColumnNames(const QString& fileName)
{
    const QString header = SampleTable::readHeaderLine(fileName);
    const int first = readMergedHeader(header);
    if (first < 0)
        return QStringList();
    QStringList names = header.split(QLatin1Char('\t')).mid(first);
    for (QString& name : names)
        name = name.trimmed();
    return names;
}

void SourceMergedMetaphlan::readTable(SampleTable& table, nu::LineReader& lines, BuilderSource& builder)
{
    int first = -1;
    while (SampleTable::nextLine(lines, builder)) {
        if (lines.isTooLong()) {
            table.skip(lines.getLineNumber(), -1, tooLongReason());
            continue;
        }
        const QString& line = lines.getLine();
        if (InputSample::isBlankOrComment(line))
            continue;
        const QVector<QStringRef> fields = line.splitRef(QLatin1Char('\t'));
        if (first < 0) {
            first = readMergedHeader(line);
            if (first < 0) {
                table.skip(lines.getLineNumber(), -1, QStringLiteral("it is no header of a merged table"));
                return;
            }
            table.setColumns(fields.size() - first, 1, lines.getLineNumber());
            continue;
        }
        QString taxid;
        const QStringRef clade = fields.at(0).trimmed();
        QString problem = fields.size() != first + table.getColumnCount()
            ? QStringLiteral("it has %1 columns, not %2").arg(fields.size()).arg(first + table.getColumnCount())
            : checkClade(clade);
        if (problem.isEmpty() && first == 2)
            problem = readTaxidPath(fields.at(1), taxid);
        if (!problem.isEmpty()) {
            table.skip(lines.getLineNumber(), -1, problem);
            continue;
        }
        table.addRow(SampleTable::Row{lines.getLineNumber(), 0, {clade.toString(), taxid}});
        for (int sample = 0; sample < table.getColumnCount(); ++sample) {
            double value = 0.0;
            problem = readShare(fields.at(first + sample), value);
            if (!problem.isEmpty()) {
                table.skip(lines.getLineNumber(), sample, problem);
                value = std::nan("");
            }
            table.setValue(sample, 0, value);
        }
    }
}

void SourceMergedMetaphlan::read(BuilderSource& builder)
{
    table->loadColumn(builder, &SourceMergedMetaphlan::readTable, column,
                      [this](qint64 line, const QString& reason) { skipLine(line, reason); });
    addLinesRead(table->getLinesRead());

    // One path table for every sample of the chart: a clade is one node in all of them.
    PathIds& paths = builder.getPathIds();
    clades.assign(1, Clade{-1, true, false, 0, 0.0});
    double unclassified = 0.0;
    const std::vector<SampleTable::Row>& rows = table->getRows();
    for (size_t i = 0; i < rows.size(); ++i) {
        const double value = table->getValue(i, column);
        // 0 is what the tool writes for a clade the sample lacks.
        if (std::isnan(value) || value <= 0.0)
            continue;
        const QStringRef clade(&rows[i].keys.at(0));
        if (isUnclassified(clade)) {
            unclassified = std::min(unclassified + value, maximumShare);
            continue;
        }
        const QString problem = addClade(builder, paths, clade, value, rows[i].keys.at(1), rows[i].line);
        if (!problem.isEmpty())
            skipLine(rows[i].line, problem);
    }
    writeCounts(builder, paths, keepUnclassified ? unclassified : 0.0);
}

} // namespace Ontology
} // namespace Zem
