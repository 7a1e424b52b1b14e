#pragma once

#include "ontology/sourcemetaphlan.h"

#include <memory>

namespace Zem {
namespace Ontology {

class SampleTable;

// One sample of a merged MetaPhlAn table (merge_metaphlan_tables.py): "#" lines (the database's
// version), the header "clade_name" (or "ID"), in versions 3 and 4 "NCBI_tax_id" (or
// "clade_taxid"), then one column per sample; one row per clade with each sample's relative
// abundance in percent, 0 where the sample lacks it. The chosen column is read as that sample's
// own profile would be; clades it lacks are left out.
class SourceMergedMetaphlan : public SourceMetaphlan
{
public:
    SourceMergedMetaphlan(const QString& fileName, int column, bool keepUnclassified = true, double multiplier = 10000.0);

    void read(BuilderSource& builder) override;

    // Empty when the sample reads as a merged table, else where and why not.
    static QString check(const InputSample& sample);
    // The samples' names as the header gives them.
    static QStringList readColumnNames(const QString& fileName);

    int column = 0;

private:
    // Where the header's sample columns start (after the clade and taxon-id columns), -1 when the
    // line is no header of a merged table.
    static int readMergedHeader(const QString& line);
    static void readTable(SampleTable& table, nu::LineReader& lines, BuilderSource& builder);

    std::shared_ptr<SampleTable> table;
};

} // namespace Ontology
} // namespace Zem
