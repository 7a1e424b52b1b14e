#pragma once

#include "ontology/sourcetaxontable.h"

#include <memory>
#include <vector>

namespace nu {
class LineReader;
}

namespace Zem {
namespace Ontology {

class SampleTable;

// One sample of combined Bracken tables (combine_bracken_outputs.py): the header "name
// taxonomy_id taxonomy_lvl", then per sample its reads ("S1_num") and their fraction
// ("S1_frac"); one row per taxon. The chosen sample's reads are counted on the taxon ids as its
// own Bracken table's would be, for the NCBI taxonomy to place; taxa it lacks are left out.
class SourceCombinedBracken : public SourceTaxonTable
{
public:
    SourceCombinedBracken(const QString& fileName, int column, bool keepUnclassified = true);

    void read(BuilderSource& builder) override;

    // Empty when the sample reads as combined Bracken tables, else where and why not.
    static QString check(const InputSample& sample);
    // The samples' names: the header's "_num" columns without the suffix.
    static QStringList readColumnNames(const QString& fileName);

    int column = 0;

private:
    // The places of the id and name columns and of every sample's reads; false when the line is
    // no header of combined tables.
    static bool readCombinedHeader(const QString& line, Places& places, std::vector<int>& samples, QStringList* names = nullptr);
    static void readTable(SampleTable& table, nu::LineReader& lines, BuilderSource& builder);

    std::shared_ptr<SampleTable> table;
};

} // namespace Ontology
} // namespace Zem
