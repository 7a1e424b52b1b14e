#include "ontology/inputformat.h"

#include "ontology/inputsample.h"
#include "ontology/sourcecombinedbracken.h"
#include "ontology/sourcecombinedkreport.h"
#include "ontology/sourcefrequencies.h"
#include "ontology/sourcekrakenreads.h"
#include "ontology/sourcekreport.h"
#include "ontology/sourcekronatext.h"
#include "ontology/sourcemergedmetaphlan.h"
#include "ontology/sourcemetaphlan.h"
#include "ontology/sourcemgtaxatext.h"
#include "ontology/sourceqiimetext.h"
#include "ontology/sourcetaxontable.h"

#include <QRegularExpression>

#include <algorithm>

namespace Zem {
namespace Ontology {

namespace {

using Options = InputFormat::Options;

bool isNumber(const QString& word)
{
    if (word.isEmpty())
        return false;
    for (const QChar c : word) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
    }
    return true;
}

QStringList wordsOf(const QString& line)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    return line.split(blanks, Qt::SkipEmptyParts);
}

// Counting a classifier's report as an id list would give a plausible-looking but meaningless
// chart: these checks refuse what does not read as ids.
QString checkTaxonIds(const InputSample& sample)
{
    return sample.judge(0, [](const QString& line) {
        for (const QString& word : wordsOf(line)) {
            if (!isNumber(word))
                return QStringLiteral("%1 is not a taxon id").arg(InputSample::quote(word));
        }
        return QString();
    });
}

QString checkTaxonIdCounts(const InputSample& sample)
{
    return sample.judge(0, [](const QString& line) {
        const QStringList words = wordsOf(line);
        if (words.size() != 2 || !isNumber(words.at(0)) || !isNumber(words.at(1)))
            return QStringLiteral("expected a taxon id and a count, found %1").arg(InputSample::quote(line.simplified()));
        return QString();
    });
}

QString checkMgtaxa(const InputSample& sample)
{
    // The header names the third column as the taxon id ("taxid"): tables of numbers have a
    // number in their third column too.
    const QString named = sample.getLines().value(0).split(QLatin1Char('\t')).value(2).trimmed();
    if (!named.contains(QLatin1String("tax"), Qt::CaseInsensitive))
        return QStringLiteral("line 1: the header's third column %1 names no taxon id").arg(InputSample::quote(named));
    return sample.judge(1, [](const QString& line) {
        const QString id = line.split(QLatin1Char('\t')).value(2).trimmed();
        if (!isNumber(id))
            return QStringLiteral("the third column %1 is not a taxon id").arg(InputSample::quote(id));
        return QString();
    });
}

InputFormat entry(const char* word, const QString& name, const QString& description, const QString& label,
                  int detectionOrder, InputFormat::Check check, InputFormat::Factory factory)
{
    InputFormat format;
    format.word = QLatin1String(word);
    format.name = name;
    format.description = description;
    format.label = label;
    format.detectionOrder = detectionOrder;
    format.check = std::move(check);
    format.makeSource = std::move(factory);
    return format;
}

// The NCBI-placed formats that are tables of counts with a header.
InputFormat taxonTable(const char* word, const QString& name, const QString& description, const QString& label,
                       const SourceTaxonTable::Columns& columns)
{
    InputFormat format = entry(
        word, name, description, label, 30, [columns](const InputSample& sample) { return SourceTaxonTable::check(sample, columns); },
        [columns](const QString& file, const Options& options) {
            return std::make_unique<SourceTaxonTable>(file, columns, options.keepUnclassified);
        });
    format.needsTaxonomy = true;
    return format;
}

// The tables that hold many samples side by side, one sample per column. Each comes before the
// single-sample format it resembles (the combined reports' rows are report rows with more
// columns) and before QIIME, which would take any header and numbers.
void addSampleTables(std::vector<InputFormat>& formats)
{
    formats.push_back(entry("kreport-combined", QStringLiteral("combined Kraken-style reports"),
                            QStringLiteral("combined Kraken-style reports"),
                            QStringLiteral("Combined Kraken-style reports (combine_kreports.py)"), 5,
                            &SourceCombinedKreport::check, [](const QString& file, const Options& options) {
                                return std::make_unique<SourceCombinedKreport>(file, options.column, options.keepUnclassified);
                            }));
    formats.back().hasUnclassified = true;
    formats.back().readColumns = &SourceCombinedKreport::readColumnNames;
    formats.push_back(entry("bracken-combined", QStringLiteral("combined Bracken tables"),
                            QStringLiteral("combined Bracken tables"),
                            QStringLiteral("Combined Bracken tables (combine_bracken_outputs.py)"), 35,
                            &SourceCombinedBracken::check, [](const QString& file, const Options& options) {
                                return std::make_unique<SourceCombinedBracken>(file, options.column, options.keepUnclassified);
                            }));
    formats.back().needsTaxonomy = true;
    formats.back().readColumns = &SourceCombinedBracken::readColumnNames;
    formats.push_back(entry("metaphlan-merged", QStringLiteral("merged MetaPhlAn table"),
                            QStringLiteral("a merged MetaPhlAn table"),
                            QStringLiteral("Merged MetaPhlAn table (merge_metaphlan_tables.py)"), 25,
                            &SourceMergedMetaphlan::check, [](const QString& file, const Options& options) {
                                return std::make_unique<SourceMergedMetaphlan>(file, options.column, options.keepUnclassified,
                                                                               InputFormat::abundanceMultiplier);
                            }));
    formats.back().hasUnclassified = true;
    formats.back().readColumns = &SourceMergedMetaphlan::readColumnNames;
}

// Detection order: a report's rows and a profile's rows would pass as Krona lines, the tables
// with headers and per-read lines are told by their own marks, a taxon-id list would pass as a
// QIIME table without a header's names, and Krona text (a number, then anything) comes last.
std::vector<InputFormat> makeTable()
{
    std::vector<InputFormat> formats;
    formats.push_back(entry("taxids", QStringLiteral("taxon-id list"), QStringLiteral("a list of NCBI taxon ids, one per line"),
                            QStringLiteral("Plain text with NCBI-taxon-ids per lines"), 70, checkTaxonIds,
                            [](const QString& file, const Options&) { return std::make_unique<SourceFrequencies>(file, 1); }));
    formats.back().needsTaxonomy = true;
    formats.push_back(entry("taxid-counts", QStringLiteral("taxon-id count list"),
                            QStringLiteral("a list of NCBI taxon ids with counts, an id, a TAB and a count per line"), QString(),
                            60, checkTaxonIdCounts,
                            [](const QString& file, const Options&) { return std::make_unique<SourceFrequencies>(file, 2); }));
    formats.back().needsTaxonomy = true;
    formats.push_back(entry("krona", QStringLiteral("Krona"), QStringLiteral("Krona text"), QStringLiteral("Krona file"), 90,
                            &SourceKronaText::check,
                            [](const QString& file, const Options&) { return std::make_unique<SourceKronaText>(file); }));
    formats.push_back(entry("qiime", QStringLiteral("QIIME"), QStringLiteral("a QIIME summary table"), QStringLiteral("QIIME file"), 80,
                            &SourceQiimeText::check, [](const QString& file, const Options& options) {
                                return std::make_unique<SourceQiimeText>(file, options.column, InputFormat::abundanceMultiplier);
                            }));
    formats.back().readColumns = &SourceQiimeText::readColumnNames;
    formats.push_back(entry("mgtaxa", QStringLiteral("MG-Taxa"), QStringLiteral("an MG-Taxa prediction table, the taxon id in its third column"),
                            QStringLiteral("MgTaxa file"), 50, checkMgtaxa,
                            [](const QString& file, const Options&) { return std::make_unique<SourceMgtaxaText>(file); }));
    formats.back().needsTaxonomy = true;

    formats.push_back(entry("kreport", QStringLiteral("Kraken-style report"), QStringLiteral("a Kraken-style report"),
                            QStringLiteral("Kraken-style report (Kraken, Bracken, KrakenUniq, centrifuge-kreport)"), 10,
                            &SourceKreport::check, [](const QString& file, const Options& options) {
                                return std::make_unique<SourceKreport>(file, options.keepUnclassified);
                            }));
    formats.back().hasUnclassified = true;
    formats.push_back(taxonTable("bracken", QStringLiteral("Bracken"), QStringLiteral("a Bracken abundance table"),
                                 QStringLiteral("Bracken abundance table"),
                                 {QStringLiteral("taxonomy_id"), QStringLiteral("new_est_reads"), QStringLiteral("name")}));
    formats.push_back(entry("metaphlan", QStringLiteral("MetaPhlAn"), QStringLiteral("a MetaPhlAn profile"),
                            QStringLiteral("MetaPhlAn profile"), 20, &SourceMetaphlan::check,
                            [](const QString& file, const Options& options) {
                                return std::make_unique<SourceMetaphlan>(file, options.keepUnclassified,
                                                                         InputFormat::abundanceMultiplier);
                            }));
    formats.back().hasUnclassified = true;
    formats.push_back(entry("kraken-reads", QStringLiteral("Kraken per-read output"),
                            QStringLiteral("Kraken per-read output, one line per read"),
                            QStringLiteral("Kraken per-read output"), 40, &SourceKrakenReads::check,
                            [](const QString& file, const Options& options) {
                                return std::make_unique<SourceKrakenReads>(file, options.keepUnclassified);
                            }));
    formats.back().needsTaxonomy = true;
    formats.back().hasUnclassified = true;
    formats.push_back(taxonTable("kaiju", QStringLiteral("Kaiju"), QStringLiteral("a kaiju2table table"),
                                 QStringLiteral("Kaiju table (kaiju2table)"),
                                 {QStringLiteral("taxon_id"), QStringLiteral("reads"), QStringLiteral("taxon_name")}));
    formats.back().hasUnclassified = true;
    formats.push_back(taxonTable("centrifuge", QStringLiteral("Centrifuge"), QStringLiteral("a Centrifuge report"),
                                 QStringLiteral("Centrifuge report"),
                                 {QStringLiteral("taxID"), QStringLiteral("numReads"), QStringLiteral("name")}));
    addSampleTables(formats);
    return formats;
}

} // namespace

