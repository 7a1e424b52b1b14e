#include "ontology/sourcefrequencies.h"

#include "nu/frequenciesloader.h"
#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/nodekeys.h"

#include <climits>

namespace Zem {
namespace Ontology {

SourceFrequencies::SourceFrequencies(const QString& name, int columns)
    : fileName(name)
    , numberColumns(columns)
{
}

QString SourceFrequencies::getDescription() const
{
    return fileName;
}

void SourceFrequencies::read(BuilderSource& builder)
{
    nu::LineReader lines(fileName);
    if (!lines.isOpen())
        return;
    nu::FrequenciesLoader loader(lines, frequencies);
    loader.setNumberColumns(numberColumns);
    loader.setStepCallback([&builder](qint64 words) {
        builder.checkCancelled(static_cast<int>(words & INT_MAX));
    });
    loader.setSkipCallback([this, &lines](const QString& reason) { skipLine(lines, reason); });
    loader.load();
    skipped = loader.getSkipped();
    addLinesRead(lines.getLineNumber());

    int step = 0;
    const auto& tallies = frequencies.getTallies();
    for (auto it = tallies.constBegin(); it != tallies.constEnd(); ++it) {
        builder.checkCancelled(++step);
        builder.addData(it.key(), NodeKey::count, QString::number(it.value()));
    }
}

} // namespace Ontology
} // namespace Zem
