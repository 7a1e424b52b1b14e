#include "ontology/taxonomycache.h"

#include "nu/database.h"
#include "ontology/ontology.h"

#include <QFileInfo>
#include <QSqlQuery>
#include <QVariant>

namespace Zem {
namespace Ncbi {

const QString TaxonomyCache::createdKey = QStringLiteral("created");
const QString TaxonomyCache::originKey = QStringLiteral("origin");

TaxonomyCache::TaxonomyCache(const QString& name)
    : fileName(name)
{
    load();
}

void TaxonomyCache::load()
{
    const QFileInfo info(fileName);
    present = info.isFile();
    if (!present)
        return;
    try {
        const Ontology::Ontology ontology(fileName);
        usable = ontology.getNodeNumber() > 0;
        counted = ontology.isCounted();
    } catch (const Ontology::Ontology::Exception&) {
        return;
    }
    created = info.lastModified().toUTC();

    nu::database::Connection connection(QStringLiteral("zem-ncbi-cache"), fileName, true);
    if (!connection.open())
        return;
    QSqlQuery query(connection.getDatabase());
    query.setForwardOnly(true);
    if (!query.prepare(QStringLiteral("SELECT key, value FROM info WHERE key = :created OR key = :origin")))
        return;
    query.bindValue(QStringLiteral(":created"), createdKey);
    query.bindValue(QStringLiteral(":origin"), originKey);
    if (!query.exec())
        return;
    while (query.next()) {
        const QString value = query.value(1).toString();
        if (query.value(0).toString() == originKey) {
            origin = value;
            continue;
        }
        const QDateTime recorded = QDateTime::fromString(value, Qt::ISODate);
        if (recorded.isValid())
            created = recorded.toUTC();
    }
}

qint64 TaxonomyCache::getAgeDays(const QDateTime& now) const
{
    if (!created.isValid())
        return -1;
    return qMax<qint64>(0, created.secsTo(now) / (24 * 3600));
}

bool TaxonomyCache::isOld(const QDateTime& now) const
{
    return usable && getAgeDays(now) > oldAfterDays;
}

} // namespace Ncbi
} // namespace Zem
