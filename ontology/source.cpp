#include "ontology/source.h"

#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/inputsample.h"

#include <climits>

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
    return QString();
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
