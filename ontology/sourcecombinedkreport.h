#pragma once

#include "ontology/sourcekreport.h"

#include <memory>

namespace Zem {
namespace Ontology {

class SampleTable;

// One sample of a table of combined Kraken-style reports (KrakenTools' combine_kreports.py):
// "#" lines naming the samples ("#S1<TAB>a.kreport"), the header "perc tot_all tot_lvl" with a
// pair of clade and own reads per sample ("1_all 1_lvl"), then the rank, the taxon id and the
// indented name. The chosen sample's pair is read as a report of its own, so the chart is the
// one its single report would give; taxa the sample lacks (zero reads) are left out.
class SourceCombinedKreport : public SourceKreport
{
public:
    SourceCombinedKreport(const QString& fileName, int column, bool keepUnclassified = true);

    void read(BuilderSource& builder) override;

    // Empty when the sample reads as combined reports, else where and why not.
    static QString check(const InputSample& sample);
    // The samples' names: those the "#" lines give, else "S1", "S2"..., as the tool names them.
    static QStringList readColumnNames(const QString& fileName);

    int column = 0;

private:
    // The number of samples a header line names, -1 when it is no combined header.
    static int readCombinedHeader(const QString& line);
    static bool isSampleLine(const QString& line);
    static void readTable(SampleTable& table, nu::LineReader& lines, BuilderSource& builder);
    // The table's rows for this sample; rows whose subtree holds none of its reads are left out.
    std::vector<Row> rowsOfColumn(const SampleTable& table, qint64& unclassified) const;

    std::shared_ptr<SampleTable> table;
};

} // namespace Ontology
} // namespace Zem
