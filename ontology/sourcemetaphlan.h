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

private:
    // A clade of the tree, by its path id's number.
    struct Clade
    {
        int parent;
        bool given;
        qint64 line;
        double value;
    };

    static void readHeader(const QString& line, Layout& layout);
    // The reason a row cannot be read, else an empty text; value and taxid are the row's.
    static QString parseRow(const QVector<QStringRef>& fields, const Layout& layout, double& value, QString& taxid);
    static bool isUnclassified(const QStringRef& clade);
    void writeCounts(BuilderSource& builder, PathIds& paths, double unclassified);

    std::vector<Clade> clades;
};

} // namespace Ontology
} // namespace Zem
