#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <exception>
#include <vector>

class QIODevice;

namespace Sorvik {
namespace Viewer {

class ChartTree;

// The numbers behind a chart, one row per taxon of its whole tree, parents before children:
// "id", "taxid", "name", "rank", "lineage" (the names from the root, joined by "; "),
// "own_count", "clade_count" (the chart's accumulated count, exactly) and "percent" (of the
// chart's total), then a clade count column per sample added ("clade_count_" and its name).
// Written as UTF-8 with a header row, tab- or comma-separated, so that R's read.delim /
// read.csv and pandas read it as it is:
// a field that holds a quote, a separator or a line break is quoted, quotes doubled.
class ChartTable
{
public:
    enum class Format { Tsv, Csv };

    class UnknownFormatException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };
    class WriteException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };

    // .tsv, .tab and .txt are tab-separated, .csv comma-separated (any case); throws
    // UnknownFormatException for any other.
    static Format formatOf(const QString& fileName);

    explicit ChartTable(const ChartTree& tree);

    // Names as stored, rank prefixes and all, instead of the chart's cleaned ones.
    void setRawNames(bool raw) { rawNames = raw; }
    // A column of one sample's clade counts, one per node of the tree in its order.
    void addSample(const QString& name, std::vector<qint64> cladeCounts);
    // A column for each sample of a chart of several (its tree, node for node this table's);
    // nothing for a chart of one.
    void addSamplesOf(const ChartTree& chart);

    QStringList getHeader() const;
    // The fields of the node's row, unquoted.
    QStringList getRow(int node) const;

    // Throws WriteException when the device takes less than it is given.
    void write(QIODevice& device, Format format) const;
    QByteArray toBytes(Format format) const;
    // Writes the file completely or leaves it as it was; throws WriteException.
    void save(const QString& fileName, Format format) const;

    // A field as the format writes it.
    static QString quoted(const QString& field, Format format);

private:
    struct Sample
    {
        QString name;
        std::vector<qint64> counts;
    };

    QStringList rowOf(int node, const QString& lineage) const;

    const ChartTree& tree;
    bool rawNames = false;
    std::vector<Sample> samples;
};

} // namespace Viewer
} // namespace Sorvik
