#include "cli/inputcheck.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringList>
#include <QTextStream>

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

} // namespace

QString checkTaxonIdInput(const QString& fileName, const QString& format)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return QStringLiteral("cannot read %1").arg(fileName);
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    static const QRegularExpression blanks(QStringLiteral("\\s+"));

    int checked = 0;
    int bad = 0;
    QString firstProblem;
    int lineNumber = 0;
    QString line;
    while (checked < sampleLines && stream.readLineInto(&line, maxLineLength)) {
        ++lineNumber;
        QString problem;
        if (format == QLatin1String("mgtaxa")) {
            if (lineNumber == 1)
                continue; // the header
            const QStringList fields = line.split(QLatin1Char('\t'));
            const QString id = fields.value(2).trimmed();
            if (!isNumber(id))
                problem = QStringLiteral("the third column %1 is not a taxon id").arg(quoted(id));
        } else {
            const QStringList words = line.split(blanks, Qt::SkipEmptyParts);
            if (words.isEmpty())
                continue;
            if (format == QLatin1String("taxids")) {
                for (const QString& word : words) {
                    if (!isNumber(word)) {
                        problem = QStringLiteral("%1 is not a taxon id").arg(quoted(word));
                        break;
                    }
                }
            } else if (words.size() != 2 || !isNumber(words.at(0)) || !isNumber(words.at(1))) {
                problem = QStringLiteral("expected a taxon id and a count, found %1").arg(quoted(line.simplified()));
            }
        }
        ++checked;
        if (!problem.isEmpty()) {
            ++bad;
            if (firstProblem.isEmpty())
                firstProblem = QStringLiteral("line %1: %2").arg(lineNumber).arg(problem);
        }
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
