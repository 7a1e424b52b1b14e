#pragma once

#include <QString>

namespace Sorvik {
namespace Cli {

// A look at the first lines of a taxon-id input (formats "taxids", "taxid-counts", "mgtaxa"):
// an empty string when they read as that format, else a sentence saying what is wrong. Counting
// a classifier's report as an id list would give a plausible-looking but meaningless chart.
QString checkTaxonIdInput(const QString& fileName, const QString& format);

} // namespace Cli
} // namespace Sorvik
