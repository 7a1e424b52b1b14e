#include "ontology/sampletable.h"

#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/inputsample.h"

#include <QFileInfo>
#include <QMap>

#include <climits>
#include <cmath>
#include <limits>

namespace Zem {
namespace Ontology {

SampleTable::SampleTable(const QString& name)
    : fileName(name)
{
}

std::shared_ptr<SampleTable> SampleTable::share(const QString& fileName, const QString& kind)
{
    static std::mutex cacheMutex;
    static QMap<QString, std::weak_ptr<SampleTable>> cache;
    const QString key = kind + QLatin1Char('\n') + QFileInfo(fileName).absoluteFilePath();
    std::lock_guard<std::mutex> lock(cacheMutex);
    if (std::shared_ptr<SampleTable> table = cache.value(key).lock())
        return table;
    for (auto it = cache.begin(); it != cache.end();)
        it = it.value().expired() ? cache.erase(it) : std::next(it);
    std::shared_ptr<SampleTable> table(new SampleTable(fileName));
    cache.insert(key, table);
    return table;
}

void SampleTable::load(BuilderSource& builder, const Reader& reader)
{
    std::lock_guard<std::mutex> lock(mutex);
    if (loaded)
        return;
    opened = false;
    linesRead = 0;
    columns = 0;
    headerLine = 0;
    rows.clear();
    values.clear();
    skips.clear();
    nu::LineReader lines(fileName);
    if (lines.isOpen()) {
        opened = true;
        builder.notifySourceTotalSize(std::max<qint64>(0, lines.getSize()));
        reader(*this, lines, builder);
        linesRead = lines.getLineNumber();
    }
    loaded = true;
}

QString SampleTable::readHeaderLine(const QString& fileName)
{
    nu::LineReader lines(fileName);
    if (!lines.isOpen())
        return QString();
    try {
        while (lines.next()) {
            if (lines.isTooLong())
                return QString();
            if (!InputSample::isBlankOrComment(lines.getLine()))
                return lines.getLine();
        }
    } catch (const nu::LineReader::ReadException&) {
    }
    return QString();
}

bool SampleTable::nextLine(nu::LineReader& lines, BuilderSource& builder)
{
    if (!lines.next())
        return false;
    builder.checkCancelled(static_cast<int>(lines.getLineNumber() & INT_MAX));
    builder.notifySourceCurrentPos(lines.getPosition());
    return true;
}

void SampleTable::setColumns(int count, int valuesPerColumn, qint64 line)
{
    headerLine = line;
    columns = std::max(0, count);
    width = std::max(1, valuesPerColumn);
}

void SampleTable::addRow(const Row& row)
{
    rows.push_back(row);
    values.resize(values.size() + size_t(columns * width), 0.0);
}

void SampleTable::setValue(int column, int which, double value)
{
    if (rows.empty() || column < 0 || column >= columns || which < 0 || which >= width)
        return;
    values[(rows.size() - 1) * size_t(columns * width) + size_t(column * width + which)] = value;
}

double SampleTable::getValue(size_t row, int column, int which) const
{
    if (row >= rows.size() || column < 0 || column >= columns || which < 0 || which >= width)
        return std::numeric_limits<double>::quiet_NaN();
    return values[row * size_t(columns * width) + size_t(column * width + which)];
}

void SampleTable::skip(qint64 line, int column, const QString& reason)
{
    skips.push_back(Skip{line, column, reason});
}

void SampleTable::loadColumn(BuilderSource& builder, const Reader& reader, int column, const Skipped& skipped)
{
    load(builder, reader);
    forEachSkip(column, skipped);
    if (columns > 0 && (column < 0 || column >= columns))
        skipped(headerLine, QStringLiteral("there is no sample %1: the table has %2").arg(column + 1).arg(columns));
}

void SampleTable::forEachSkip(int column, const Skipped& skipped) const
{
    for (const Skip& skip : skips) {
        if (skip.column < 0 || skip.column == column)
            skipped(skip.line, skip.reason);
    }
}

} // namespace Ontology
} // namespace Zem
