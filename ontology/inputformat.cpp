#include "ontology/inputformat.h"

#include "ontology/inputsample.h"
#include "ontology/sourcefrequencies.h"
#include "ontology/sourcekronatext.h"
#include "ontology/sourcemgtaxatext.h"
#include "ontology/sourceqiimetext.h"

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

// A count, a TAB and the path's names; "#" starts a comment.
QString checkKrona(const InputSample& sample)
{
    return sample.judge(0, [](const QString& line) {
        if (line.startsWith(QLatin1Char('#')))
            return QString();
        const QString first = line.section(QLatin1Char('\t'), 0, 0).trimmed();
        bool ok = false;
        first.toLongLong(&ok, 10);
        return ok ? QString() : QStringLiteral("%1 is not a count").arg(InputSample::quote(first));
    });
}

// A header with TAB-separated column names (after "#" comment lines), then a taxonomy and
// numbers on every line.
QString checkQiime(const InputSample& sample)
{
    const QStringList& lines = sample.getLines();
    int header = 0;
    while (header < lines.size() && lines.at(header).startsWith(QLatin1Char('#'))
           && !lines.at(header).contains(QLatin1Char('\t')))
        ++header;
    if (header >= lines.size() || !lines.at(header).contains(QLatin1Char('\t')))
        return QStringLiteral("line %1: it is no header with value columns").arg(header + 1);
    return sample.judge(header + 1, [](const QString& line) {
        const QStringList fields = line.split(QLatin1Char('\t'));
        if (fields.size() < 2)
            return QStringLiteral("it has no values");
        for (int i = 1; i < fields.size(); ++i) {
            bool ok = false;
            fields.at(i).trimmed().toDouble(&ok);
            if (!ok)
                return QStringLiteral("%1 is not a number").arg(InputSample::quote(fields.at(i)));
        }
        return QString();
    });
}

std::vector<InputFormat> makeTable()
{
    std::vector<InputFormat> formats;
    const auto add = [&formats](const char* word, const QString& name, const QString& description,
                                const QString& label, bool needsTaxonomy, int detectionOrder,
                                InputFormat::Check check, InputFormat::Factory factory) {
        InputFormat format;
        format.word = QLatin1String(word);
        format.name = name;
        format.description = description;
        format.label = label;
        format.needsTaxonomy = needsTaxonomy;
        format.detectionOrder = detectionOrder;
        format.check = std::move(check);
        format.makeSource = std::move(factory);
        formats.push_back(std::move(format));
        return &formats.back();
    };
    add("taxids", QStringLiteral("taxon-id list"), QStringLiteral("a list of NCBI taxon ids (one per line)"),
        QStringLiteral("Plain text with NCBI-taxon-ids per lines"), true, 70, checkTaxonIds,
        [](const QString& file, const Options&) { return std::make_unique<SourceFrequencies>(file, 1); });
    add("taxid-counts", QStringLiteral("taxon-id count list"), QStringLiteral("a list of NCBI taxon ids with counts (id, TAB, count per line)"), QString(),
        true, 60, checkTaxonIdCounts,
        [](const QString& file, const Options&) { return std::make_unique<SourceFrequencies>(file, 2); });
    add("krona", QStringLiteral("Krona"), QStringLiteral("a Krona text file"), QStringLiteral("Krona file"), false, 90, checkKrona,
        [](const QString& file, const Options&) { return std::make_unique<SourceKronaText>(file); });
    InputFormat* qiime = add(
        "qiime", QStringLiteral("QIIME"), QStringLiteral("a QIIME summary table"), QStringLiteral("QIIME file"), false, 80, checkQiime,
        [](const QString& file, const Options& options) {
            return std::make_unique<SourceQiimeText>(file, options.column, InputFormat::abundanceMultiplier);
        });
    qiime->readColumns = &SourceQiimeText::readColumnNames;
    add("mgtaxa", QStringLiteral("MG-Taxa"), QStringLiteral("an MG-Taxa prediction table (taxon id in the third column)"),
        QStringLiteral("MgTaxa file"), true, 50, checkMgtaxa,
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
    // Every check passes a file with no lines to judge.
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
