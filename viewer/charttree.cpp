#include "viewer/charttree.h"

#include "ontology/chartsamples.h"
#include "ontology/nodekeys.h"
#include "ontology/ontology.h"
#include "viewer/taxonname.h"

#include <QFileInfo>

#include <algorithm>
#include <limits>

namespace Sorvik {
namespace Viewer {

namespace {

qint64 countOf(const QVariantMap& data, const QString& key)
{
    bool ok = false;
    const qint64 value = data.value(key).toString().toLongLong(&ok);
    return ok && value > 0 ? value : 0;
}

// Separates the names of a path key; no name holds it (formats split lines and paths at tabs).
const QChar pathSeparator = QLatin1Char('\t');

qint64 saturatingAdd(qint64 a, qint64 b)
{
    qint64 sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? std::numeric_limits<qint64>::max() : sum;
}

} // namespace

// The samples of a chart of several, as its file holds them.
struct ChartTree::SampleTable
{
    std::vector<Sample> list;
    std::vector<QByteArray> counts;
    int rows = 0;
    // By node, for a chart of several samples: whether it is a chain on all samples together.
    std::vector<bool> chains;
};

// Reads every node of a file into the tree.
class ChartTree::Loader : public Zem::Ontology::Reader
{
public:
    Loader(const Zem::Ontology::Ontology& ontology, ChartTree& t)
        : Reader(ontology)
        , tree(t)
    {
    }

    void openNode(const QString& id, const QVariantMap& data, const Position& position) override
    {
        QString taxid = data.value(Zem::Ontology::NodeKey::taxid).toString();
        // Nodes of the NCBI taxonomy carry its names; their ids are taxon ids.
        if (taxid.isEmpty() && data.contains(Zem::Ontology::NodeKey::scientificName))
            taxid = id;
        const int parent = open.empty() ? none : open.back();
        const bool named = !data.value(Zem::Ontology::NodeKey::scientificName).toString().isEmpty()
                           || !data.value(Zem::Ontology::NodeKey::name).toString().isEmpty();
        open.push_back(tree.add(parent, nameOf(id, data), countOf(data, Zem::Ontology::NodeKey::count),
                                countOf(data, Zem::Ontology::NodeKey::accumCount), taxid, position.getRow(), named));
        tree.setIdentity(open.back(), id, data.value(Zem::Ontology::NodeKey::rank).toString());
        tree.nodes.back().childrenStart = position.getChildrenStart();
    }

