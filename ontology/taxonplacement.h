#pragma once

#include "ontology/builder.h"
#include "ontology/buildreport.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace Zem {
namespace Ontology {
class BuilderSource;
}

namespace Ncbi {

class TaxonomyChanges;

// Places the reads that the taxonomy's tree does not, so that a chart's total is always the
// input's reads: an id NCBI merged into another counts under the new id, taxid 0 under the
// root's "unclassified" child, and any other id the tree lacks (deleted, or never known) under
// the root's "unknown" child. Runs on the loaded builder, before counting.
class TaxonPlacement
{
public:
    static const QString unknownId;
    static const QString unknownName;
    static const QString unclassifiedId;
    static const QString unclassifiedName;
    // The id classifiers write for reads they could not classify.
    static const QString unclassifiedTaxid;

    explicit TaxonPlacement(Ontology::BuilderSource& builder);

    // The ids holding reads that the tree does not place, taxid 0 and "unclassified" aside:
    // those to look up among the ids NCBI retired.
    QStringList getUnplacedIds();
    // Moves the count of every id the tree does not place; the figures go into report.
    void place(const TaxonomyChanges& changes, Ontology::BuildReport& report);

private:
    // Links the "unclassified" node under the root once it holds reads.
    void placeUnclassified(qint64 reads);
    // Adds reads to the count of the node with this id.
    void addCount(const QString& id, qint64 reads);

    Ontology::BuilderSource& builder;
    std::vector<Ontology::Builder::Node*> unplaced;
    bool gathered = false;
};

} // namespace Ncbi
} // namespace Zem
