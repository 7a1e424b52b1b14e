#pragma once

#include <QString>
#include <QStringList>

namespace Zem {
namespace Ontology {

// What a build read from its input and what it could not use, so that nothing is lost without
// a word: the command line prints its summary on stderr and the viewer shows it once the chart
// is built.
class BuildReport
{
public:
    // How many unplaced ids the summary names.
    static constexpr int shownIds = 5;

    // Lines of the input read, and those passed over as malformed, with the first of these
    // ("line 17: 'abc' is not a count").
    qint64 linesRead = 0;
    qint64 linesSkipped = 0;
    QString firstSkip;
    // Reads whose taxon ids the taxonomy does not place, how many such ids, and the first few.
    qint64 readsUnplaced = 0;
    qint64 idsUnplaced = 0;
    QStringList firstUnplacedIds;
    // What the input says that does not add up, though nothing was lost; no skip.
    QStringList warnings;

    // Adds another input's figures (the first skip stays the first input's).
    void add(const BuildReport& other);
    // Counts reads of an id that could not be placed.
    void addUnplaced(const QString& id, qint64 reads);
    // Whether anything of the input is missing from the chart.
    bool hasSkips() const { return linesSkipped > 0 || readsUnplaced > 0; }

    // One sentence per finding, e.g. "skipped 3 of 1 204 lines (first: line 17: 'abc' is not a
    // count)"; empty when there is nothing to say.
    QStringList getSummary() const;

    // A count as the summary writes it, with a space between thousands: "1 204".
    static QString formatCount(qint64 count);
};

} // namespace Ontology
} // namespace Zem
