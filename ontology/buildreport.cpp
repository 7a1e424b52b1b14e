#include "ontology/buildreport.h"

namespace Zem {
namespace Ontology {

void BuildReport::add(const BuildReport& other)
{
    linesRead += other.linesRead;
    if (firstSkip.isEmpty())
        firstSkip = other.firstSkip;
    linesSkipped += other.linesSkipped;
    readsUnplaced += other.readsUnplaced;
    idsUnplaced += other.idsUnplaced;
    for (const QString& id : other.firstUnplacedIds) {
        if (firstUnplacedIds.size() < shownIds)
            firstUnplacedIds << id;
    }
    warnings << other.warnings;
}

void BuildReport::addUnplaced(const QString& id, qint64 reads)
{
    readsUnplaced += reads;
    if (idsUnplaced++ < shownIds)
        firstUnplacedIds << id;
}

QStringList BuildReport::getSummary() const
{
    QStringList summary;
    if (linesSkipped > 0) {
        summary << QStringLiteral("skipped %1 of %2 lines (first: %3)")
                       .arg(formatCount(linesSkipped), formatCount(linesRead), firstSkip);
    }
    if (idsUnplaced > 0) {
        const QString more = idsUnplaced > firstUnplacedIds.size() ? QStringLiteral(", ...") : QString();
        summary << QStringLiteral("skipped %1 %2 of %3 %4 that the taxonomy does not know (%5%6)")
                       .arg(formatCount(readsUnplaced), readsUnplaced == 1 ? QStringLiteral("read") : QStringLiteral("reads"),
                            formatCount(idsUnplaced),
                            idsUnplaced == 1 ? QStringLiteral("taxon id") : QStringLiteral("taxon ids"),
                            firstUnplacedIds.join(QStringLiteral(", ")), more);
    }
    summary << warnings;
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
