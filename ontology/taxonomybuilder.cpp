#include "ontology/taxonomybuilder.h"

#include "ontology/taxonomycache.h"
#include "ontology/taxonomydatabase.h"

#include <QDateTime>
#include <QSqlQuery>
#include <QVariant>

namespace Zem {
namespace Ncbi {

TaxonomyBuilder::TaxonomyBuilder(const QString& fileName, QObject* parent)
    : Ontology::BuilderSource(fileName, parent)
{
}

void TaxonomyBuilder::addDump(const TaxonomyDatabase& database, const QString& dumpOrigin)
{
    for (auto& source : database.getSources())
        addSource(std::move(source));
    dumpFolder = database.getFolder().absolutePath();
    origin = dumpOrigin;
}

void TaxonomyBuilder::load()
{
    Ontology::BuilderSource::load();
    if (!dumpFolder.isEmpty())
        changes.readDump(dumpFolder, [this](int rows) { checkCancelled(rows); });
}

void TaxonomyBuilder::writeExtras(QSqlDatabase& database)
{
    changes.write(database, [this](int rows) { checkCancelled(rows); });
    QSqlQuery info(database);
    if (!info.prepare(QStringLiteral("INSERT INTO info (key, value) VALUES ( :key, :value)")))
        throw StatementPrepareException();
    const QString created = QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
    for (const auto& row : {std::make_pair(TaxonomyCache::createdKey, created),
                            std::make_pair(TaxonomyCache::originKey, origin)}) {
        info.bindValue(QStringLiteral(":key"), row.first);
        info.bindValue(QStringLiteral(":value"), row.second);
        if (!info.exec())
            throw StatementExecException();
    }
}

} // namespace Ncbi
} // namespace Zem
