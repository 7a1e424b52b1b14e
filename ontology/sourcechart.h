#pragma once

#include "ontology/builder.h"
#include "ontology/source.h"

#include <QHash>
#include <QString>

#include <memory>

namespace Zem {
namespace Ontology {

// A counted chart, made elsewhere, as the source of its samples for a chart that joins several.
// Nodes are matched by key, as charts of the same input match: "taxid:N" for taxa with a taxon
// id, else "path:" and the names from the root down. A node new to the builder keeps its id
// unless another node has it already; then it takes a new one ("p" and a number). As when the
// inputs are built together, the first chart places a node and later charts' values replace
// earlier ones; each chart's samples are added after those before it, in their order (a chart of
// one sample gives one, named after its file).
class SourceChart : public Source
{
public:
    // What the charts joined into one builder share: the nodes by taxon id and by path.
    struct Keys
    {
        QHash<QString, Builder::Node*> taxids;
        QHash<QString, Builder::Node*> paths;
        qint64 lastNumber = 0;
    };

    SourceChart(const QString& fileName, std::shared_ptr<Keys> keys);

    QString getDescription() const override;
    // Throws Ontology's exceptions for what is no chart, and ChartSamples::InvalidFormatException
    // for a damaged samples table.
    void read(BuilderSource& builder) override;

private:
    class Reader;

    QString fileName;
    std::shared_ptr<Keys> keys;
};

} // namespace Ontology
} // namespace Zem
