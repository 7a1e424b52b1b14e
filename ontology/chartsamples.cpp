#include "ontology/chartsamples.h"

#include "nu/database.h"
#include "ontology/ontology.h"

#include <QFileInfo>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <limits>

namespace Zem {
namespace Ontology {

namespace {

void putNumber(QByteArray& bytes, quint64 value)
{
    while (value >= 0x80) {
        bytes.append(char((value & 0x7f) | 0x80));
        value >>= 7;
    }
    bytes.append(char(value));
}

// Reads one number at at; false past the end, or for more than 63 bits.
bool getNumber(const QByteArray& bytes, int& at, quint64& value)
{
    value = 0;
    for (int shift = 0; shift < 63; shift += 7) {
        if (at >= bytes.size())
            return false;
        const quint64 byte = quint8(bytes.at(at++));
        value |= (byte & 0x7f) << shift;
        if ((byte & 0x80) == 0)
            return value <= quint64(std::numeric_limits<qint64>::max());
    }
    return false;
}

// The extensions a sample's file is known by, longest first where one ends another.
const QStringList& knownExtensions()
{
    static const QStringList extensions{
        QStringLiteral(".gz"),     QStringLiteral(".bz2"),      QStringLiteral(".xz"),
        QStringLiteral(".zst"),    QStringLiteral(".piechart"), QStringLiteral(".ontology"),
        QStringLiteral(".kreport"), QStringLiteral(".kreport2"), QStringLiteral(".report"),
        QStringLiteral(".bracken"), QStringLiteral(".kraken"),   QStringLiteral(".kraken2"),
        QStringLiteral(".krona"),  QStringLiteral(".metaphlan"), QStringLiteral(".profile"),
        QStringLiteral(".txt"),    QStringLiteral(".tsv"),      QStringLiteral(".tab"),
        QStringLiteral(".csv"),    QStringLiteral(".out"),      QStringLiteral(".output"),
    };
    return extensions;
}

} // namespace

const char* ChartSamples::InvalidFormatException::what() const noexcept
{
    return "the chart's samples table is damaged";
}

QByteArray ChartSamples::encode(const std::vector<Entry>& entries)
{
    QByteArray bytes;
    bytes.reserve(int(entries.size()) * 4);
    int previous = -1;
    for (const Entry& entry : entries) {
        putNumber(bytes, quint64(entry.row - previous));
        putNumber(bytes, quint64(entry.count));
        putNumber(bytes, quint64(entry.total - entry.count));
        previous = entry.row;
    }
    return bytes;
}

std::vector<ChartSamples::Entry> ChartSamples::decode(const QByteArray& counts, int rows)
{
    std::vector<Entry> entries;
    int at = 0;
    qint64 row = -1;
    while (at < counts.size()) {
        quint64 step = 0;
        quint64 count = 0;
        quint64 rest = 0;
        if (!getNumber(counts, at, step) || !getNumber(counts, at, count) || !getNumber(counts, at, rest))
            throw InvalidFormatException();
        // Rows ascend and stay inside the file; a total never passes the range of 64 bits.
        if (step == 0 || step > quint64(rows) || row + qint64(step) >= rows
            || rest > quint64(std::numeric_limits<qint64>::max()) - count)
            throw InvalidFormatException();
        row += qint64(step);
        entries.push_back({int(row), qint64(count), qint64(count + rest)});
    }
    return entries;
}

std::vector<ChartSamples::Stored> ChartSamples::read(const Ontology& ontology)
{
    std::vector<Stored> samples;
    nu::database::Connection connection(QStringLiteral("zem-ontology-samples"), ontology.getFileName(), true);
    if (!connection.open())
        throw Ontology::OpenDatabaseException();
    {
        QSqlDatabase database = connection.getDatabase();
        if (!database.tables().contains(QStringLiteral("samples"), Qt::CaseSensitive))
            return samples;
        QSqlQuery query(database);
        query.setForwardOnly(true);
        if (!query.exec(QStringLiteral("SELECT sample, name, counts FROM samples ORDER BY sample")))
            throw InvalidFormatException();
        QSet<QString> names;
        while (query.next()) {
            // Numbered from 0 without gaps, named, each name once, counts a blob (or empty).
            const QVariant counts = query.value(2);
            if (query.value(0).toLongLong() != qint64(samples.size()))
                throw InvalidFormatException();
            if (query.value(1).type() != QVariant::String || (!counts.isNull() && counts.type() != QVariant::ByteArray))
                throw InvalidFormatException();
            Stored sample{query.value(1).toString(), counts.toByteArray()};
            if (sample.name.isEmpty() || names.contains(sample.name))
                throw InvalidFormatException();
            names.insert(sample.name);
            samples.push_back(std::move(sample));
        }
        if (query.lastError().isValid())
            throw InvalidFormatException();
    }
    // A table of one sample, or none, is no chart of several.
    if (samples.size() < 2)
        throw InvalidFormatException();
    return samples;
}

bool ChartSamples::write(QSqlDatabase& database, const std::vector<Stored>& samples)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("CREATE TABLE samples( sample INTEGER PRIMARY KEY, name TEXT, counts BLOB)")))
        return false;
    if (!query.prepare(QStringLiteral("INSERT INTO samples (sample, name, counts) VALUES ( :sample, :name, :counts)")))
        return false;
    for (size_t i = 0; i < samples.size(); ++i) {
        query.bindValue(QStringLiteral(":sample"), qint64(i));
        query.bindValue(QStringLiteral(":name"), samples[i].name);
        // An empty sample is an empty blob, never NULL.
        query.bindValue(QStringLiteral(":counts"), samples[i].counts.isNull() ? QByteArray("") : samples[i].counts);
        if (!query.exec())
            return false;
    }
    return true;
}

QString ChartSamples::nameOfFile(const QString& fileName)
{
    QString name = QFileInfo(fileName).fileName();
    for (bool found = true; found;) {
        found = false;
        for (const QString& extension : knownExtensions()) {
            if (name.size() > extension.size() && name.endsWith(extension, Qt::CaseInsensitive)) {
                name.chop(extension.size());
                found = true;
                break;
            }
        }
    }
    return name.isEmpty() ? QStringLiteral("sample") : name;
}

QStringList ChartSamples::makeUnique(const QStringList& names)
{
    QStringList unique;
    QSet<QString> taken(names.begin(), names.end());
    QSet<QString> used;
    for (QString name : names) {
        if (name.isEmpty())
            name = QStringLiteral("sample");
        if (used.contains(name)) {
            // The first free number: a name given as "S1 (2)" keeps it, and a later "S1" passes over it.
            int n = 2;
            QString candidate;
            do
                candidate = QStringLiteral("%1 (%2)").arg(name).arg(n++);
            while (used.contains(candidate) || taken.contains(candidate));
            name = candidate;
        }
        used.insert(name);
        unique << name;
    }
    return unique;
}

} // namespace Ontology
} // namespace Zem
