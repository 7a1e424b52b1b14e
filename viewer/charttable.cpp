#include "viewer/charttable.h"

#include "viewer/charttree.h"

#include <QBuffer>
#include <QFileInfo>
#include <QSaveFile>

namespace Sorvik {
namespace Viewer {

namespace {

const QString lineageSeparator = QStringLiteral("; ");

QString percentOf(qint64 count, qint64 whole)
{
    if (whole <= 0)
        return QStringLiteral("0");
    QString text = QString::number(100.0 * static_cast<double>(count) / static_cast<double>(whole), 'f', 6);
    // 12.500000 reads as 12.5; 0.000000 stays 0.
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text;
}

} // namespace

const char* ChartTable::UnknownFormatException::what() const noexcept
{
    return "the table file name must end in .tsv, .txt, .tab or .csv";
}

const char* ChartTable::WriteException::what() const noexcept
{
    return "the table file could not be written";
}

ChartTable::Format ChartTable::formatOf(const QString& fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QLatin1String("tsv") || suffix == QLatin1String("txt") || suffix == QLatin1String("tab"))
        return Format::Tsv;
    if (suffix == QLatin1String("csv"))
        return Format::Csv;
    throw UnknownFormatException();
}

ChartTable::ChartTable(const ChartTree& t)
    : tree(t)
{
}

void ChartTable::addSample(const QString& name, std::vector<qint64> cladeCounts)
{
    cladeCounts.resize(static_cast<size_t>(tree.size()), 0);
    samples.push_back({name, std::move(cladeCounts)});
}

void ChartTable::addSamplesOf(const ChartTree& chart)
{
    if (chart.getSampleCount() < 2)
        return;
    const auto list = chart.getSamples();
    for (size_t i = 0; i < list.size(); ++i) {
        std::vector<qint64> counts;
        std::vector<qint64> totals;
        chart.getCounts(static_cast<int>(i), counts, totals);
        addSample(list[i].name, std::move(totals));
    }
}

QStringList ChartTable::getHeader() const
{
    QStringList header{QStringLiteral("id"),        QStringLiteral("taxid"),       QStringLiteral("name"),
                       QStringLiteral("rank"),      QStringLiteral("lineage"),     QStringLiteral("own_count"),
                       QStringLiteral("clade_count"), QStringLiteral("percent")};
    for (const Sample& sample : samples)
        header.append(QStringLiteral("clade_count_") + sample.name);
    return header;
}

QStringList ChartTable::getRow(int node) const
{
    return rowOf(node, tree.getPath(node, rawNames).join(lineageSeparator));
}

QStringList ChartTable::rowOf(int node, const QString& lineage) const
{
    const ChartTree::Node& n = tree.at(node);
    const qint64 whole = tree.at(0).total;
    QStringList row{n.id,
                    n.taxid,
                    tree.getName(node, rawNames),
                    n.rank,
                    lineage,
                    QString::number(n.count),
                    QString::number(n.total),
                    percentOf(n.total, whole)};
    for (const Sample& sample : samples)
        row.append(QString::number(sample.counts[static_cast<size_t>(node)]));
    return row;
}

QString ChartTable::quoted(const QString& field, Format format)
{
    const QChar separator = format == Format::Csv ? QLatin1Char(',') : QLatin1Char('\t');
    if (!field.contains(QLatin1Char('"')) && !field.contains(separator) && !field.contains(QLatin1Char('\n'))
        && !field.contains(QLatin1Char('\r')))
        return field;
    QString inner = field;
    inner.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + inner + QLatin1Char('"');
}

void ChartTable::write(QIODevice& device, Format format) const
{
    const QString separator = format == Format::Csv ? QStringLiteral(",") : QStringLiteral("\t");
    QByteArray block;
    const auto flush = [&](bool always) {
        if (!always && block.size() < (1 << 20))
            return;
        if (device.write(block) != block.size())
            throw WriteException();
        block.clear();
    };
    const auto line = [&](const QStringList& fields) {
        QString text;
        for (int i = 0; i < fields.size(); ++i) {
            if (i > 0)
                text += separator;
            text += quoted(fields[i], format);
        }
        block += text.toUtf8();
        block += '\n';
        flush(false);
    };
    line(getHeader());
    // Parents come before their children: each lineage is its parent's and one name more, kept
    // on a stack as deep as the tree.
    std::vector<std::pair<int, QString>> open;
    for (int node = 0; node < tree.size(); ++node) {
        const int parent = tree.at(node).parent;
        while (!open.empty() && open.back().first != parent)
            open.pop_back();
        const QString name = tree.getName(node, rawNames);
        QString lineage;
        if (parent == ChartTree::none)
            lineage = name;
        else if (!open.empty())
            lineage = open.back().second + lineageSeparator + name;
        else
            lineage = tree.getPath(node, rawNames).join(lineageSeparator);
        line(rowOf(node, lineage));
        open.emplace_back(node, std::move(lineage));
    }
    flush(true);
}

QByteArray ChartTable::toBytes(Format format) const
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    write(buffer, format);
    return bytes;
}

void ChartTable::save(const QString& fileName, Format format) const
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        throw WriteException();
    try {
        write(file, format);
    } catch (...) {
        file.cancelWriting();
        throw;
    }
    if (!file.commit())
        throw WriteException();
}

} // namespace Viewer
} // namespace Sorvik
