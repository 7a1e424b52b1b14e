#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace Zem {
namespace Ontology {

// The first lines of an input file, read to tell its format from its content before it is read
// for real. Lines lose their line ends; overlong lines are cut, so a file of one huge line costs
// little.
class InputSample
{
public:
    static constexpr int maximumLines = 2000;
    static constexpr int maximumLineLength = 64 * 1024;

    explicit InputSample(const QString& fileName);

    bool isReadable() const { return readable; }
    const QStringList& getLines() const { return lines; }

    // What is wrong with one line: an empty text when nothing is.
    using LineCheck = std::function<QString(const QString& line)>;
    // Checks the lines from the given one on (blank lines are passed over) and passes them when
    // at most one in ten is odd (a header, a stray "NA"): an empty text, else the first problem
    // with its line number ("line 17: 'abc' is not a taxon id").
    static QString judge(const QStringList& lines, int firstLine, const LineCheck& check);
    // A word of the input as a message quotes it: in single quotes, shortened when long.
    static QString quote(const QString& text);

private:
    QStringList lines;
    bool readable = false;
};

} // namespace Ontology
} // namespace Zem
