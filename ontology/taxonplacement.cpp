#include "ontology/taxonplacement.h"

#include "ontology/buildersource.h"
#include "ontology/nodekeys.h"
#include "ontology/taxonomychanges.h"

#include <algorithm>

namespace Zem {
namespace Ncbi {

using Ontology::Builder;
using Ontology::NodeKey::count;

const QString TaxonPlacement::unknownId = QStringLiteral("unknown");
const QString TaxonPlacement::unknownName = QStringLiteral("Unknown taxon ids");
const QString TaxonPlacement::unclassifiedId = QStringLiteral("unclassified");
const QString TaxonPlacement::unclassifiedName = QStringLiteral("unclassified");
const QString TaxonPlacement::unclassifiedTaxid = QStringLiteral("0");

namespace {

qint64 readsOf(const Builder::Node& node)
{
    const QString* text = node.data.find(count);
    return text ? text->toLongLong() : 0;
}

// Numbers in numeric order, anything else after them in text order.
bool idLess(const QString& a, const QString& b)
{
    const quint32 x = TaxonomyChanges::parseId(a);
    const quint32 y = TaxonomyChanges::parseId(b);
    if ((x != 0) != (y != 0))
        return x != 0;
    return x != y ? x < y : a < b;
}

} // namespace

TaxonPlacement::TaxonPlacement(Ontology::BuilderSource& target)
    : builder(target)
{
}

QStringList TaxonPlacement::getUnplacedIds()
{
    Builder::Node* root = builder.getRoot();
    if (!gathered && root) {
        // Gathered before anything moves: moving counts makes nodes.
        builder.visitNodes([this, root](Builder::Node& node) {
            if (&node != root && !node.isLinked() && readsOf(node) > 0 && node.id != unclassifiedId)
                unplaced.push_back(&node);
        });
        gathered = true;
    }
    QStringList ids;
    for (const Builder::Node* node : unplaced) {
        if (node->id != unclassifiedTaxid)
            ids << node->id;
    }
    return ids;
}

void TaxonPlacement::place(const TaxonomyChanges& changes, Ontology::BuildReport& report)
{
    Builder::Node* root = builder.getRoot();
    if (!root)
        return;
    getUnplacedIds();

    qint64 unclassified = 0;
    std::vector<Ontology::BuildReport::UnknownId> unknown;
    for (Builder::Node* node : unplaced) {
        const qint64 reads = readsOf(*node);
        if (node->id == unclassifiedTaxid) {
            unclassified += reads;
            continue;
        }
        const QString newId = changes.getNewId(node->id);
        Builder::Node* target = newId.isEmpty() ? nullptr : builder.findNode(newId);
        if (target && (target == root || target->isLinked())) {
            addCount(newId, reads);
            report.mergedReads += reads;
            ++report.mergedIds;
        } else {
            unknown.push_back({node->id, reads, changes.isDeleted(node->id)});
            report.unknownReads += reads;
        }
        // Nothing counts twice, should the node be linked later on.
        node->data.insert(count, QStringLiteral("0"));
    }
    placeUnclassified(unclassified);

    if (!unknown.empty()) {
        Builder::Node* node = builder.getNode(unknownId);
        node->data.insert(count, QString::number(report.unknownReads));
        node->data.insert(Ontology::NodeKey::name, unknownName);
        builder.addChild(root, node);
    }
    std::sort(unknown.begin(), unknown.end(), [](const auto& a, const auto& b) {
        return a.reads != b.reads ? a.reads > b.reads : idLess(a.id, b.id);
    });
    report.unknownIds.insert(report.unknownIds.end(), unknown.begin(), unknown.end());
}

void TaxonPlacement::placeUnclassified(qint64 reads)
{
    if (reads > 0)
        addCount(unclassifiedId, reads);
    Builder::Node* node = builder.findNode(unclassifiedId);
    if (!node || node->isLinked() || readsOf(*node) <= 0)
        return;
    node->data.insert(Ontology::NodeKey::name, unclassifiedName);
    builder.addChild(builder.getRoot(), node);
}

void TaxonPlacement::addCount(const QString& id, qint64 reads)
{
    Builder::Node* node = builder.getNode(id);
    node->data.insert(count, QString::number(readsOf(*node) + reads));
}

} // namespace Ncbi
} // namespace Zem