const std::vector<InputFormat>& InputFormat::all()
{
    static const std::vector<InputFormat> formats = makeTable();
    return formats;
}

const InputFormat* InputFormat::find(const QString& word)
{
    for (const InputFormat& format : all()) {
        if (format.word == word)
            return &format;
    }
    return nullptr;
}

const InputFormat* InputFormat::detect(const InputSample& sample, QStringList* whyNot)
{
    const auto say = [whyNot](const QStringList& reasons) {
        if (whyNot)
            *whyNot = reasons;
        return nullptr;
    };
    if (!sample.isReadable())
        return say({sample.getError()});
    const QStringList& lines = sample.getLines();
    const bool content = std::any_of(lines.begin(), lines.end(), [](const QString& line) {
        return !line.trimmed().isEmpty() && !line.startsWith(QLatin1Char('#'));
    });
    if (!content)
        return say({lines.isEmpty() ? QStringLiteral("it is empty") : QStringLiteral("it holds no data lines")});

    std::vector<const InputFormat*> order;
    for (const InputFormat& format : all()) {
        if (format.check)
            order.push_back(&format);
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const InputFormat* a, const InputFormat* b) { return a->detectionOrder < b->detectionOrder; });
    QStringList reasons;
    for (const InputFormat* format : order) {
        const QString problem = format->check(sample);
        if (problem.isEmpty())
            return format;
        reasons << QStringLiteral("not %1 (%2)").arg(format->description, problem);
    }
    return say(reasons);
}

QStringList InputFormat::getWords()
{
    QStringList words;
    for (const InputFormat& format : all())
        words << format.word;
    return words;
}

QString InputFormat::listWords(const std::function<bool(const InputFormat&)>& match)
{
    QStringList words;
    for (const InputFormat& format : all()) {
        if (match(format))
            words << format.word;
    }
    if (words.size() < 2)
        return words.join(QString());
    const QString last = words.takeLast();
    return words.join(QStringLiteral(", ")) + QStringLiteral(" and ") + last;
}

} // namespace Ontology
} // namespace Zem
