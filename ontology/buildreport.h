#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace Zem {
namespace Ontology {

// What a build read from its input and what it could not use, so that nothing is lost without
// a word: the command line prints its summary on stderr and the viewer shows it once the chart
// is built.
class BuildReport
{
public:
    // How many unknown ids the summary names.
    static constexpr int shownIds = 5;

    // Lines of the input read, and those passed over as malformed, with the first of these
    // ("line 17: 'abc' is not a count").
    qint64 linesRead = 0;
    qint64 linesSkipped = 0;
    QString firstSkip;
    // What the input says that does not add up, though nothing was lost; no skip.
    QStringList warnings;

    // Reads on taxon ids that NCBI merged into others, counted under the new ids, and the
    // number of such ids.
    qint64 mergedReads = 0;
    qint64 mergedIds = 0;
    // Reads on ids that the taxonomy does not know (deleted by NCBI, or never in it), counted
    // under the root's "unknown" child; the ids, most reads first.
    struct UnknownId
    {
        QString id;
        qint64 reads = 0;
        bool deleted = false;
    };
    qint64 unknownReads = 0;
    std::vector<UnknownId> unknownIds;

    // Adds another report's figures (the first skip stays this one's).
    void add(const BuildReport& other);
    // Whether anything of the input is missing from the chart.
    bool hasSkips() const { return linesSkipped > 0; }

    // One sentence per finding, e.g. "skipped 3 of 1 204 lines (first: line 17: 'abc' is not a
    // count)", then the placement's and the warnings; empty when there is nothing to say.
    QStringList getSummary() const;
    // The sentences on merged and unknown taxon ids alone: "12 reads had 3 taxon ids that NCBI
    // merged into others (counted under the new ids)", "5 reads had 2 unknown taxon ids (first:
    // 12345, 67890)".
    QStringList getPlacementSummary() const;
    // The unknown ids one per line, with their reads, for the user to copy.
    QString getUnknownIdList() const;

    // A count as the summary writes it, with a space between thousands: "1 204".
    static QString formatCount(qint64 count);
};

} // namespace Ontology
} // namespace Zem
