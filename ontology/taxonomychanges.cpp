#include "ontology/taxonomychanges.h"

#include "nu/database.h"
#include "nu/linereader.h"
#include "ontology/builder.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>

namespace Zem {
namespace Ncbi {

namespace {

constexpr int stepInterval = 4096;
// Rows per INSERT statement: their values stay below SQLite's oldest limit of 999.
constexpr int rowsPerStatement = 400;

// The field at index of a dump row ("12\t|\t34\t|"), without its blanks.
QStringView field(const QString& line, int index)
{
    int from = 0;
    for (int i = 0; i < index; ++i) {
        from = line.indexOf(QLatin1Char('|'), from);
        if (from < 0)
            return QStringView();
        ++from;
    }
    int to = line.indexOf(QLatin1Char('|'), from);
    if (to < 0)
        to = line.size();
    return QStringView(line).mid(from, to - from).trimmed();
}

// Reads a dump file row by row; absent files give no rows.
void readRows(const QString& fileName, const std::function<void(const QString&)>& row,
              const std::function<void(int)>& step)
{
    if (!QFileInfo(fileName).isFile())
        return;
    nu::LineReader lines(fileName);
    if (!lines.isOpen())
        throw nu::LineReader::ReadException(QStringLiteral("cannot read %1: %2").arg(fileName, lines.getErrorString()));
    int read = 0;
    while (lines.next()) {
        if (step && ++read % stepInterval == 0)
            step(read);
        if (!lines.isTooLong())
            row(lines.getLine());
    }
}

// Inserts rows of width ids each, many rows a statement: a statement per row would cost more
// than the rest of writing them.
class TableWriter
{
public:
    TableWriter(QSqlDatabase& database, const QString& table, int width)
        : database(database)
        , table(table)
        , width(width)
    {
        pending.reserve(size_t(rowsPerStatement * width));
    }

    void add(quint32 first, quint32 second = 0)
    {
        pending.push_back(first);
        if (width > 1)
            pending.push_back(second);
        if (pending.size() == size_t(rowsPerStatement * width))
            flush();
    }

    void flush()
    {
        if (pending.empty())
            return;
        const int rows = int(pending.size()) / width;
        QSqlQuery* query = &full;
        if (rows != rowsPerStatement || !fullPrepared) {
            query = rows == rowsPerStatement ? &full : &rest;
            *query = QSqlQuery(database);
            if (!query->prepare(statement(rows)))
                throw Ontology::Builder::StatementPrepareException();
            fullPrepared = fullPrepared || rows == rowsPerStatement;
        }
        for (size_t i = 0; i < pending.size(); ++i)
            query->bindValue(int(i), qlonglong(pending[i]));
        if (!query->exec())
            throw Ontology::Builder::StatementExecException();
        pending.clear();
    }

private:
    QString statement(int rows) const
    {
        const QString row = QLatin1Char('(') + QStringLiteral("?,").repeated(width - 1) + QStringLiteral("?)");
        QString sql = QStringLiteral("INSERT INTO %1 VALUES %2").arg(table, row);
        for (int i = 1; i < rows; ++i)
            sql += QLatin1Char(',') + row;
        return sql;
    }

