#include "ontology/ontology.h"

#include "nu/database.h"
#include "nu/partfile.h"

#include <QFileInfo>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

namespace Zem {
namespace Ontology {

const char* Ontology::Exception::what() const noexcept
{
    return "not an ontology file";
}
const char* Ontology::OpenDatabaseException::what() const noexcept
{
    return "the file could not be opened";
}
const char* Ontology::InvalidFormatException::what() const noexcept
{
    return "the file is not an ontology file";
}

Ontology::Ontology(const QString& name)
    : fileName(name)
{
    load();
}

void Ontology::load()
{
    // Opened read-only, so a check never creates or changes a file.
    const QFileInfo info(fileName);
    if (!info.isFile())
        throw OpenDatabaseException();
    // A write that never finished, however complete it may look.
    if (nu::PartFile::isPartFileName(info.fileName()))
        throw InvalidFormatException();
    nu::database::Connection connection(QStringLiteral("zem-ontology-ontology"), fileName, true);
    if (!connection.open())
        throw OpenDatabaseException();

    QSqlDatabase db = connection.getDatabase();
    const QStringList tables = db.tables();
    if (!tables.contains(QStringLiteral("nodes"), Qt::CaseSensitive)
        || !tables.contains(QStringLiteral("info"), Qt::CaseSensitive))
        throw InvalidFormatException();

    auto readInfo = [&db](const QString& key) {
        QSqlQuery query(db);
        query.setForwardOnly(true);
        if (!query.prepare(QStringLiteral("SELECT value FROM info WHERE key = :key")))
            throw InvalidFormatException();
        query.bindValue(QStringLiteral(":key"), key);
        if (!query.exec() || !query.next())
            throw InvalidFormatException();
        return query.value(0);
    };
    nodeNumber = readInfo(QStringLiteral("nodes")).toInt();
    counted = readInfo(QStringLiteral("counted")).toBool();
}

} // namespace Ontology
} // namespace Zem
