#pragma once

#include <QString>

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

protected:
    // Moves lines to its next line, counting it; false at the end. The builder's cancel check
    // and progress see every line.
    bool nextLine(nu::LineReader& lines, BuilderSource& builder);
    // Passes over the current line of lines as malformed, for the reason given.
    void skipLine(const nu::LineReader& lines, const QString& reason);
    // The reason a line that is too long to keep gives.
    static QString tooLongReason();
    // A piece of the input as a message shows it: quoted, and shortened when long.
    static QString quoted(QStringView text);

private:
    qint64 linesRead = 0;
    qint64 linesSkipped = 0;
    QString firstSkip;
};

} // namespace Ontology
} // namespace Zem
