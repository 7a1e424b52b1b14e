#pragma once

#include <QString>

namespace Zem {
namespace Ontology {

// The keys of a node's values in an ontology file. Readers, sources and charts all name them
// from here, so a key is spelled once.
namespace NodeKey {

// The node's own count and its subtree's total, as decimal text.
inline const QString count = QStringLiteral("count");
inline const QString accumCount = QStringLiteral("accumCount");
// A path node's name (Krona, QIIME), and a taxon's NCBI scientific name.
inline const QString name = QStringLiteral("name");
inline const QString scientificName = QStringLiteral("scientific name");
// A QIIME table's value, as written.
inline const QString percentage = QStringLiteral("percentage");
// What a classifier or the taxonomy says of a node: its rank as written, its taxon id.
inline const QString rank = QStringLiteral("rank");
inline const QString taxid = QStringLiteral("taxid");

} // namespace NodeKey
} // namespace Ontology
} // namespace Zem
