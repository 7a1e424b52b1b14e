#pragma once

#include <QString>
#include <QStringList>
#include <QStringRef>

namespace nu {
class LineReader;
}

namespace Zem {
namespace Ontology {

class BuilderSource;

// One input that adds nodes, links and values to a builder source. Path sources (Krona, QIIME,
// ontology files, the NCBI dump) make the tree; count sources (taxon ids, MG-Taxa) only attach
// counts to ids that a tree source places.
class Source
{
public:
    virtual ~Source();

    virtual QString getDescription() const = 0;
    virtual void read(BuilderSource& builder) = 0;

    // Lines of a text input read, and those passed over as malformed (blank and comment lines
    // are neither), with the first of these: "line 17: 'abc' is not a count".
    qint64 getLinesRead() const { return linesRead; }
    qint64 getLinesSkipped() const { return linesSkipped; }
    QString getFirstSkip() const { return firstSkip; }

    static constexpr qint64 largestCount = 1000000000000LL;
    // A count as an input writes it: a whole number from 0 to largestCount, blanks around it
    // allowed. The reason it is none ("'abc' is not a count"), else an empty text.
    static QString readCount(const QStringRef& text, qint64& count);
    // a + b, held at the largest count instead of overflowing on hostile input.
    static qint64 addCounts(qint64 a, qint64 b);
    // What the input says that does not add up, though nothing was passed over ("line 100:
    // ...").
    const QStringList& getWarnings() const { return warnings; }

protected:
    // Moves lines to its next line, counting it; false at the end. The builder's cancel check
    // and progress see every line.
    bool nextLine(nu::LineReader& lines, BuilderSource& builder);
    // Passes over the current line of lines as malformed, for the reason given.
    void skipLine(const nu::LineReader& lines, const QString& reason);
    // The same for a line found wrong once others were read.
    void skipLine(qint64 lineNumber, const QString& reason);
    // For sources that move their reader on themselves.
    void addLinesRead(qint64 lines);
    void warn(const QString& warning);
    // The reason a line that is too long to keep gives.
    static QString tooLongReason();
    // A piece of the input as a message shows it: quoted, and shortened when long.
    static QString quoted(QStringView text);

private:
    qint64 linesRead = 0;
    qint64 linesSkipped = 0;
    QString firstSkip;
    QStringList warnings;
};

} // namespace Ontology
} // namespace Zem
