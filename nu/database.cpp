#include "nu/database.h"

#include <QMutex>
#include <QMutexLocker>

namespace nu {
namespace database {

namespace {

// Taking a name and registering it must be one step, or two threads could pick the same name.
QMutex& namingMutex()
{
    static QMutex mutex;
    return mutex;
}

QString freeName(const QString& base)
{
    if (!QSqlDatabase::contains(base))
        return base;
    for (int n = 1; n < 256; ++n) {
        const QString name = base + QLatin1Char('_') + QChar(static_cast<signed char>(n));
        if (!QSqlDatabase::contains(name))
            return name;
    }
    // Hundreds of live connections on one base: fall back to decimal suffixes.
    for (int n = 256;; ++n) {
        const QString name = base + QLatin1Char('_') + QString::number(n);
        if (!QSqlDatabase::contains(name))
            return name;
    }
}

} // namespace

QString getConnectionName(const QString& base)
{
    QMutexLocker lock(&namingMutex());
    return freeName(base);
}

Connection::Connection(const QString& base, const QString& fileName, bool readOnly)
{
    QMutexLocker lock(&namingMutex());
    name = freeName(base);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
    db.setDatabaseName(fileName);
    if (readOnly)
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
}

Connection::~Connection()
{
    {
        QSqlDatabase db = QSqlDatabase::database(name, false);
        if (db.isOpen())
            db.close();
    }
    QSqlDatabase::removeDatabase(name);
}

QSqlDatabase Connection::getDatabase() const
{
    return QSqlDatabase::database(name, false);
}

bool Connection::open()
{
    QSqlDatabase db = getDatabase();
    return db.open();
}

} // namespace database
} // namespace nu
