#include "ontology/buildreport.h"

namespace Zem {
namespace Ontology {

void BuildReport::add(const BuildReport& other)
{
    linesRead += other.linesRead;
    if (firstSkip.isEmpty())
        firstSkip = other.firstSkip;
    linesSkipped += other.linesSkipped;
}

QStringList BuildReport::getSummary() const
{
    QStringList summary;
    if (linesSkipped > 0) {
        summary << QStringLiteral("skipped %1 of %2 lines (first: %3)")
                       .arg(formatCount(linesSkipped), formatCount(linesRead), firstSkip);
    }
    return summary;
}

QString BuildReport::formatCount(qint64 count)
{
    QString digits = QString::number(count < 0 ? -count : count);
    for (int at = digits.size() - 3; at > 0; at -= 3)
        digits.insert(at, QLatin1Char(' '));
    return count < 0 ? QLatin1Char('-') + digits : digits;
}

} // namespace Ontology
} // namespace Zem
