#include "nu/parser/bcp.h"

#include <QIODevice>
#include <QTextStream>

#include <algorithm>

namespace nu {
namespace parser {

const char* BCP::RowTooLongException::what() const noexcept
{
    return "a line is too long (the file is probably not a text file of the expected kind)";
}

BCP::BCP(QTextStream& textStream)
    : stream(textStream)
{
}

void BCP::setRowTerminator(const QString& terminator)
{
    rowTerminator = terminator;
}

void BCP::setFieldSeparator(const QString& separator)
{
    fieldSeparator = separator;
}

void BCP::setFinalTerminator(const QString& terminator)
{
    finalTerminator = terminator;
}

void BCP::setBufferSize(int size)
{
    readSize = size < 0 ? defaultReadSize : size;
}

void BCP::setMaxRowLength(int length)
{
    maxRowLength = std::max(1, length);
}

bool BCP::isAtEnd() const
{
    // A pipe has no end until a read comes back empty; a file or a string knows it at once.
    if (endReached)
        return true;
    if (stream.device() && stream.device()->isSequential())
        return false;
    return stream.atEnd();
}

bool BCP::next()
{
    // The rows already handed out are dropped only now, so that the current row's references
    // into the buffer stay valid until this call.
    if (bufferStart > 0) {
        buffer.remove(0, bufferStart);
        bufferStart = 0;
    }
    rowStart = 0;
    rowLength = 0;
    fields.clear();
    if (buffer.isEmpty() && isAtEnd())
        return false;

    // Only the text appended since the last search is searched again (plus the few characters a
    // terminator split over two reads can start in), so a long row costs linear time.
    const int terminatorLength = rowTerminator.size();
    int end = terminatorLength > 0 ? buffer.indexOf(rowTerminator) : -1;
    const int chunk = readSize > 0 ? readSize : defaultReadSize;
    while (end < 0 && !isAtEnd()) {
        const QString text = stream.read(chunk);
        if (text.isEmpty()) {
            endReached = true;
            break;
        }
        const int searchFrom = std::max(0, buffer.size() - terminatorLength + 1);
        buffer.append(text);
        if (buffer.size() > maxRowLength + terminatorLength)
            throw RowTooLongException();
        if (terminatorLength > 0)
            end = buffer.indexOf(rowTerminator, searchFrom);
    }
    if (buffer.isEmpty())
        return false;

    if (!finalRemoved && !finalTerminator.isEmpty() && isAtEnd() && buffer.endsWith(finalTerminator)) {
        buffer.chop(finalTerminator.size());
        finalRemoved = true;
        // The terminator closed the row before it: nothing follows, whatever the read size.
        if (buffer.isEmpty())
            return false;
        if (end > buffer.size() - terminatorLength)
            end = terminatorLength > 0 ? buffer.indexOf(rowTerminator, std::max(0, end - terminatorLength)) : -1;
    }

    if (end < 0) {
        rowLength = buffer.size();
        bufferStart = buffer.size();
    } else {
        rowLength = end;
        bufferStart = end + terminatorLength;
    }
    if (rowLength > maxRowLength)
        throw RowTooLongException();
    splitRow();
    return true;
}

void BCP::splitRow()
{
    const int separatorLength = fieldSeparator.size();
    if (separatorLength == 0) {
        fields.emplace_back(rowStart, rowLength);
        return;
    }
    const int rowEnd = rowStart + rowLength;
    int from = rowStart;
    for (;;) {
        int at = buffer.indexOf(fieldSeparator, from);
        if (at < 0 || at + separatorLength > rowEnd) {
            fields.emplace_back(from, rowEnd - from);
            return;
        }
        fields.emplace_back(from, at - from);
        from = at + separatorLength;
    }
}

QString BCP::get(int index) const
{
    return getRef(index).toString();
}

QStringRef BCP::getRef(int index) const
{
    if (index < 0 || index >= static_cast<int>(fields.size()))
        return QStringRef();
    const auto& field = fields[static_cast<size_t>(index)];
    return QStringRef(&buffer, field.first, field.second);
}

QString BCP::getLine() const
{
    return getLineRef().toString();
}

QStringRef BCP::getLineRef() const
{
    return QStringRef(&buffer, rowStart, rowLength);
}

} // namespace parser
} // namespace nu
