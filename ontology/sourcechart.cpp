#include "ontology/sourcechart.h"

#include "nu/compactjson.h"
#include "ontology/buildersource.h"
#include "ontology/chartsamples.h"
#include "ontology/nodekeys.h"
#include "ontology/ontology.h"
#include "ontology/reader.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <vector>

namespace Zem {
namespace Ontology {

// Matches the chart's nodes with the builder's, row by row. The values are read from the file's
// text: a merge reads millions of rows.
class SourceChart::Reader : public Zem::Ontology::Reader
{
public:
    Reader(const Ontology& ontology, BuilderSource& b, Keys& k)
        : Zem::Ontology::Reader(ontology)
        , builder(b)
        , keys(k)
        , byRow(static_cast<size_t>(std::max(0, ontology.getNodeNumber())), nullptr)
    {
    }

    void openNode(const QString& id, const QVariantMap&, const Position& position) override
    {
        readValues(getOpenText());
        QStringView name = value(NodeKey::scientificName);
        const bool ncbi = !name.isNull();
        if (name.isEmpty())
            name = value(NodeKey::name);
        if (name.isEmpty())
            name = id;
        QStringView taxid = value(NodeKey::taxid);
        if (taxid.isEmpty() && ncbi)
            taxid = id;
        names.push_back(name.toString());
        paths.emplace_back();

        Builder::Node* node = nullptr;
        const bool root = open.empty();
        if (root) {
            // The roots are one whatever their ids.
            node = builder.getRoot();
        } else if (!taxid.isEmpty()) {
            node = keys.taxids.value(taxid.toString());
        } else {
            node = keys.paths.value(pathAt(paths.size() - 1));
        }
        if (!node) {
            node = builder.getNode(freeId(id));
            builder.addChild(root ? node : open.back(), node);
            if (!taxid.isEmpty())
                keys.taxids.insert(taxid.toString(), node);
            else
                keys.paths.insert(pathAt(paths.size() - 1), node);
        }
        copyValues(node);
        open.push_back(node);
        // A node the file holds under two parents is counted once.
        const int row = position.getRow();
        if (row >= 0 && static_cast<size_t>(row) < byRow.size() && !seen.contains(id)) {
            seen.insert(id);
            byRow[static_cast<size_t>(row)] = node;
            bool ok = false;
            const qint64 count = value(NodeKey::count).toLongLong(&ok);
            if (ok && count > 0)
                own.emplace_back(node, count);
        }
        builder.notifySourceCurrentPos(++opened);
        builder.checkCancelled(opened);
    }

    void closeNode(const QString&, const QVariantMap&) override
    {
        names.pop_back();
        paths.pop_back();
        open.pop_back();
    }

    // The nodes' own counts as the file's values give them (a chart of one sample).
    const std::vector<std::pair<Builder::Node*, qint64>>& getOwnCounts() const { return own; }

    Builder::Node* nodeOfRow(int row) const
    {
        return row >= 0 && static_cast<size_t>(row) < byRow.size() ? byRow[static_cast<size_t>(row)] : nullptr;
    }

protected:
    bool shouldKeepDataText() const override { return true; }

private:
    void readValues(const QString& text)
    {
        if (nu::splitCompactJson(text, pairs))
            return;
        // Escapes or numbers: the general way, into texts of our own.
        pairs.clear();
        slow.clear();
        const QVariantMap values = nu::fromCompactJson(text);
        for (auto it = values.constBegin(); it != values.constEnd(); ++it)
            slow.push_back({it.key(), it.value().toString()});
        for (const auto& pair : slow)
            pairs.emplace_back(pair.first, pair.second);
    }

    QStringView value(const QString& key) const
    {
        for (const auto& pair : pairs) {
            if (pair.first == key)
                return pair.second.isNull() ? QStringView(u"") : pair.second;
        }
        return QStringView();
    }

    // The path key of the open node at depth: "path:" and the names below the root, joined by
    // tabs, which no name holds. Made only for nodes without a taxon id and their ancestors.
    const QString& pathAt(size_t depth)
    {
        QString& path = paths[depth];
        if (path.isNull()) {
            if (depth == 0)
                path = QStringLiteral("path:");
            else if (depth == 1)
                path = QStringLiteral("path:") + names[depth];
            else
                path = pathAt(depth - 1) + QLatin1Char('\t') + names[depth];
        }
        return path;
    }

    QString freeId(const QString& id)
    {
        if (!id.isEmpty() && !builder.findNode(id))
            return id;
        QString fresh;
        do
            fresh = QLatin1Char('p') + QString::number(++keys.lastNumber);
        while (builder.findNode(fresh));
        return fresh;
    }

    // Later charts' values replace earlier ones, as a build of all inputs replaces them.
    void copyValues(Builder::Node* node)
    {
        for (const auto& [key, text] : pairs) {
            if (key == NodeKey::count || key == NodeKey::accumCount)
                continue;
            const QString name = shared(key);
            const QString* earlier = node->data.find(name);
            if (earlier && QStringView(*earlier) == text)
                continue;
            node->data.insert(name, text.toString());
        }
    }

    // One copy of each key for all nodes.
    QString shared(QStringView key)
    {
        for (const QString& known : keyTexts) {
            if (QStringView(known) == key)
                return known;
        }
        keyTexts.push_back(key.toString());
        return keyTexts.back();
    }

    BuilderSource& builder;
    Keys& keys;
    std::vector<std::pair<QStringView, QStringView>> pairs;
    std::vector<std::pair<QString, QString>> slow;
    std::vector<QString> names;
    std::vector<QString> paths;
    std::vector<QString> keyTexts;
    std::vector<Builder::Node*> open;
    std::vector<Builder::Node*> byRow;
    std::vector<std::pair<Builder::Node*, qint64>> own;
    QSet<QString> seen;
    int opened = 0;
};

SourceChart::SourceChart(const QString& name, std::shared_ptr<Keys> k)
    : fileName(name)
    , keys(std::move(k))
{
}

QString SourceChart::getDescription() const
{
    return fileName;
}

void SourceChart::read(BuilderSource& builder)
{
    const Ontology ontology(fileName);
    if (!ontology.isCounted() || ontology.getNodeNumber() < 1)
        throw Ontology::InvalidFormatException();
    // The samples first: a damaged table is refused before anything is added.
    const std::vector<ChartSamples::Stored> stored = ChartSamples::read(ontology);
    for (const auto& sample : stored)
        ChartSamples::decode(sample.counts, ontology.getNodeNumber());

    builder.notifySourceTotalSize(ontology.getNodeNumber());
    Reader reader(ontology, builder, *keys);
    reader.read();
    addLinesRead(ontology.getNodeNumber());

    SampleCounts& samples = builder.getSamples();
    if (stored.empty()) {
        const int sample = samples.add(QFileInfo(fileName).completeBaseName());
        for (const auto& [node, count] : reader.getOwnCounts())
            samples.addCount(sample, node, count);
        return;
    }
    for (size_t s = 0; s < stored.size(); ++s) {
        const int sample = samples.add(stored[s].name);
        for (const ChartSamples::Entry& entry : ChartSamples::decode(stored[s].counts, ontology.getNodeNumber())) {
            if (Builder::Node* node = reader.nodeOfRow(entry.row))
                samples.addCount(sample, node, entry.count);
        }
    }
}

} // namespace Ontology
} // namespace Zem
