#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>

namespace Zem {
namespace Ontology {

// The first lines of an input file, read to tell its format from its content before it is read
// for real: gzip input is inflated, line ends are removed, and a line too long to be text is
// kept empty and marked.
class InputSample
{
public:
    static constexpr int maximumLines = 2000;
    static constexpr int maximumLineLength = 64 * 1024;

    explicit InputSample(const QString& fileName);
    // A sample of the given lines, as if read from a file.
    explicit InputSample(const QStringList& lines);

    // False when the file could not be opened or read; getError() says why.
    bool isReadable() const { return error.isEmpty(); }
    QString getError() const { return error; }
    const QStringList& getLines() const { return lines; }
    bool isTooLong(int index) const { return tooLong.contains(index); }

    // What is wrong with one line: an empty text when nothing is.
    using LineCheck = std::function<QString(const QString& line)>;
    // Checks the lines from the given index on (blank lines are passed over, overlong ones are
    // wrong) and passes them when at most one in ten is odd (a header, a stray "NA"): an empty
    // text, else the first problem with its line number ("line 17: 'abc' is not a taxon id").
    QString judge(int firstLine, const LineCheck& check) const;
    // A word of the input as a message quotes it: in single quotes, shortened when long, control
    // characters as '?'.
    static QString quote(const QString& text);
    // A line that holds no data: blank, or a "#" comment.
    static bool isBlankOrComment(const QString& line);

private:
    QStringList lines;
    QSet<int> tooLong;
    QString error;
};

} // namespace Ontology
} // namespace Zem
