#include "ontology/inputsample.h"

#include "nu/linereader.h"

namespace Zem {
namespace Ontology {

namespace {

// Up to one line in ten may be odd.
constexpr double tolerated = 0.1;

} // namespace

InputSample::InputSample(const QString& fileName)
{
    nu::LineReader reader(fileName);
    if (!reader.isOpen()) {
        error = QStringLiteral("cannot read %1").arg(fileName);
        return;
    }
    reader.setMaxLineLength(maximumLineLength);
    try {
        while (lines.size() < maximumLines && reader.next()) {
            if (reader.isTooLong())
                tooLong.insert(lines.size());
            lines << reader.getLine();
        }
    } catch (const nu::LineReader::ReadException& e) {
        error = QString::fromUtf8(e.what());
    }
}

InputSample::InputSample(const QStringList& sampleLines)
    : lines(sampleLines)
{
}

QString InputSample::judge(int firstLine, const LineCheck& check) const
{
    int checked = 0;
    int bad = 0;
    QString firstProblem;
    for (int i = firstLine; i < lines.size(); ++i) {
        const bool overlong = isTooLong(i);
        if (!overlong && lines.at(i).trimmed().isEmpty())
            continue;
        ++checked;
        const QString problem = overlong ? QStringLiteral("the line is too long") : check(lines.at(i));
        if (problem.isEmpty())
            continue;
        if (bad++ == 0)
            firstProblem = QStringLiteral("line %1: %2").arg(i + 1).arg(problem);
    }
    return checked == 0 || bad <= tolerated * checked ? QString() : firstProblem;
}

bool InputSample::isBlankOrComment(const QString& line)
{
    return line.trimmed().isEmpty() || line.startsWith(QLatin1Char('#'));
}

QString InputSample::quote(const QString& text)
{
    QString shown = text.size() > 40 ? text.left(40) + QStringLiteral("...") : text;
    // Control characters of binary input would garble the terminal that shows the message.
    for (QChar& c : shown) {
        if (!c.isPrint() && c != QLatin1Char('\t'))
            c = QLatin1Char('?');
    }
    return QLatin1Char('\'') + shown + QLatin1Char('\'');
}

} // namespace Ontology
} // namespace Zem
