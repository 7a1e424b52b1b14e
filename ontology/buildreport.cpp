#include "ontology/buildreport.h"

namespace Zem {
namespace Ontology {

void BuildReport::add(const BuildReport& other)
{
    linesRead += other.linesRead;
    if (firstSkip.isEmpty())
        firstSkip = other.firstSkip;
    linesSkipped += other.linesSkipped;
    warnings << other.warnings;
    mergedReads += other.mergedReads;
    mergedIds += other.mergedIds;
    unknownReads += other.unknownReads;
    unknownIds.insert(unknownIds.end(), other.unknownIds.begin(), other.unknownIds.end());
}

QStringList BuildReport::getSummary() const
{
    QStringList summary;
    if (linesSkipped > 0) {
        summary << QStringLiteral("skipped %1 of %2 lines (first: %3)")
                       .arg(formatCount(linesSkipped), formatCount(linesRead), firstSkip);
    }
    summary << getPlacementSummary() << warnings;
    return summary;
}

QStringList BuildReport::getPlacementSummary() const
{
    QStringList summary;
    if (mergedIds > 0) {
        summary << QStringLiteral("%1 reads had %2 taxon ids that NCBI merged into others (counted under the new ids)")
                       .arg(formatCount(mergedReads), formatCount(mergedIds));
    }
    if (!unknownIds.empty()) {
        QStringList first;
        for (size_t i = 0; i < unknownIds.size() && i < size_t(shownIds); ++i)
            first << unknownIds[i].id;
        if (unknownIds.size() > size_t(shownIds))
            first << QStringLiteral("\u2026");
        summary << QStringLiteral("%1 reads had %2 unknown taxon ids (first: %3)")
                       .arg(formatCount(unknownReads), formatCount(qint64(unknownIds.size())),
                            first.join(QStringLiteral(", ")));
    }
    return summary;
}

QString BuildReport::getUnknownIdList() const
{
    QString list;
    for (const UnknownId& unknown : unknownIds) {
        list += QStringLiteral("%1\t%2 reads%3\n")
                    .arg(unknown.id, formatCount(unknown.reads),
                         unknown.deleted ? QStringLiteral("\tdeleted by NCBI") : QString());
    }
    return list;
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
