#include "ontology/source.h"

#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/inputsample.h"

#include <climits>
#include <limits>

namespace Zem {
namespace Ontology {

Source::~Source() = default;

bool Source::nextLine(nu::LineReader& lines, BuilderSource& builder)
{
    if (!lines.next())
        return false;
    ++linesRead;
    builder.checkCancelled(static_cast<int>(lines.getLineNumber() & INT_MAX));
    builder.notifySourceCurrentPos(lines.getPosition());
    return true;
}

void Source::skipLine(const nu::LineReader& lines, const QString& reason)
{
    skipLine(lines.getLineNumber(), reason);
}

void Source::skipLine(qint64 lineNumber, const QString& reason)
{
    if (linesSkipped++ == 0)
        firstSkip = QStringLiteral("line %1: %2").arg(lineNumber).arg(reason);
}

void Source::addLinesRead(qint64 lines)
{
    linesRead += lines;
}

void Source::warn(const QString& warning)
{
    warnings << warning;
}

QString Source::readCount(const QStringRef& text, qint64& count)
{
    bool ok = false;
    const QStringRef trimmed = text.trimmed();
    count = trimmed.toLongLong(&ok, 10);
    if (!ok)
        return QStringLiteral("%1 is not a count").arg(quoted(trimmed));
    if (count < 0)
        return QStringLiteral("%1 is a negative count").arg(quoted(trimmed));
    // More reads than any run gives; counts this large could only overflow the sums.
    if (count > largestCount)
        return QStringLiteral("%1 is too large a count").arg(quoted(trimmed));
    return QString();
}

qint64 Source::addCounts(qint64 a, qint64 b)
{
    qint64 sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? std::numeric_limits<qint64>::max() : sum;
}

QString Source::tooLongReason()
{
    return QStringLiteral("the line is too long");
}

QString Source::quoted(QStringView text)
{
    return InputSample::quote(text.left(64).toString());
}

} // namespace Ontology
} // namespace Zem
