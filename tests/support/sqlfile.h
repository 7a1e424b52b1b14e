#pragma once

#include <QString>
#include <QStringList>
#include <QVariantList>

namespace Sorvik {
namespace Test {

// Runs SQL statements on an SQLite file (created when missing), for hand-made damaged files.
void execSql(const QString& fileName, const QStringList& statements);

// The rows of a query on an SQLite file, each row a list of column values.
QList<QVariantList> querySql(const QString& fileName, const QString& select);

// Puts the making of a taxonomy cache so many days (and a minute) back.
void setCacheAge(const QString& cache, int days);

} // namespace Test
} // namespace Sorvik
