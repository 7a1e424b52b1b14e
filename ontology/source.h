#pragma once

#include <QString>

class QFile;
class QTextStream;

namespace Zem {
namespace Ontology {

class BuilderSource;

// One input that adds nodes, links and values to a builder source. Path sources (Krona, QIIME,
// ontology files, the NCBI dump) make the tree; count sources (taxon ids, MG-Taxa) only attach
// counts to ids that a tree source places.
class Source
{
public:
    virtual ~Source();

    virtual QString getDescription() const = 0;
    virtual void read(BuilderSource& builder) = 0;

protected:
    // Opens file read-only as UTF-8 text for stream; false when it cannot be read, in which case
    // the source adds nothing (unreadable inputs are caught by whoever chose them).
    static bool openText(QFile& file, QTextStream& stream);
};

} // namespace Ontology
} // namespace Zem
