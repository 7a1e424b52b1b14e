#pragma once

#include <QString>

namespace Zem {
namespace Ontology {
class Builder;
}
} // namespace Zem

namespace Sorvik {
namespace Test {

// The tree of a builder, or of an ontology file, as compact text to compare with an expected
// literal: each node as its label, ":" and its "count" when it has one, then its children in
// parentheses, separated by blanks. The label is the node's "name", else its "scientific name",
// else its id; labels holding blanks, parentheses, colons or nothing at all are quoted.
// Example: root(Bacteria(Firmicutes:3) "k  Archaea":2)
QString describeTree(const Zem::Ontology::Builder& builder);
QString describeOntology(const QString& fileName);

} // namespace Test
} // namespace Sorvik
