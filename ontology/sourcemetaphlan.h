#pragma once

#include "ontology/source.h"

#include <QStringRef>
#include <QVector>

namespace Zem {
namespace Ontology {

class InputSample;
class PathIds;

// A MetaPhlAn profile (versions 2 to 4): "#" lines, then one row per clade at every level, its
// path of rank-prefixed names ("k__Bacteria|p__Firmicutes"), in versions 3 and 4 its path of NCBI
// taxon ids, and the clade's whole relative abundance in percent. The tree comes from the names,
// with path ids as for QIIME; a node's own share is its value less its children's. Levels a
// profile leaves out are made from the paths and hold the sum of their children.
class SourceMetaphlan : public Source
{
public:
    // Where a row's values are: from the "#clade_name" header where there is one, otherwise
    // the name, the taxon-id path (with three columns or more) and the abundance.
    struct Layout
    {
        int clade = 0;
        int taxid = -1;
        int value = -1;
    };

    SourceMetaphlan(const QString& fileName = QString(), bool keepUnclassified = true, double multiplier = 10000.0);

    QString getDescription() const override;
    void read(BuilderSource& builder) override;

    // Empty when the sample reads as a MetaPhlAn profile, else where and why not.
    static QString check(const InputSample& sample);
    // The rank a clade name's prefix stands for ("p__" phylum), empty for none.
    static QString rankOf(const QStringRef& piece);

    QString fileName;
    bool keepUnclassified = true;
    double multiplier = 10000.0;

protected:
    // A clade of the tree, by its path id's number.
    // The path ids may be shared with other sources (the samples of one chart): a clade this
    // source did not reach is not used.
    struct Clade
    {
        int parent = -1;
        bool used = false;
        bool given = false;
        qint64 line = 0;
        double value = 0.0;
    };

    static void readHeader(const QString& line, Layout& layout);
    // The reason a row cannot be read, else an empty text; value and taxid are the row's.
    static QString parseRow(const QVector<QStringRef>& fields, const Layout& layout, double& value, QString& taxid);
    // The parts of a row: the reason each cannot be read, else an empty text.
    static QString checkClade(const QStringRef& clade);
    static QString readShare(const QStringRef& text, double& value);
    static QString readTaxidPath(const QStringRef& text, QString& taxid);
    static bool isUnclassified(const QStringRef& clade);
    // Places a clade's row, making the levels above it that are missing; the reason it cannot
    // be taken (given twice), else an empty text.
    QString addClade(BuilderSource& builder, PathIds& paths, const QStringRef& clade, double value, const QString& taxid,
                     qint64 line);
    void writeCounts(BuilderSource& builder, PathIds& paths, double unclassified);
    // The largest share in percent that a row may give.
    static constexpr double maximumShare = 1000.0;

    std::vector<Clade> clades;
};

} // namespace Ontology
} // namespace Zem
