#include "nu/linereader.h"

#include <algorithm>
#include <cstring>

namespace nu {

namespace {

constexpr int chunkSize = 64 * 1024;

} // namespace

LineReader::ReadException::ReadException(const QString& why)
    : reason(why)
    , text(why.toUtf8())
{
}

const char* LineReader::ReadException::what() const noexcept
{
    return text.constData();
}

LineReader::LineReader(const QString& fileName)
    : device(std::make_unique<InputDevice>(fileName))
{
    opened = device->open(QIODevice::ReadOnly);
}

LineReader::LineReader(QIODevice& source)
    : device(std::make_unique<InputDevice>(source))
{
    opened = device->open(QIODevice::ReadOnly);
}

LineReader::~LineReader() = default;

QString LineReader::getErrorString() const
{
    return device->errorString();
}

void LineReader::setMaxLineLength(int bytes)
{
    maxLineLength = std::max(1, bytes);
}

bool LineReader::fill()
{
    if (ended)
        return false;
    const int had = buffer.size();
    buffer.resize(had + chunkSize);
    const qint64 got = device->read(buffer.data() + had, chunkSize);
    buffer.resize(had + int(std::max<qint64>(got, 0)));
    if (got < 0) {
        const QString name = device->getFileName();
        throw ReadException(name.isEmpty() ? device->errorString()
                                           : QStringLiteral("cannot read %1: %2").arg(name, device->errorString()));
    }
    if (got == 0) {
        ended = true;
        return false;
    }
    return true;
}

bool LineReader::next()
{
    if (!opened)
        return false;
    tooLong = false;
    // A line too long to keep reads as empty.
    lineStart = 0;
    lineLength = 0;
    decoded = false;
    int searchFrom = start;
    for (;;) {
        const char* data = buffer.constData();
        const auto* end = static_cast<const char*>(std::memchr(data + searchFrom, '\n', size_t(buffer.size() - searchFrom)));
        if (end || ended) {
            const int stop = end ? int(end - data) : buffer.size();
            if (!end && start >= stop)
                return false;
            ++lineNumber;
            int length = stop - start;
            if (length > 0 && data[stop - 1] == '\r')
                --length;
            if (length > maxLineLength) {
                tooLong = true;
            } else {
                lineStart = start;
                lineLength = length;
                skipByteOrderMark();
            }
            start = end ? stop + 1 : stop;
            return true;
        }
        // A CR may still come before the LF, hence the one byte to spare.
        if (buffer.size() - start > maxLineLength + 1) {
            ++lineNumber;
            tooLong = true;
            skipRestOfLine();
            return true;
        }
        buffer.remove(0, start);
        start = 0;
        searchFrom = buffer.size();
        fill();
    }
}

void LineReader::skipRestOfLine()
{
    for (;;) {
        buffer.clear();
        start = 0;
        if (!fill())
            return;
        const char* data = buffer.constData();
        if (const auto* end = static_cast<const char*>(std::memchr(data, '\n', size_t(buffer.size())))) {
            start = int(end - data) + 1;
            return;
        }
    }
}

void LineReader::skipByteOrderMark()
{
    // A byte order mark is no part of the first line's text.
    const auto* bytes = reinterpret_cast<const uchar*>(buffer.constData()) + lineStart;
    if (lineNumber == 1 && lineLength >= 3 && bytes[0] == 0xef && bytes[1] == 0xbb && bytes[2] == 0xbf) {
        lineStart += 3;
        lineLength -= 3;
    }
}

const QString& LineReader::getLine() const
{
    if (!decoded)
        decode();
    return line;
}

void LineReader::decode() const
{
    decoded = true;
    const auto* bytes = reinterpret_cast<const uchar*>(buffer.constData()) + lineStart;
    const int length = lineLength;
    // Most input is ASCII: widened in place into the line's own storage, without a decoder.
    const bool ascii = std::all_of(bytes, bytes + length, [](uchar c) { return c < 0x80; });
    if (!ascii) {
        line = QString::fromUtf8(reinterpret_cast<const char*>(bytes), length);
        return;
    }
    line.resize(length);
    QChar* out = line.data();
    for (int i = 0; i < length; ++i)
        out[i] = QLatin1Char(char(bytes[i]));
}

} // namespace nu
