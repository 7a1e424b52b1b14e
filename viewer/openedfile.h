#pragma once

#include <QString>

namespace Zem {
namespace Ontology {
class InputFormat;
}
} // namespace Zem

namespace Sorvik {
namespace Viewer {

// What a file given to the viewer is (through File > Open, the command line or a drop): a chart
// file, an input of one of the formats charts are made from, or neither. Charts are SQLite
// files, told by their first bytes; inputs are told by the format table's checks.
class OpenedFile
{
public:
    enum Kind { Chart, Input, Unknown };

    explicit OpenedFile(const QString& fileName);

    Kind getKind() const { return kind; }
    // The input's format; null unless the kind is Input.
    const Zem::Ontology::InputFormat* getFormat() const { return format; }

    // Why a new chart cannot be made from this input file, naming the file; empty when the file
    // can be read and looks like the format.
    static QString getInputProblem(const Zem::Ontology::InputFormat& format, const QString& fileName);

    // The name a chart is saved under: the one given, with ".piechart" added when it has no
    // suffix.
    static QString withChartSuffix(const QString& fileName);

private:
    Kind kind = Unknown;
    const Zem::Ontology::InputFormat* format = nullptr;
};

} // namespace Viewer
} // namespace Sorvik
