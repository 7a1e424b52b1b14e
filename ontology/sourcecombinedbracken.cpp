#include "ontology/sourcecombinedbracken.h"

#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/inputsample.h"
#include "ontology/sampletable.h"

#include <cmath>

namespace Zem {
namespace Ontology {

namespace {

const QString readsSuffix = QStringLiteral("_num");

} // namespace

SourceCombinedBracken::SourceCombinedBracken(const QString& name, int sampleColumn, bool keep)
    : SourceTaxonTable(name, Columns{QStringLiteral("taxonomy_id"), QString(), QStringLiteral("name")}, keep)
    , column(sampleColumn)
    , table(SampleTable::share(name, QStringLiteral("bracken-combined")))
{
}

bool SourceCombinedBracken::readCombinedHeader(const QString& line, Places& places, std::vector<int>& samples,
                                               QStringList* names)
{
    const QStringList header = line.split(QLatin1Char('\t'));
    places = Places();
    samples.clear();
    for (int i = 0; i < header.size(); ++i) {
        const QString name = header.at(i).trimmed();
        if (name == QLatin1String("taxonomy_id")) {
            places.taxid = i;
        } else if (name == QLatin1String("name")) {
            places.name = i;
        } else if (name.endsWith(readsSuffix) && name.size() > readsSuffix.size()) {
            samples.push_back(i);
            if (names)
                *names << name.chopped(readsSuffix.size());
        }
    }
    places.count = samples.empty() ? -1 : samples.front();
    return places.taxid >= 0 && !samples.empty();
}

QString SourceCombinedBracken::check(const InputSample& sample)
{
    const QStringList& lines = sample.getLines();
    int header = 0;
    while (header < lines.size() && InputSample::isBlankOrComment(lines.at(header)))
        ++header;
    Places places;
    std::vector<int> samples;
    if (header >= lines.size() || sample.isTooLong(header) || !readCombinedHeader(lines.at(header), places, samples))
        return QStringLiteral("line %1: it is no header with the column taxonomy_id and _num columns").arg(header + 1);
    return sample.judge(header + 1, [&places](const QString& line) {
        QString id;
        qint64 count = 0;
        return line.startsWith(QLatin1Char('#')) ? QString() : readRow(line, places, id, count);
    });
}

QStringList SourceCombinedBracken::readColumnNames(const QString& fileName)
{
    Places places;
    std::vector<int> samples;
    QStringList names;
    return readCombinedHeader(SampleTable::readHeaderLine(fileName), places, samples, &names) ? names : QStringList();
}

void SourceCombinedBracken::readTable(SampleTable& table, nu::LineReader& lines, BuilderSource& builder)
{
    Places places;
    std::vector<int> samples;
    bool headerRead = false;
    int needed = 0;
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
            if (!readCombinedHeader(line, places, samples)) {
                table.skip(lines.getLineNumber(), -1,
                           QStringLiteral("it is no header with the column taxonomy_id and _num columns"));
                return;
            }
            table.setColumns(int(samples.size()), 1, lines.getLineNumber());
            needed = std::max(places.taxid, samples.back()) + 1;
            continue;
        }
        const QVector<QStringRef> fields = line.splitRef(QLatin1Char('\t'));
        QString id;
        QString problem = fields.size() < needed ? QStringLiteral("it has %1 columns, not %2").arg(fields.size()).arg(needed)
                                                 : readId(fields, places, id);
        if (!problem.isEmpty()) {
            table.skip(lines.getLineNumber(), -1, problem);
            continue;
        }
        table.addRow(SampleTable::Row{lines.getLineNumber(), 0, {id}});
        for (int sample = 0; sample < int(samples.size()); ++sample) {
            qint64 count = 0;
            problem = readCount(fields.at(samples[size_t(sample)]), count);
            if (!problem.isEmpty())
                table.skip(lines.getLineNumber(), sample, problem);
            table.setValue(sample, 0, problem.isEmpty() ? double(count) : std::nan(""));
        }
    }
}

void SourceCombinedBracken::read(BuilderSource& builder)
{
    table->loadColumn(builder, &SourceCombinedBracken::readTable, column,
                      [this](qint64 line, const QString& reason) { skipLine(line, reason); });
    addLinesRead(table->getLinesRead());
    QHash<QString, qint64> counts;
    const std::vector<SampleTable::Row>& rows = table->getRows();
    for (size_t i = 0; i < rows.size(); ++i) {
        const double reads = table->getValue(i, column);
        // 0 is what the tool writes for a taxon the sample lacks.
        if (std::isnan(reads) || reads <= 0.0)
            continue;
        qint64& sum = counts[rows[i].keys.at(0)];
        sum = addCounts(sum, qint64(reads));
    }
    writeCounts(builder, counts);
}

} // namespace Ontology
} // namespace Zem
