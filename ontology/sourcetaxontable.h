#pragma once

#include "ontology/source.h"

#include <QHash>
#include <QStringRef>
#include <QVector>

namespace Zem {
namespace Ontology {

class InputSample;

// A classifier's table of reads per NCBI taxon id under a header that names its columns:
// Bracken's abundance table, kaiju2table's output, Centrifuge's report. It only attaches counts
// to taxon ids, which the NCBI taxonomy places. Unclassified reads (taxon id 0, or a row named
// "unclassified" without an id) count under the id "unclassified"; other rows without an id
// hold reads classified above the table's rank, which count for the root.
class SourceTaxonTable : public Source
{
public:
    // The header's names of the columns to read.
    struct Columns
    {
        QString taxid;
        QString count;
        QString name;
    };

    SourceTaxonTable(const QString& fileName, const Columns& columns, bool keepUnclassified = true);

    QString getDescription() const override;
    void read(BuilderSource& builder) override;

    // Empty when the sample reads as a table with these columns, else where and why not.
    static QString check(const InputSample& sample, const Columns& columns);

    QString fileName;
    Columns columns;
    bool keepUnclassified = true;

protected:
    // The columns' places in a header line; false when it lacks one of them.
    struct Places
    {
        int taxid = -1;
        int count = -1;
        int name = -1;
    };
    static bool readHeader(const QString& line, const Columns& columns, Places& places);
    // The id a row's reads count under, or the reason there is none.
    static QString readRow(const QString& line, const Places& places, QString& id, qint64& count);
    // The id of a row whose fields reach the taxon-id column, or the reason there is none.
    static QString readId(const QVector<QStringRef>& fields, const Places& places, QString& id);
    // Gives each id its reads, leaving unclassified reads out where the user asked.
    void writeCounts(BuilderSource& builder, QHash<QString, qint64>& counts) const;
};

} // namespace Ontology
} // namespace Zem
