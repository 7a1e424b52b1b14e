#include "ontology/sourcecombinedkreport.h"

#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/inputsample.h"
#include "ontology/sampletable.h"

#include <cmath>

namespace Zem {
namespace Ontology {

namespace {

// Before the sample columns, and after them.
constexpr int leadingColumns = 3;
constexpr int trailingColumns = 3;

bool isBlank(const QString& line)
{
    return line.trimmed().isEmpty();
}

// The layout of a row of n columns, reading the totals' columns: the rows are checked once.
SourceKreport::Layout rowLayout(int n)
{
    SourceKreport::Layout layout;
    layout.clade = 1;
    layout.own = 2;
    layout.rank = n - 3;
    layout.taxid = n - 2;
    layout.name = n - 1;
    layout.columns = n;
    return layout;
}

} // namespace

SourceCombinedKreport::SourceCombinedKreport(const QString& name, int sampleColumn, bool keep)
    : SourceKreport(name, keep)
    , column(sampleColumn)
    , table(SampleTable::share(name, QStringLiteral("kreport-combined")))
{
}

int SourceCombinedKreport::readCombinedHeader(const QString& line)
{
    const QStringList names = line.split(QLatin1Char('\t'));
    const int samples = (names.size() - leadingColumns - trailingColumns) / 2;
    if (samples < 1 || names.size() != leadingColumns + trailingColumns + 2 * samples)
        return -1;
    if (names.at(0).trimmed() != QLatin1String("perc") || names.at(1).trimmed() != QLatin1String("tot_all")
        || names.at(2).trimmed() != QLatin1String("tot_lvl"))
        return -1;
    for (int i = 0; i < samples; ++i) {
        if (!names.at(leadingColumns + 2 * i).trimmed().endsWith(QLatin1String("_all"))
            || !names.at(leadingColumns + 2 * i + 1).trimmed().endsWith(QLatin1String("_lvl")))
            return -1;
    }
    return samples;
}

// The "#" lines above the header that name a sample and its report; the counts of samples
// and reads are not.
bool SourceCombinedKreport::isSampleLine(const QString& line)
{
    return line.startsWith(QLatin1Char('#')) && !line.startsWith(QLatin1String("#Number of Samples:"))
        && !line.startsWith(QLatin1String("#Total Number of Reads:"));
}

QString SourceCombinedKreport::check(const InputSample& sample)
{
    const QStringList& lines = sample.getLines();
    int header = 0;
    while (header < lines.size() && InputSample::isBlankOrComment(lines.at(header)))
        ++header;
    if (header >= lines.size() || sample.isTooLong(header) || readCombinedHeader(lines.at(header)) < 0)
        return QStringLiteral("line %1: it is no header of combined reports").arg(header + 1);
    const Layout layout = rowLayout(lines.at(header).split(QLatin1Char('\t')).size());
    return sample.judge(header + 1, [&layout](const QString& line) {
        Row row;
        return parseRow(line.splitRef(QLatin1Char('\t')), layout, row);
    });
}

QStringList SourceCombinedKreport::readColumnNames(const QString& fileName)
{
    nu::LineReader lines(fileName);
    if (!lines.isOpen())
        return QStringList();
    QStringList named;
    try {
        while (lines.next()) {
            const QString& line = lines.getLine();
            if (lines.isTooLong() || isBlank(line))
                continue;
            if (isSampleLine(line)) {
                named << line.mid(1).section(QLatin1Char('\t'), 0, 0).trimmed();
                continue;
            }
            if (line.startsWith(QLatin1Char('#')))
                continue;
            const int samples = readCombinedHeader(line);
            if (samples < 0)
                return QStringList();
            if (named.size() == samples)
                return named;
            QStringList numbered;
            for (int i = 1; i <= samples; ++i)
                numbered << QStringLiteral("S%1").arg(i);
            return numbered;
        }
    } catch (const nu::LineReader::ReadException&) {
    }
    return QStringList();
}

void SourceCombinedKreport::readTable(SampleTable& table, nu::LineReader& lines, BuilderSource& builder)
{
    Layout layout;
    bool headerRead = false;
    while (SampleTable::nextLine(lines, builder)) {
        if (lines.isTooLong()) {
            table.skip(lines.getLineNumber(), -1, tooLongReason());
            continue;
        }
        const QString& line = lines.getLine();
        if (InputSample::isBlankOrComment(line))
            continue;
        if (!headerRead) {
            headerRead = true;
            const int samples = readCombinedHeader(line);
            if (samples < 0) {
                table.skip(lines.getLineNumber(), -1, QStringLiteral("it is no header of combined reports"));
                return;
            }
            table.setColumns(samples, 2, lines.getLineNumber());
            layout = rowLayout(line.count(QLatin1Char('\t')) + 1);
            continue;
        }
        const QVector<QStringRef> fields = line.splitRef(QLatin1Char('\t'));
        Row row;
        QString problem = fields.size() > layout.columns
            ? QStringLiteral("it has %1 columns, not %2").arg(fields.size()).arg(layout.columns)
            : parseRow(fields, layout, row);
        if (!problem.isEmpty()) {
            table.skip(lines.getLineNumber(), -1, problem);
            continue;
        }
        table.addRow(SampleTable::Row{lines.getLineNumber(), row.depth, {row.taxid, row.rank, row.name}});
        for (int sample = 0; sample < table.getColumnCount(); ++sample) {
            qint64 clade = 0;
            qint64 own = 0;
            problem = readCount(fields.at(leadingColumns + 2 * sample), clade);
            if (problem.isEmpty())
                problem = readCount(fields.at(leadingColumns + 2 * sample + 1), own);
            if (!problem.isEmpty()) {
                table.skip(lines.getLineNumber(), sample, problem);
                clade = own = -1;
            }
            table.setValue(sample, 0, clade < 0 ? std::nan("") : double(clade));
            table.setValue(sample, 1, own < 0 ? std::nan("") : double(own));
        }
    }
}

std::vector<SourceKreport::Row> SourceCombinedKreport::rowsOfColumn(const SampleTable& sampleTable, qint64& unclassified) const
{
    const std::vector<SampleTable::Row>& all = sampleTable.getRows();
    // A taxon stays where its clade holds reads of the sample, or where a row below it does (a
    // report that disagrees with itself): leaving it out would hang its children elsewhere.
    std::vector<int> parents(all.size(), -1);
    std::vector<int> open;
    for (int i = 0; i < int(all.size()); ++i) {
        while (!open.empty() && all[size_t(open.back())].depth >= all[size_t(i)].depth)
            open.pop_back();
        parents[size_t(i)] = open.empty() ? -1 : open.back();
        open.push_back(i);
    }
    std::vector<char> kept(all.size(), 0);
    for (size_t i = all.size(); i-- > 0;) {
        const double clade = sampleTable.getValue(i, column, 0);
        if (std::isnan(clade) || std::isnan(sampleTable.getValue(i, column, 1)))
            continue;
        if (clade > 0)
            kept[i] = 1;
        if (kept[i] && parents[i] >= 0)
            kept[size_t(parents[i])] = 1;
    }
    // A row kept for its children whose own value was passed over counts none.
    const auto count = [&sampleTable, this](size_t row, int which) {
        const double value = sampleTable.getValue(row, column, which);
        return std::isnan(value) ? qint64(0) : qint64(value);
    };
    std::vector<Row> rows;
    unclassified = 0;
    for (size_t i = 0; i < all.size(); ++i) {
        if (!kept[i])
            continue;
        const SampleTable::Row& row = all[i];
        const qint64 clade = count(i, 0);
        if (row.keys.at(0) == QLatin1String("0")) {
            unclassified = addCounts(unclassified, clade);
            continue;
        }
        rows.push_back(Row{clade, count(i, 1), row.depth, row.line, row.keys.at(0),
                           row.keys.at(1), row.keys.at(2)});
    }
    return rows;
}

void SourceCombinedKreport::read(BuilderSource& builder)
{
    table->loadColumn(builder, &SourceCombinedKreport::readTable, column,
                      [this](qint64 line, const QString& reason) { skipLine(line, reason); });
    addLinesRead(table->getLinesRead());
    qint64 unclassified = 0;
    const std::vector<Row> rows = rowsOfColumn(*table, unclassified);
    buildTree(builder, rows, keepUnclassified ? unclassified : 0);
}

} // namespace Ontology
} // namespace Zem
