#pragma once

#include "ontology/buildersource.h"
#include "ontology/taxonomychanges.h"

namespace Zem {
namespace Ncbi {

class TaxonomyDatabase;

// Builds the NCBI taxonomy cache from an unpacked dump: the taxa of nodes.dmp with their ranks
// and scientific names as the tree, and in the same file the ids NCBI merged or deleted, and
// when and from what the cache was made. All of it is written in one go, so a cache is never
// found without its lists of retired ids.
class TaxonomyBuilder : public Ontology::BuilderSource
{
public:
    explicit TaxonomyBuilder(const QString& fileName, QObject* parent = nullptr);

    // Takes the dump's sources; its merged and deleted ids are read as the last step of load().
    // origin: the address or archive the dump came from.
    void addDump(const TaxonomyDatabase& database, const QString& origin);
    void load() override;
    const TaxonomyChanges& getChanges() const { return changes; }

protected:
    void writeExtras(QSqlDatabase& database) override;

private:
    QString dumpFolder;
    QString origin;
    TaxonomyChanges changes;
};

} // namespace Ncbi
} // namespace Zem
