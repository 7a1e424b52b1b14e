#pragma once

#include <QString>

namespace Sorvik {
namespace Test {

// What an input file implies for the chart made from it, worked out here without the program's
// readers, so that a test of real files checks the outcome rather than "charted or refused".

struct KronaTotals
{
    // The sum of the counts of the lines that have one (a whole number of 0 or more).
    qint64 total = 0;
    // Lines that are neither blank, nor a "#" comment, nor start with such a count.
    qint64 malformed = 0;
};
KronaTotals kronaTotals(const QString& fileName);

struct QiimeTotals
{
    // The sum of the column's values, and the rows that gave one.
    double sum = 0.0;
    int rows = 0;
};
// column 0 is the first value column, after the taxonomy path.
QiimeTotals qiimeTotals(const QString& fileName, int column);

} // namespace Test
} // namespace Sorvik
