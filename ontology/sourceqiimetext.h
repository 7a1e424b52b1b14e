#pragma once

#include "ontology/source.h"

#include <QStringList>

namespace nu {
class LineReader;
}

namespace Zem {
namespace Ontology {

class InputSample;

// A QIIME taxonomy summary table: a header, then per line a taxonomy path ("k__Bacteria;
// p__Firmicutes;...") and one value per sample. The chosen value column, times the multiplier,
// becomes the path's count.
class SourceQiimeText : public Source
{
public:
    SourceQiimeText(const QString& fileName = QString(), int column = 0, double multiplier = 1000.0);

    QString getDescription() const override;
    void read(BuilderSource& builder) override;

    // Empty when the sample reads as a summary table (a header, then a path and numbers on
    // every line), else where and why not.
    static QString check(const InputSample& sample);
    // The names of the value columns in the file's header (the header without its first, the
    // taxonomy column); empty when the file cannot be read or has fewer than two columns.
    static QStringList readColumnNames(const QString& fileName);
    // A path part as shown: every "_" a blank, surrounding white space removed.
    static QString cleanName(const QString& part);

    QString fileName;
    int column = 0;
    double multiplier = 1000.0;

private:
    // Moves rows past the comment lines that newer tools write above the header ("#" and no
    // TAB) and past the header; returns the header's fields, or nothing at the end of the file.
    static QStringList readHeader(nu::LineReader& lines);
};

} // namespace Ontology
} // namespace Zem
