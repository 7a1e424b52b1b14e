#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <utility>
#include <vector>

class QSqlDatabase;

namespace Zem {
namespace Ncbi {

// The taxon ids NCBI has retired: merged into another taxon (merged.dmp: old id, new id) or
// deleted (delnodes.dmp). Classifier databases are built from other dumps than the cache, so an
// id the tree lacks is looked up here before it is called unknown. The cache keeps both lists
// in tables of their own beside its tree.
class TaxonomyChanges
{
public:
    static const QString mergedFileName;
    static const QString deletedFileName;

    // Reads merged.dmp and delnodes.dmp of an unpacked dump; a dump without them retired
    // nothing. step is called every few thousand rows with the rows read so far, so a caller
    // can cancel. Rows that hold no id are passed over.
    void readDump(const QString& folder, const std::function<void(int)>& step = {});
    // Creates the tables "merged" and "deleted" in an open database, inside its transaction, and
    // fills them. Throws Ontology::Builder::StatementExecException when that fails.
    void write(QSqlDatabase& database, const std::function<void(int)>& step = {}) const;
    // The changes a cache file keeps; only the merged ids unless withDeleted. A cache made before
    // it kept them, or one that cannot be read, gives none.
    static TaxonomyChanges read(const QString& cacheFile, bool withDeleted);
    // Only what the cache keeps on these ids (and on the ids they were merged into): a chart
    // needs a few, and looking them up costs far less than reading half a million.
    static TaxonomyChanges read(const QString& cacheFile, const QStringList& ids);
    // How many merged and how many deleted ids a cache file keeps, without reading them.
    static std::pair<qint64, qint64> count(const QString& cacheFile);

    void addMerged(quint32 oldId, quint32 newId);
    void addDeleted(quint32 id);

    // The id that id was merged into, following later merges; empty when it was not merged.
    QString getNewId(const QString& id) const;
    bool isDeleted(const QString& id) const;
    int getMergedNumber() const { return merged.size(); }
    int getDeletedNumber() const { return int(deleted.size()); }

    // A taxon id as NCBI writes it (decimal digits, no sign, within 32 bits); 0 when it is not one.
    static quint32 parseId(QStringView text);

private:
    void sortDeleted();

    QHash<quint32, quint32> merged;
    // Sorted, without repeats, once reading is done.
    std::vector<quint32> deleted;
};

} // namespace Ncbi
} // namespace Zem
