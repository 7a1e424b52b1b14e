#pragma once

#include <QString>

namespace Sorvik {
namespace Viewer {

// How a taxon's stored name reads on a chart: without the rank prefix that classifiers and
// reference databases put before it ("p__Firmicutes", "sg__TSAR", and "k  Bacteria" as the QIIME
// reader stores "k__Bacteria"), and with underscores as spaces. A name that is only a prefix
// ("g__", or QIIME's "g") is an empty rank.
class TaxonName
{
public:
    // The name as a reader wants it: prefix gone, underscores as spaces, blanks trimmed. An
    // empty rank gives an empty text.
    static QString clean(const QString& raw);
    // A rank given no name: only a prefix, with nothing after it.
    static bool isEmptyRank(const QString& raw);
    // The label of an empty rank below the named taxon.
    static QString unclassified(const QString& parentName);
    // Names that stand for reads no taxon holds: drawn in a fixed grey whatever the palette.
    static bool isUnassigned(const QString& cleanName);

private:
    // The length of the rank prefix at the start of the name, 0 when there is none.
    static int prefixLength(const QString& raw);
};

} // namespace Viewer
} // namespace Sorvik