    void closeNode(const QString&, const QVariantMap&) override { open.pop_back(); }

private:
    ChartTree& tree;
    std::vector<int> open;
};

ChartTree ChartTree::read(const Zem::Ontology::Ontology& ontology)
{
    ChartTree tree;
    tree.nodes.reserve(static_cast<size_t>(std::max(0, ontology.getNodeNumber())));
    if (ontology.getNodeNumber() < 1)
        return tree;
    Loader loader(ontology, tree);
    loader.read();

    auto table = std::make_shared<SampleTable>();
    table->rows = ontology.getNodeNumber();
    std::vector<Zem::Ontology::ChartSamples::Stored> stored = Zem::Ontology::ChartSamples::read(ontology);
    if (stored.empty()) {
        table->list.push_back({QFileInfo(ontology.getFileName()).completeBaseName(),
                               tree.isEmpty() ? 0 : tree.at(0).total});
    } else {
        for (auto& one : stored) {
            // Checked whole here, so that a damaged table is refused when the chart opens.
            const auto entries = Zem::Ontology::ChartSamples::decode(one.counts, table->rows);
            const qint64 total = !entries.empty() && entries.front().row == 0 ? entries.front().total : 0;
            table->list.push_back({one.name, total});
            table->counts.push_back(std::move(one.counts));
        }
    }
    tree.samples = table;
    if (stored.size() > 1) {
        // Every sample is drawn with the same rings, so that stepping in lands on the same taxon
        // in each: a chain is one on all samples together.
        const ChartTree all = tree.ofSample(allSamples);
        std::vector<bool> chains(tree.nodes.size());
        for (int i = 0; i < tree.size(); ++i)
            chains[static_cast<size_t>(i)] = all.isChain(i);
        table->chains = std::move(chains);
    }
    return tree;
}

std::vector<ChartTree::Sample> ChartTree::getSamples() const
{
    if (samples)
        return samples->list;
    return {Sample{QStringLiteral("sample"), isEmpty() ? 0 : at(0).total}};
}

int ChartTree::getSampleCount() const
{
    return samples ? static_cast<int>(samples->list.size()) : 1;
}

int ChartTree::indexOfSample(const QString& name) const
{
    const std::vector<Sample> list = getSamples();
    for (size_t i = 0; i < list.size(); ++i) {
        if (list[i].name == name)
            return static_cast<int>(i);
    }
    return none;
}

void ChartTree::getCounts(int which, std::vector<qint64>& counts, std::vector<qint64>& totals) const
{
    counts.assign(nodes.size(), 0);
    totals.assign(nodes.size(), 0);
    if (which != allSamples && (which < 0 || which >= getSampleCount()))
        return;
    if (!samples || samples->counts.empty()) {
        // One sample: the nodes hold it.
        for (size_t i = 0; i < nodes.size(); ++i) {
            counts[i] = nodes[i].count;
            totals[i] = nodes[i].total;
        }
        return;
    }
    const int first = which == allSamples ? 0 : which;
    const int last = which == allSamples ? static_cast<int>(samples->counts.size()) - 1 : which;
    for (int s = first; s <= last; ++s) {
        for (const auto& entry :
             Zem::Ontology::ChartSamples::decode(samples->counts[static_cast<size_t>(s)], samples->rows)) {
            const int node = indexOfRow(entry.row);
            if (node == none)
                continue;
            counts[static_cast<size_t>(node)] = saturatingAdd(counts[static_cast<size_t>(node)], entry.count);
            totals[static_cast<size_t>(node)] = saturatingAdd(totals[static_cast<size_t>(node)], entry.total);
        }
    }
}

ChartTree ChartTree::ofSample(int which) const
{
    ChartTree copy(*this);
    if (which == sample)
        return copy;
    std::vector<qint64> counts;
    std::vector<qint64> totals;
    getCounts(which, counts, totals);
    copy.setCounts(counts, totals);
    copy.sample = which;
    return copy;
}

void ChartTree::setCounts(const std::vector<qint64>& counts, const std::vector<qint64>& totals)
{
    for (size_t i = 0; i < nodes.size(); ++i) {
        nodes[i].count = counts[i];
        nodes[i].total = totals[i];
    }
}

int ChartTree::add(int parent, const QString& rawName, qint64 count, qint64 total, const QString& taxid, int row,
                   bool named)
{
    const int index = size();
    Node node;
    node.rawName = rawName;
    node.named = named;
    node.taxid = taxid;
    node.count = count;
    node.total = total;
    node.parent = parent;
    node.row = row;
    nodes.push_back(std::move(node));
    shownNames.clear();
    if (parent != none)
        nodes[static_cast<size_t>(parent)].children.push_back(index);
    if (row >= 0) {
        if (byRow.size() <= static_cast<size_t>(row))
            byRow.resize(static_cast<size_t>(row) + 1, none);
        byRow[static_cast<size_t>(row)] = index;
    }
    byKey.clear();
    return index;
}

void ChartTree::setIdentity(int node, const QString& id, const QString& rank)
{
    Node& n = nodes[static_cast<size_t>(node)];
    n.id = id;
    n.rank = rank;
}

int ChartTree::indexOfRow(int row) const
{
    return row >= 0 && static_cast<size_t>(row) < byRow.size() ? byRow[static_cast<size_t>(row)] : none;
}

Zem::Ontology::Reader::Position ChartTree::getPosition(int node) const
{
    const Node& n = at(node);
    return Zem::Ontology::Reader::Position(n.row, n.childrenStart);
}

QList<Zem::Ontology::Reader::Position> ChartTree::getParentPositions(int node) const
{
    QList<Zem::Ontology::Reader::Position> positions;
    for (int i = at(node).parent; i != none; i = at(i).parent)
        positions.append(getPosition(i));
    return positions;
}

QString ChartTree::getKey(int node) const
{
    const Node& n = at(node);
    if (!n.taxid.isEmpty())
        return QStringLiteral("taxid:") + n.taxid;
    QStringList names;
    for (int i = node; i != none && at(i).parent != none; i = at(i).parent)
        names.prepend(at(i).rawName);
    return QStringLiteral("path:") + names.join(pathSeparator);
}

int ChartTree::indexOfKey(const QString& key) const
{
    if (byKey.isEmpty()) {
        byKey.reserve(size());
        // The first node of a key wins: an NCBI taxon linked under two parents is one taxon.
        for (int i = size() - 1; i >= 0; --i)
            byKey.insert(getKey(i), i);
    }
    return byKey.value(key, none);
}

int ChartTree::countedChildren(int node) const
{
    return static_cast<int>(std::count_if(at(node).children.begin(), at(node).children.end(),
                                          [this](int child) { return at(child).total > 0; }));
}

bool ChartTree::isChain(int node) const
{
    if (samples && !samples->chains.empty())
        return samples->chains[static_cast<size_t>(node)];
    const Node& n = at(node);
    if (n.count != 0 || n.total <= 0)
        return false;
    int counted = none;
    for (int child : n.children) {
        if (at(child).total <= 0)
            continue;
        if (counted != none)
            return false;
        counted = child;
    }
    // A child holding less than its parent means counts the file does not account for: the
    // parent is drawn as it is.
    return counted != none && at(counted).total == n.total;
}

bool ChartTree::isUnassigned(int node) const
{
    return TaxonName::isUnassigned(getName(node));
}

std::vector<int> ChartTree::getFirstBranchingLevel() const
{
    std::vector<int> level;
    if (isEmpty())
        return level;
    int node = 0;
    while (true) {
        std::vector<int> classified;
        qint64 sum = 0;
        for (int child : at(node).children) {
            if (at(child).total > 0 && !isUnassigned(child)) {
                classified.push_back(child);
                sum += at(child).total;
            }
        }
        if (classified.empty()) {
            if (level.empty() && node != 0)
                level.push_back(node);
            return level;
        }
        const int largest = *std::max_element(classified.begin(), classified.end(),
                                               [this](int a, int b) { return at(a).total < at(b).total; });
        const bool dominant = classified.size() == 1
                              || static_cast<double>(at(largest).total) >= dominantShare * static_cast<double>(sum);
        if (!dominant || countedChildren(largest) == 0) {
            level.insert(level.end(), classified.begin(), classified.end());
            return level;
        }
        for (int child : classified) {
            if (child != largest)
                level.push_back(child);
        }
        node = largest;
    }
}

QString ChartTree::getName(int node, bool raw) const
{
    const Node& n = at(node);
    if (raw || !n.named)
        return n.rawName;
    if (shownNames.size() != nodes.size())
        shownNames.assign(nodes.size(), QString());
    QString& shown = shownNames[static_cast<size_t>(node)];
    if (shown.isNull())
        shown = cleanName(node);
    return shown;
}

QString ChartTree::cleanName(int node) const
{
    const Node& n = at(node);
    const QString name = TaxonName::clean(n.rawName);
    if (!name.isEmpty())
        return name;
    if (!TaxonName::isEmptyRank(n.rawName))
        return n.rawName;
    // An empty rank, or a run of them: named after the nearest ancestor with a name.
    for (int i = n.parent; i != none; i = at(i).parent) {
        if (!at(i).named || !TaxonName::isEmptyRank(at(i).rawName))
            return TaxonName::unclassified(getName(i));
    }
    return TaxonName::unclassified(QString());
}

QStringList ChartTree::getPath(int node, bool raw) const
{
    QStringList names;
    for (int i = node; i != none; i = at(i).parent)
        names.prepend(getName(i, raw));
    return names;
}

QString ChartTree::nameOf(const QString& id, const QVariantMap& data)
{
    QString name = data.value(Zem::Ontology::NodeKey::scientificName).toString();
    if (name.isEmpty())
        name = data.value(Zem::Ontology::NodeKey::name).toString();
    return name.isEmpty() ? id : name;
}

} // namespace Viewer
} // namespace Sorvik
