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

void BCP::Needle::set(const QString& value)
{
    text = value;
    anchor = 0;
    for (int i = 0; i < text.size(); ++i) {
        if (!text.at(i).isSpace()) {
            anchor = i;
            break;
        }
    }
}

int BCP::Needle::findIn(const QString& haystack, int from, int to) const
{
    // Rows are short: a plain loop beats a library search's set-up on every call.
    const int length = text.size();
    if (length == 0)
        return -1;
    const QChar* data = haystack.constData();
    const QChar* needle = text.constData();
    const ushort first = needle[anchor].unicode();
    for (int at = from + anchor; at - anchor + length <= to; ++at) {
        if (data[at].unicode() != first)
            continue;
        const int start = at - anchor;
        int i = 0;
        while (i < length && data[start + i] == needle[i])
            ++i;
        if (i == length)
            return start;
    }
    return -1;
}

BCP::BCP(QTextStream& textStream)
    : stream(textStream)
{
    rowTerminator.set(QStringLiteral("\n"));
    fieldSeparator.set(QStringLiteral("\t"));
}

void BCP::setRowTerminator(const QString& terminator)
{
    rowTerminator.set(terminator);
}

void BCP::setFieldSeparator(const QString& separator)
{
    fieldSeparator.set(separator);
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
    splitFrom = -1;
    if (buffer.isEmpty() && isAtEnd())
        return false;

    // Only the text appended since the last search is searched again (plus the few characters a
    // terminator split over two reads can start in), so a long row costs linear time.
    const int terminatorLength = rowTerminator.text.size();
    int end = rowTerminator.findIn(buffer, 0, buffer.size());
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
        end = rowTerminator.findIn(buffer, searchFrom, buffer.size());
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
            end = rowTerminator.findIn(buffer, std::max(0, end - terminatorLength), buffer.size());
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
    splitFrom = rowStart;
    return true;
}

void BCP::splitRow(int index) const
{
    const int separatorLength = fieldSeparator.text.size();
    const int rowEnd = rowStart + rowLength;
    while (splitFrom >= 0 && (index < 0 || int(fields.size()) <= index)) {
        const int at = separatorLength > 0 ? fieldSeparator.findIn(buffer, splitFrom, rowEnd) : -1;
        if (at < 0) {
            fields.emplace_back(splitFrom, rowEnd - splitFrom);
            splitFrom = -1;
        } else {
            fields.emplace_back(splitFrom, at - splitFrom);
            splitFrom = at + separatorLength;
        }
    }
}

int BCP::getFieldCount() const
{
    splitRow(-1);
    return static_cast<int>(fields.size());
}

QString BCP::get(int index) const
{
    return getRef(index).toString();
}

QStringRef BCP::getRef(int index) const
{
    if (index < 0)
        return QStringRef();
    splitRow(index);
    if (index >= static_cast<int>(fields.size()))
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
