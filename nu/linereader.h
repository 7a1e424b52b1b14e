#pragma once

#include "nu/inputdevice.h"

#include <QByteArray>
#include <QString>

#include <exception>
#include <memory>
#include <string_view>

class QIODevice;

namespace nu {

// Reads the text of a user's file or pipe line by line, as UTF-8, for every reader of user files.
// Lines end at LF or CR LF; a last line without its line end counts as well. Gzip input is
// inflated on the fly (see InputDevice). Memory stays bounded whatever the input: a line longer
// than the maximum is read past without being kept and handed out as too long, never cut into
// pieces that could pass for lines of their own.
class LineReader
{
public:
    // Reading failed part-way (a disk error, damaged or cut-short compressed data); what() names
    // the file and the reason.
    class ReadException : public std::exception
    {
    public:
        explicit ReadException(const QString& reason);
        const char* what() const noexcept override;
        QString getReason() const { return reason; }

    private:
        QString reason;
        QByteArray text;
    };

    // Bytes; well above the widest real table row, far below what memory allows.
    static constexpr int defaultMaxLineLength = 1024 * 1024;

    // Reads the named file; isOpen() says whether it could be opened.
    explicit LineReader(const QString& fileName);
    // Reads device, open for reading; it must outlive the reader.
    explicit LineReader(QIODevice& device);
    ~LineReader();
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    bool isOpen() const { return opened; }
    // Why the file could not be opened.
    QString getErrorString() const;
    // Lines longer than this many bytes (without their line end) are too long; at least 1.
    void setMaxLineLength(int bytes);

    // Moves to the next line; false at the end of the input. Throws ReadException when the input
    // cannot be read further.
    bool next();
    // The current line without its line end; empty for a line that is too long. Decoded on
    // first use, so readers that only look at a few bytes of each line never pay for it.
    const QString& getLine() const;
    // The current line's bytes (UTF-8, without its line end or a byte order mark), valid until
    // the next call to next(); empty for a line that is too long.
    std::string_view getBytes() const { return std::string_view(buffer.constData() + lineStart, size_t(lineLength)); }
    bool isTooLong() const { return tooLong; }
    // The current line's number, from 1.
    qint64 getLineNumber() const { return lineNumber; }
    // Bytes of the file read so far (compressed bytes for gzip input) and its size, -1 for a
    // pipe: for progress.
    qint64 getPosition() const { return device->getSourcePosition(); }
    qint64 getSize() const { return device->getSourceSize(); }
    bool isCompressed() const { return device->isCompressed(); }

private:
    // Appends more of the input to the buffer; false at its end.
    bool fill();
    // Makes line from the current line's bytes.
    void decode() const;
    void skipByteOrderMark();
    // Drops the rest of a too-long line; true when its end was found before the input ended.
    void skipRestOfLine();

    std::unique_ptr<InputDevice> device;
    bool opened = false;
    int maxLineLength = defaultMaxLineLength;
    // Bytes read and not yet handed out: [start, buffer.size()).
    QByteArray buffer;
    int start = 0;
    bool ended = false;
    // The current line: bytes [lineStart, lineStart + lineLength) of the buffer, and their text
    // once asked for.
    int lineStart = 0;
    int lineLength = 0;
    mutable QString line;
    mutable bool decoded = true;
    bool tooLong = false;
    qint64 lineNumber = 0;
};

} // namespace nu
