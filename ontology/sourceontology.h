#pragma once

#include "ontology/builder.h"
#include "ontology/reader.h"
#include "ontology/source.h"

#include <QStack>

#include <utility>
#include <vector>

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
        void closeNode(const QString& id, const QVariantMap& data, const QString& text) override;

    protected:
        bool shouldKeepDataText() const override { return true; }

    private:
        void addValue(Builder::Node* node, QStringView key, QStringView value);
        // One shared copy of a key or a rank: millions of nodes carry the same few keys, and
        // a few dozen ranks.
        static QString share(QStringView text, std::vector<QString>& texts);

        // The open nodes, from the root down.
        QStack<Builder::Node*> stack;
        BuilderSource& builder;
        int closed = 0;
        std::vector<QString> keys;
        std::vector<QString> ranks;
        std::vector<std::pair<QStringView, QStringView>> pairs;
    };

    explicit SourceOntology(const QString& fileName = QString());

    QString getDescription() const override;
    void read(BuilderSource& builder) override;

    QString fileName;
};

} // namespace Ontology
} // namespace Zem
