#pragma once

#include "ontology/source.h"

#include <QStringList>
#include <QStringRef>
#include <QVector>

#include <vector>

namespace Zem {
namespace Ontology {

class InputSample;

// A Kraken-style report: one row per taxon with the clade's reads, the taxon's own reads, its
// rank, its taxon id and its name indented two spaces per level. One reader for the family:
// Kraken 1 and 2 (with or without minimizer columns), Bracken's and centrifuge-kreport's
// reports, KrakenUniq's (comments and a header) and reports with a depth column. The tree comes
// from the file alone, so reports of databases with ids of their own (SILVA, GTDB) chart as
// well; each node is its taxon id, with the name, rank and id as written.
class SourceKreport : public Source
{
public:
    // Where a row's values are: from the header's names where there is one, otherwise from the
    // row's own number of columns (the taxon id and rank 2nd- and 3rd-last, the name last).
    struct Layout
    {
        int clade = 1;
        int own = 2;
        int rank = -1;
        int taxid = -1;
        int depth = -1;
        int name = -1;
        // The columns a row needs: the header's, or 6 without one.
        int columns = minimumColumns;
    };
    static constexpr int minimumColumns = 6;

    explicit SourceKreport(const QString& fileName = QString(), bool keepUnclassified = true);

    QString getDescription() const override;
    void read(BuilderSource& builder) override;

    // Empty when the sample reads as a Kraken-style report, else where and why not.
    static QString check(const InputSample& sample);
    // The layout a header line names; false when the line is no header of this family.
    static bool readHeader(const QString& line, Layout& layout);

    QString fileName;
    bool keepUnclassified = true;

protected:
    struct Row
    {
        qint64 clade;
        qint64 own;
        int depth;
        qint64 line;
        QString taxid;
        QString rank;
        QString name;
    };
    // One row's values, or the reason it has none.
    static QString parseRow(const QVector<QStringRef>& fields, const Layout& layout, Row& row);
    // Links the rows by depth under one root and gives each its own count.
    void buildTree(BuilderSource& builder, const std::vector<Row>& rows, qint64 unclassified);
    void warnOfDisagreement(const std::vector<Row>& rows, const std::vector<qint64>& childClade);
};

} // namespace Ontology
} // namespace Zem
