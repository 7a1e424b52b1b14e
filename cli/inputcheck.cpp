#include "cli/inputcheck.h"

#include "nu/linereader.h"

#include <QRegularExpression>
#include <QStringList>

#include <optional>

namespace Sorvik {
namespace Cli {

namespace {

constexpr int sampleLines = 2000;
constexpr int maxLineLength = 64 * 1024;
// Up to one line in ten may be odd (a header, a stray "NA").
constexpr double tolerated = 0.1;

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

QString quoted(const QString& text)
{
    return QLatin1Char('\'') + (text.size() > 40 ? text.left(40) + QStringLiteral("...") : text) + QLatin1Char('\'');
}

// What is wrong with one line of the format (empty when nothing is), or no answer for lines that
// say nothing (the MG-Taxa header, blank lines).
std::optional<QString> lineProblem(const QString& line, qint64 lineNumber, const QString& format)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    if (format == QLatin1String("mgtaxa")) {
        if (lineNumber == 1)
            return std::nullopt;
        const QString id = line.section(QLatin1Char('\t'), 2, 2).trimmed();
        return isNumber(id) ? QString() : QStringLiteral("the third column %1 is not a taxon id").arg(quoted(id));
    }
    const QStringList words = line.split(blanks, Qt::SkipEmptyParts);
    if (words.isEmpty())
        return std::nullopt;
    if (format == QLatin1String("taxids")) {
        for (const QString& word : words) {
            if (!isNumber(word))
                return QStringLiteral("%1 is not a taxon id").arg(quoted(word));
        }
        return QString();
    }
    if (words.size() != 2 || !isNumber(words.at(0)) || !isNumber(words.at(1)))
        return QStringLiteral("expected a taxon id and a count, found %1").arg(quoted(line.simplified()));
    return QString();
}

} // namespace

QString checkTaxonIdInput(const QString& fileName, const QString& format)
{
    nu::LineReader lines(fileName);
    if (!lines.isOpen())
        return QStringLiteral("cannot read %1").arg(fileName);
    lines.setMaxLineLength(maxLineLength);

    int checked = 0;
    int bad = 0;
    QString firstProblem;
    try {
        while (checked < sampleLines && lines.next()) {
            const std::optional<QString> problem = lines.isTooLong()
                ? QStringLiteral("the line is too long")
                : lineProblem(lines.getLine(), lines.getLineNumber(), format);
            if (!problem)
                continue;
            ++checked;
            if (!problem->isEmpty() && bad++ == 0)
                firstProblem = QStringLiteral("line %1: %2").arg(lines.getLineNumber()).arg(*problem);
        }
    } catch (const nu::LineReader::ReadException& e) {
        return QString::fromUtf8(e.what());
    }
    if (checked == 0 || bad <= tolerated * checked)
        return QString();
    const QString expected = format == QLatin1String("taxids")
        ? QStringLiteral("a list of NCBI taxon ids (one per line)")
        : format == QLatin1String("taxid-counts") ? QStringLiteral("a list of NCBI taxon ids with counts (id, TAB, count per line)")
                                                  : QStringLiteral("an MG-Taxa prediction table (taxon id in the third column)");
    return QStringLiteral("%1 does not look like %2: %3").arg(fileName, expected, firstProblem);
}

} // namespace Cli
} // namespace Sorvik
