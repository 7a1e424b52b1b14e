#pragma once

#include "ontology/builder.h"
#include "ontology/reader.h"
#include "ontology/source.h"

#include <QHash>
#include <QStack>

namespace Zem {
namespace Ontology {

// An existing ontology file copied into the builder with all its values, for instance the
// cached NCBI taxonomy under the user's counts.
class SourceOntology : public Source
{
public:
    // Replays the file's events as links and values of the builder source.
    class Reader : public Zem::Ontology::Reader
    {
    public:
        Reader(const Ontology& ontology, BuilderSource& builder);

        void openNode(const QString& id, const QVariantMap& data, const Position& position) override;
        void closeNode(const QString& id, const QVariantMap& data) override;

    private:
        // The open nodes, from the root down.
        QStack<Builder::Node*> stack;
        BuilderSource& builder;
        int closed = 0;
        // One shared copy of each value key (millions of nodes carry the same few keys), and of
        // each rank (a few dozen texts over millions of taxa).
        QHash<QString, QString> keys;
        QHash<QString, QString> ranks;
    };

    explicit SourceOntology(const QString& fileName = QString());

    QString getDescription() const override;
    void read(BuilderSource& builder) override;

    QString fileName;
};

} // namespace Ontology
} // namespace Zem
