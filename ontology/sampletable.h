#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace nu {
class LineReader;
}

namespace Zem {
namespace Ontology {

class BuilderSource;

// A table that holds many samples side by side (a merged MetaPhlAn table, combined reports),
// read once for all the sources that chart one of its columns: a study of 200 samples is parsed
// once, not 200 times. The first source to need it reads it, with that build's progress and
// cancel; the others find it read. What its reader passed over is kept per line, and per cell
// where only one sample's value is wrong, for each source to report as its own.
class SampleTable
{
public:
    struct Row
    {
        qint64 line = 0;
        int depth = 0;
        // The row's own fields, as its format orders them (a clade, a taxon id, a name).
        QStringList keys;
    };
    struct Skip
    {
        qint64 line;
        // The sample whose value was wrong, or -1 when the whole row was passed over.
        int column;
        QString reason;
    };
    // Reads the rows from lines; throws what the builder's cancel check throws.
    using Reader = std::function<void(SampleTable& table, nu::LineReader& lines, BuilderSource& builder)>;

    // The table of this file as read by the reader named kind, shared with every source that
    // holds it. A table nobody holds any longer is read afresh.
    static std::shared_ptr<SampleTable> share(const QString& fileName, const QString& kind);

    // Reads the file the first time it is asked; a read that was cancelled or failed is tried
    // again by the next.
    void load(BuilderSource& builder, const Reader& reader);
    // Loads the table for the reading of one column, and calls skipped for all it passes over:
    // whole rows, the column's own values, and the column itself where the table has no such
    // sample.
    using Skipped = std::function<void(qint64 line, const QString& reason)>;
    void loadColumn(BuilderSource& builder, const Reader& reader, int column, const Skipped& skipped);

    // Moves lines to its next line, with the builder's progress and cancel check.
    static bool nextLine(nu::LineReader& lines, BuilderSource& builder);
    // The file's first line that is neither blank nor a comment, where the tables of samples
    // have their header; empty when there is none, it is too long, or the file cannot be read.
    static QString readHeaderLine(const QString& fileName);

    // The number of sample columns, and of values each has per row, as the header on that line
    // names them.
    void setColumns(int count, int valuesPerColumn, qint64 headerLine);
    int getColumnCount() const { return columns; }
    // A row and room for its values, 0 until set.
    void addRow(const Row& row);
    void setValue(int column, int which, double value);
    // A value of a row, NaN where it was passed over.
    double getValue(size_t row, int column, int which = 0) const;
    const std::vector<Row>& getRows() const { return rows; }

    void skip(qint64 line, int column, const QString& reason);
    // Calls skipped for every skip of a whole row or of this column's value, in line order.
    void forEachSkip(int column, const Skipped& skipped) const;
    qint64 getLinesRead() const { return linesRead; }

    QString getFileName() const { return fileName; }
    bool isOpen() const { return opened; }

private:
    explicit SampleTable(const QString& fileName);

    QString fileName;
    bool opened = false;
    bool loaded = false;
    qint64 linesRead = 0;
    int columns = 0;
    qint64 headerLine = 0;
    int width = 1;
    std::vector<Row> rows;
    std::vector<double> values;
    std::vector<Skip> skips;
    std::mutex mutex;
};

} // namespace Ontology
} // namespace Zem
