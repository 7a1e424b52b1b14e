#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <exception>
#include <vector>

class QSqlDatabase;

namespace Zem {
namespace Ontology {

class Ontology;

// The samples of a chart: several inputs (files, a table's columns) counted over one tree. A
// chart of one sample is a plain ontology file. A chart of several also holds the table made by
// "CREATE TABLE samples( sample INTEGER PRIMARY KEY, name TEXT, counts BLOB)", one row per sample
// in their order, numbered from 0. The nodes' own "count" and "accumCount" are the first
// sample's, so that every reader that knows nothing of samples sees a chart of the first.
//
// A sample's counts are sparse, as a study's samples share few taxa: for each row of "nodes"
// whose subtree holds something in the sample, in row order, three unsigned LEB128 numbers: the
// distance from the previous such row (for the first, its row + 1), the node's own count, and
// its total less its own count. Nodes without an entry have 0 in that sample.
class ChartSamples
{
public:
    class InvalidFormatException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };

    // A node's counts in one sample: the row of "nodes" it was read from.
    struct Entry
    {
        int row = 0;
        qint64 count = 0;
        qint64 total = 0;
    };
    // A sample as the file keeps it.
    struct Stored
    {
        QString name;
        QByteArray counts;
    };

    // Entries in ascending row order, each total at least its count.
    static QByteArray encode(const std::vector<Entry>& entries);
    // Throws InvalidFormatException for anything encode() does not give for a file of this many
    // rows.
    static std::vector<Entry> decode(const QByteArray& counts, int rows);

    // The samples of a chart file in their order, names checked (none empty, none twice) and
    // counts still encoded; none for a chart of one sample. Throws InvalidFormatException, or
    // Ontology::OpenDatabaseException when the file cannot be opened.
    static std::vector<Stored> read(const Ontology& ontology);
    // Creates the table and writes the samples into it; false when the database refuses.
    static bool write(QSqlDatabase& database, const std::vector<Stored>& samples);

    // The name a sample takes from its file: without folders and the extensions that input and
    // chart files are known by ("S1.kreport.txt.gz" is S1).
    static QString nameOfFile(const QString& fileName);
    // The names as given, each that repeats an earlier one made unique by a number: "S1", "S1 (2)".
    static QStringList makeUnique(const QStringList& names);
};

} // namespace Ontology
} // namespace Zem
