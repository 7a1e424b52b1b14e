#include "ontology/rootreader.h"

#include "ontology/ontology.h"

namespace Zem {
namespace Ontology {

Reader::Node RootReader::read(const Ontology& ontology)
{
    if (ontology.getNodeNumber() < 1)
        return Node();
    RootReader reader(ontology);
    return reader.readNode();
}

std::vector<Reader::Node> RootReader::readChildren(const Ontology& ontology)
{
    std::vector<Node> children;
    if (ontology.getNodeNumber() < 1)
        return children;
    RootReader reader(ontology);
    const Node root = reader.readNode(false);
    for (int i = 0; i < root.count; ++i)
        children.push_back(reader.readNode());
    return children;
}

} // namespace Ontology
} // namespace Zem
