#pragma once

#include <QDateTime>
#include <QString>

namespace Zem {
namespace Ncbi {

// What an NCBI taxonomy cache file says of itself, read without loading its tree: whether it
// can be used, when it was made and from which download address or archive, and so whether it
// is due for an update.
class TaxonomyCache
{
public:
    // Its rows in the file's "info" table, beside "nodes" and "counted".
    static const QString createdKey;
    static const QString originKey;
    // NCBI merges and deletes thousands of ids a year: after this long, users are told to update.
    static constexpr int oldAfterDays = 180;

    explicit TaxonomyCache(const QString& fileName);

    QString getFileName() const { return fileName; }
    bool exists() const { return present; }
    // An ontology file with taxa; a damaged or empty one is made anew rather than used.
    bool isUsable() const { return usable; }
    bool isCounted() const { return counted; }
    // When it was made: from its info, or from the file's time for a cache made before it
    // recorded that. Invalid when there is no cache.
    QDateTime getCreated() const { return created; }
    // The address or archive it was made from; empty when it does not say.
    QString getOrigin() const { return origin; }
    // Whole days from its making to now; -1 without a cache.
    qint64 getAgeDays(const QDateTime& now = QDateTime::currentDateTimeUtc()) const;
    bool isOld(const QDateTime& now = QDateTime::currentDateTimeUtc()) const;

private:
    void load();

    QString fileName;
    bool present = false;
    bool usable = false;
    bool counted = false;
    QDateTime created;
    QString origin;
};

} // namespace Ncbi
} // namespace Zem
