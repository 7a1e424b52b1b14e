#include "ontology/sourcechart.h"

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

// Matches the chart's nodes with the builder's, row by row.
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

    void openNode(const QString& id, const QVariantMap& data, const Position& position) override
    {
        QString path;
        const QString key = keyOf(id, data, paths.empty() ? QString() : paths.back(), path);
        Builder::Node* node = nullptr;
        if (paths.empty()) {
            // The roots are one whatever their ids.
            node = builder.getRoot();
            if (!node) {
                node = builder.getNode(id);
                builder.addChild(node, node);
            }
            copyValues(node, data);
        } else {
            node = keys.nodes.value(key);
            if (!node) {
                node = builder.getNode(freeId(id));
                builder.addChild(open.back(), node);
            }
            copyValues(node, data);
        }
        keys.nodes.insert(key, node);
        paths.push_back(path);
        open.push_back(node);
        // A node the file holds under two parents is counted once.
        const int row = position.getRow();
        if (row >= 0 && static_cast<size_t>(row) < byRow.size() && !seen.contains(id)) {
            seen.insert(id);
            byRow[static_cast<size_t>(row)] = node;
            bool ok = false;
            const qint64 count = data.value(NodeKey::count).toString().toLongLong(&ok);
            if (ok && count > 0)
                own.emplace_back(node, count);
        }
        builder.notifySourceCurrentPos(++opened);
        builder.checkCancelled(opened);
    }

    void closeNode(const QString&, const QVariantMap&) override
    {
        paths.pop_back();
        open.pop_back();
    }

    // The nodes' own counts as the file's values give them (a chart of one sample).
    const std::vector<std::pair<Builder::Node*, qint64>>& getOwnCounts() const { return own; }

    Builder::Node* nodeOfRow(int row) const
    {
        return row >= 0 && static_cast<size_t>(row) < byRow.size() ? byRow[static_cast<size_t>(row)] : nullptr;
    }

private:
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

    static void copyValues(Builder::Node* node, const QVariantMap& data)
    {
        for (auto it = data.constBegin(); it != data.constEnd(); ++it) {
            if (it.key() != NodeKey::count && it.key() != NodeKey::accumCount)
                node->data.insert(it.key(), it.value().toString());
        }
    }

    BuilderSource& builder;
    Keys& keys;
    std::vector<QString> paths;
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

QString SourceChart::keyOf(const QString& id, const QVariantMap& data, const QString& parentPath, QString& path)
{
    QString name = data.value(NodeKey::scientificName).toString();
    const bool ncbi = !name.isEmpty() || data.contains(NodeKey::scientificName);
    if (name.isEmpty())
        name = data.value(NodeKey::name).toString();
    if (name.isEmpty())
        name = id;
    // The root's path is empty; below it, the names joined by tabs, which no name holds.
    if (parentPath.isNull())
        path = QStringLiteral("path:");
    else if (parentPath == QLatin1String("path:"))
        path = parentPath + name;
    else
        path = parentPath + QLatin1Char('\t') + name;
    QString taxid = data.value(NodeKey::taxid).toString();
    if (taxid.isEmpty() && ncbi)
        taxid = id;
    return taxid.isEmpty() ? path : QStringLiteral("taxid:") + taxid;
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
