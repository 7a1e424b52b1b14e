#pragma once

#include "ontology/reader.h"

#include <vector>

namespace Zem {
namespace Ontology {

// Reads the first row of an ontology file: the root with its values, for a file's summary.
class RootReader : public Reader
{
public:
    // The root, or an empty node (no id) when the file holds no nodes. Throws what Reader throws.
    static Node read(const Ontology& ontology);
    // The root's children with their values, in their order; none when the file holds no nodes.
    static std::vector<Node> readChildren(const Ontology& ontology);

    void openNode(const QString&, const QVariantMap&, const Position&) override {}
    void closeNode(const QString&, const QVariantMap&) override {}

private:
    using Reader::Reader;
};

} // namespace Ontology
} // namespace Zem
