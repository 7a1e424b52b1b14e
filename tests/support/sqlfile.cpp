#include "tests/support/sqlfile.h"

#include "nu/database.h"
#include "ontology/taxonomycache.h"

#include <QDateTime>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QtTest>

#include <stdexcept>

namespace Sorvik {
namespace Test {

void execSql(const QString& fileName, const QStringList& statements)
{
    nu::database::Connection connection(QStringLiteral("test-sql"), fileName, false);
    if (!connection.open())
        throw std::runtime_error("cannot open test database");
    QSqlQuery query(connection.getDatabase());
    for (const QString& sql : statements) {
        if (!query.exec(sql))
            throw std::runtime_error(query.lastError().text().toStdString());
    }
}

QList<QVariantList> querySql(const QString& fileName, const QString& select)
{
    nu::database::Connection connection(QStringLiteral("test-sql"), fileName, true);
    if (!connection.open())
        throw std::runtime_error("cannot open test database");
    QList<QVariantList> rows;
    QSqlQuery query(connection.getDatabase());
    if (!query.exec(select))
        throw std::runtime_error(query.lastError().text().toStdString());
    while (query.next()) {
        QVariantList row;
        for (int i = 0; i < query.record().count(); ++i)
            row << query.value(i);
        rows << row;
    }
    return rows;
}

void setCacheAge(const QString& cache, int days)
{
    const QString created = QDateTime::currentDateTimeUtc().addDays(-days).addSecs(-60).toString(Qt::ISODate);
    execSql(cache, {QStringLiteral("INSERT OR REPLACE INTO info (key, value) VALUES ('%1', '%2')")
                        .arg(Zem::Ncbi::TaxonomyCache::createdKey, created)});
}

} // namespace Test
} // namespace Sorvik
