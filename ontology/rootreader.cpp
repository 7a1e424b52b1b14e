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

} // namespace Ontology
} // namespace Zem
