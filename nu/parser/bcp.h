#pragma once

#include <QString>
#include <QStringRef>

#include <exception>
#include <utility>
#include <vector>

class QTextStream;

namespace nu {
namespace parser {

// Reads delimited text row by row through a small rolling buffer, so files of any size are read
// without loading them whole. A row ends at the row terminator; its fields are separated by the
// field separator (empty fields kept); the final terminator is dropped from the very end of the
// input, so a last row written without its closing line feed still reads in full.
class BCP
{
public:
    // A row grew beyond the longest row accepted (see setMaxRowLength) without ending.
    class RowTooLongException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };

    static constexpr int defaultReadSize = 30;
    static constexpr int defaultMaxRowLength = 16 * 1024 * 1024;

    explicit BCP(QTextStream& stream);

    void setRowTerminator(const QString& terminator);
    void setFieldSeparator(const QString& separator);
    void setFinalTerminator(const QString& terminator);
    // Characters read from the stream at a time; a negative size restores the default.
    void setBufferSize(int size);
    // Rows longer than this (in characters) make next() throw RowTooLongException.
    void setMaxRowLength(int length);

    // Reads the next row; false at the end of the input.
    bool next();
    // The field at index of the current row, or an empty string when the row has fewer fields.
    QString get(int index) const;
    // The same without copying; valid until the next call of next().
    QStringRef getRef(int index) const;
    int getFieldCount() const;
    // The raw text of the current row, without its terminator.
    QString getLine() const;
    QStringRef getLineRef() const;

private:
    // A text to search for, with the position of a character in it that is rare in the data
    // (the bar of "\t|\t"), which is looked for first.
    struct Needle
    {
        QString text;
        int anchor = 0;
        void set(const QString& value);
        int findIn(const QString& haystack, int from, int to) const;
    };

    bool isAtEnd() const;
    // Splits the current row up to the field at index (all of it for -1): most readers want
    // only the first fields of long rows.
    void splitRow(int index) const;

    Needle rowTerminator;
    Needle fieldSeparator;
    QString finalTerminator = QStringLiteral("\n");
    QTextStream& stream;
    // Offsets of the current row's fields in the buffer, as far as split, and where splitting
    // goes on (-1 when the row is split to its end).
    mutable std::vector<std::pair<int, int>> fields;
    mutable int splitFrom = -1;
    // Unread text starts at bufferStart; the current row lies just before it, from rowStart.
    QString buffer;
    int bufferStart = 0;
    int rowStart = 0;
    int rowLength = 0;
    int readSize = defaultReadSize;
    int maxRowLength = defaultMaxRowLength;
    bool finalRemoved = false;
    bool endReached = false;
};

} // namespace parser
} // namespace nu
