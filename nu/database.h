#pragma once

#include <QSqlDatabase>
#include <QString>

namespace nu {
namespace database {

// A name for a new Qt SQL connection: base itself when free, else base + "_" + one character of
// code n for the first free n = 1, 2, ...
QString getConnectionName(const QString& base);

// One named SQLite connection, registered under a fresh name from getConnectionName and removed
// when this object dies. Queries on it must be destroyed first, so declare it before them.
class Connection
{
public:
    Connection(const QString& base, const QString& fileName, bool readOnly);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    QString getName() const { return name; }
    QSqlDatabase getDatabase() const;
    bool open();

private:
    QString name;
};

} // namespace database
} // namespace nu
