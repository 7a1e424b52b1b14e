#include "ontology/inputformat.h"

#include "ontology/inputsample.h"
#include "ontology/sourcefrequencies.h"
#include "ontology/sourcekronatext.h"
#include "ontology/sourcemgtaxatext.h"
#include "ontology/sourceqiimetext.h"

#include <QRegularExpression>

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
    // After the header.
    return sample.judge(1, [](const QString& line) {
        const QString id = line.split(QLatin1Char('\t')).value(2).trimmed();
        if (!isNumber(id))
            return QStringLiteral("the third column %1 is not a taxon id").arg(InputSample::quote(id));
        return QString();
    });
}

std::vector<InputFormat> makeTable()
{
    std::vector<InputFormat> formats;
    const auto add = [&formats](const char* word, const QString& name, const QString& description,
                                const QString& label, bool needsTaxonomy, InputFormat::Check check,
                                InputFormat::Factory factory) {
        InputFormat format;
        format.word = QLatin1String(word);
        format.name = name;
        format.description = description;
        format.label = label;
        format.needsTaxonomy = needsTaxonomy;
        format.check = std::move(check);
        format.makeSource = std::move(factory);
        formats.push_back(std::move(format));
        return &formats.back();
    };
    add("taxids", QStringLiteral("taxon-id list"), QStringLiteral("a list of NCBI taxon ids (one per line)"),
        QStringLiteral("Plain text with NCBI-taxon-ids per lines"), true, checkTaxonIds,
        [](const QString& file, const Options&) { return std::make_unique<SourceFrequencies>(file, 1); });
    add("taxid-counts", QStringLiteral("taxon-id count list"), QStringLiteral("a list of NCBI taxon ids with counts (id, TAB, count per line)"), QString(),
        true, checkTaxonIdCounts,
        [](const QString& file, const Options&) { return std::make_unique<SourceFrequencies>(file, 2); });
    add("krona", QStringLiteral("Krona"), QStringLiteral("a Krona text file"), QStringLiteral("Krona file"), false, nullptr,
        [](const QString& file, const Options&) { return std::make_unique<SourceKronaText>(file); });
    InputFormat* qiime = add(
        "qiime", QStringLiteral("QIIME"), QStringLiteral("a QIIME summary table"), QStringLiteral("QIIME file"), false, nullptr,
        [](const QString& file, const Options& options) {
            return std::make_unique<SourceQiimeText>(file, options.column, InputFormat::abundanceMultiplier);
        });
    qiime->readColumns = &SourceQiimeText::readColumnNames;
    add("mgtaxa", QStringLiteral("MG-Taxa"), QStringLiteral("an MG-Taxa prediction table (taxon id in the third column)"),
        QStringLiteral("MgTaxa file"), true, checkMgtaxa,
        [](const QString& file, const Options&) { return std::make_unique<SourceMgtaxaText>(file); });
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
