#pragma once

#include "nu/frequencies.h"
#include "ontology/source.h"

namespace Zem {
namespace Ontology {

// A list of taxon ids: one id per word (each one occurrence), or with two columns an id and a
// count per line. It only attaches counts; a tree source loaded alongside places the ids.
class SourceFrequencies : public Source
{
public:
    explicit SourceFrequencies(const QString& fileName = QString(), int numberColumns = 1);

    QString getDescription() const override;
    void read(BuilderSource& builder) override;

    // Entries of the file that could not be read as an id (and a count).
    qint64 getSkipped() const { return skipped; }

    QString fileName;
    int numberColumns = 1;

private:
    nu::Frequencies frequencies;
    qint64 skipped = 0;
};

} // namespace Ontology
} // namespace Zem
