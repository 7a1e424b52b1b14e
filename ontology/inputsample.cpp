#include "ontology/inputsample.h"

#include <QFile>
#include <QTextStream>

namespace Zem {
namespace Ontology {

namespace {

// Up to one line in ten may be odd.
constexpr double tolerated = 0.1;

} // namespace

InputSample::InputSample(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    readable = true;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    QString line;
    while (lines.size() < maximumLines && stream.readLineInto(&line, maximumLineLength))
        lines << line;
}

QString InputSample::judge(const QStringList& lines, int firstLine, const LineCheck& check)
{
    int checked = 0;
    int bad = 0;
    QString firstProblem;
    for (int i = firstLine; i < lines.size(); ++i) {
        if (lines.at(i).trimmed().isEmpty())
            continue;
        ++checked;
        const QString problem = check(lines.at(i));
        if (problem.isEmpty())
            continue;
        ++bad;
        if (firstProblem.isEmpty())
            firstProblem = QStringLiteral("line %1: %2").arg(i + 1).arg(problem);
    }
    return checked == 0 || bad <= tolerated * checked ? QString() : firstProblem;
}

QString InputSample::quote(const QString& text)
{
    return QLatin1Char('\'') + (text.size() > 40 ? text.left(40) + QStringLiteral("...") : text) + QLatin1Char('\'');
}

} // namespace Ontology
} // namespace Zem