    QSqlDatabase& database;
    QString table;
    int width;
    std::vector<quint32> pending;
    QSqlQuery full;
    QSqlQuery rest;
    bool fullPrepared = false;
};

} // namespace

const QString TaxonomyChanges::mergedFileName = QStringLiteral("merged.dmp");
const QString TaxonomyChanges::deletedFileName = QStringLiteral("delnodes.dmp");

quint32 TaxonomyChanges::parseId(QStringView text)
{
    if (text.isEmpty() || text.size() > 10)
        return 0;
    quint64 value = 0;
    for (const QChar c : text) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return 0;
        value = value * 10 + quint64(c.unicode() - '0');
    }
    return value > 0xffffffffu ? 0 : quint32(value);
}

void TaxonomyChanges::readDump(const QString& folder, const std::function<void(int)>& step)
{
    const QDir dir(folder);
    readRows(dir.absoluteFilePath(mergedFileName), [this](const QString& line) {
        const quint32 oldId = parseId(field(line, 0));
        const quint32 newId = parseId(field(line, 1));
        if (oldId != 0 && newId != 0 && oldId != newId)
            merged.insert(oldId, newId);
    }, step);
    readRows(dir.absoluteFilePath(deletedFileName), [this](const QString& line) {
        if (const quint32 id = parseId(field(line, 0)))
            deleted.push_back(id);
    }, step);
    sortDeleted();
}

void TaxonomyChanges::write(QSqlDatabase& database, const std::function<void(int)>& step) const
{
    const auto exec = [&database](const QString& sql) {
        QSqlQuery query(database);
        if (!query.prepare(sql))
            throw Ontology::Builder::StatementPrepareException();
        if (!query.exec())
            throw Ontology::Builder::StatementExecException();
    };
    // Keyed by the id, so that a chart looks up the few it needs; written in id order, which is
    // how SQLite builds such a table fastest.
    exec(QStringLiteral("CREATE TABLE merged( id INTEGER PRIMARY KEY, new_id INTEGER)"));
    exec(QStringLiteral("CREATE TABLE deleted( id INTEGER PRIMARY KEY)"));
    std::vector<quint32> oldIds(merged.keyBegin(), merged.keyEnd());
    std::sort(oldIds.begin(), oldIds.end());
    int written = 0;
    TableWriter mergedRows(database, QStringLiteral("merged"), 2);
    for (const quint32 id : oldIds) {
        mergedRows.add(id, merged.value(id));
        if (step && ++written % stepInterval == 0)
            step(written);
    }
    mergedRows.flush();
    TableWriter deletedRows(database, QStringLiteral("deleted"), 1);
    for (const quint32 id : deleted) {
        deletedRows.add(id);
        if (step && ++written % stepInterval == 0)
            step(written);
    }
    deletedRows.flush();
}

TaxonomyChanges TaxonomyChanges::read(const QString& cacheFile, bool withDeleted)
{
    TaxonomyChanges changes;
    if (!QFileInfo(cacheFile).isFile())
        return changes;
    nu::database::Connection connection(QStringLiteral("zem-ncbi-changes"), cacheFile, true);
    if (!connection.open())
        return changes;
    const QStringList tables = connection.getDatabase().tables();
    const auto select = [&connection, &tables](const QString& table, const QString& columns,
                                               const std::function<void(const QSqlQuery&)>& row) {
        if (!tables.contains(table))
            return;
        QSqlQuery query(connection.getDatabase());
        query.setForwardOnly(true);
        if (!query.prepare(QStringLiteral("SELECT %1 FROM %2").arg(columns, table)) || !query.exec())
            return;
        while (query.next())
            row(query);
    };
    select(QStringLiteral("merged"), QStringLiteral("id, new_id"), [&changes](const QSqlQuery& query) {
        const quint32 oldId = parseId(query.value(0).toString());
        const quint32 newId = parseId(query.value(1).toString());
        if (oldId != 0 && newId != 0 && oldId != newId)
            changes.merged.insert(oldId, newId);
    });
    if (withDeleted) {
        select(QStringLiteral("deleted"), QStringLiteral("id"), [&changes](const QSqlQuery& query) {
            if (const quint32 id = parseId(query.value(0).toString()))
                changes.deleted.push_back(id);
        });
        changes.sortDeleted();
    }
    return changes;
}

TaxonomyChanges TaxonomyChanges::read(const QString& cacheFile, const QStringList& ids)
{
    TaxonomyChanges changes;
    if (ids.isEmpty() || !QFileInfo(cacheFile).isFile())
        return changes;
    nu::database::Connection connection(QStringLiteral("zem-ncbi-changes"), cacheFile, true);
    if (!connection.open())
        return changes;
    const QStringList tables = connection.getDatabase().tables();
    QSqlQuery mergedQuery(connection.getDatabase());
    QSqlQuery deletedQuery(connection.getDatabase());
    const bool haveMerged = tables.contains(QStringLiteral("merged"))
        && mergedQuery.prepare(QStringLiteral("SELECT new_id FROM merged WHERE id = :id"));
    const bool haveDeleted = tables.contains(QStringLiteral("deleted"))
        && deletedQuery.prepare(QStringLiteral("SELECT id FROM deleted WHERE id = :id"));
    std::vector<quint32> wanted;
    for (const QString& id : ids) {
        if (const quint32 value = parseId(id))
            wanted.push_back(value);
    }
    // The ids merged ones point at are looked up in turn, so chains are followed; the loop
    // guard in getNewId() ends a loop.
    QSet<quint32> seen;
    for (size_t i = 0; i < wanted.size() && seen.size() < ids.size() + 1024; ++i) {
        const quint32 id = wanted[i];
        if (seen.contains(id))
            continue;
        seen.insert(id);
        const auto lookUp = [id](QSqlQuery& query) {
            query.bindValue(QStringLiteral(":id"), qlonglong(id));
            return query.exec() && query.next();
        };
        if (haveMerged && lookUp(mergedQuery)) {
            const quint32 newId = quint32(mergedQuery.value(0).toLongLong());
            changes.addMerged(id, newId);
            wanted.push_back(newId);
        }
        if (haveDeleted && lookUp(deletedQuery))
            changes.deleted.push_back(id);
        mergedQuery.finish();
        deletedQuery.finish();
    }
    changes.sortDeleted();
    return changes;
}

std::pair<qint64, qint64> TaxonomyChanges::count(const QString& cacheFile)
{
    std::pair<qint64, qint64> numbers{0, 0};
    if (!QFileInfo(cacheFile).isFile())
        return numbers;
    nu::database::Connection connection(QStringLiteral("zem-ncbi-changes"), cacheFile, true);
    if (!connection.open())
        return numbers;
    const QStringList tables = connection.getDatabase().tables();
    const auto rows = [&connection, &tables](const QString& table) -> qint64 {
        if (!tables.contains(table))
            return 0;
        QSqlQuery query(connection.getDatabase());
        if (!query.prepare(QStringLiteral("SELECT count(*) FROM %1").arg(table)) || !query.exec() || !query.next())
            return 0;
        return query.value(0).toLongLong();
    };
    numbers.first = rows(QStringLiteral("merged"));
    numbers.second = rows(QStringLiteral("deleted"));
    return numbers;
}

void TaxonomyChanges::addMerged(quint32 oldId, quint32 newId)
{
    if (oldId != 0 && newId != 0 && oldId != newId)
        merged.insert(oldId, newId);
}

void TaxonomyChanges::addDeleted(quint32 id)
{
    if (id == 0)
        return;
    deleted.push_back(id);
    sortDeleted();
}

void TaxonomyChanges::sortDeleted()
{
    std::sort(deleted.begin(), deleted.end());
    deleted.erase(std::unique(deleted.begin(), deleted.end()), deleted.end());
}

QString TaxonomyChanges::getNewId(const QString& id) const
{
    quint32 current = parseId(id);
    if (current == 0)
        return QString();
    // NCBI keeps the list flat (old id to today's id), but a chain is followed to its end; a
    // loop, which only a damaged dump could hold, leads nowhere.
    std::vector<quint32> seen{current};
    for (auto next = merged.constFind(current); next != merged.constEnd(); next = merged.constFind(current)) {
        current = next.value();
        if (std::find(seen.begin(), seen.end(), current) != seen.end())
            return QString();
        seen.push_back(current);
    }
    return seen.size() > 1 ? QString::number(current) : QString();
}

bool TaxonomyChanges::isDeleted(const QString& id) const
{
    const quint32 value = parseId(id);
    return value != 0 && std::binary_search(deleted.begin(), deleted.end(), value);
}

} // namespace Ncbi
} // namespace Zem
