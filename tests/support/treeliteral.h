#pragma once

#include <QString>

namespace Zem {
namespace Ontology {
class Builder;
}
} // namespace Zem

namespace Sorvik {
namespace Test {

// Fills a builder from a tree literal such as
//     root(a:3(c:2) b="Homo sapiens":1)
// Each node is id[=name][:count] followed by an optional parenthesised list of children
// separated by blanks. A name (quoted when it holds blanks) becomes "scientific name", a count
// becomes "count". The first node is the root. Throws std::invalid_argument on a bad literal.
void buildTree(Zem::Ontology::Builder& builder, const QString& literal);

// Builds the literal into a file; counted with trimming when count is true.
void writeTree(const QString& fileName, const QString& literal, bool count = true, bool trim = false);

} // namespace Test
} // namespace Sorvik
