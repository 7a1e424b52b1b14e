#pragma once

#include "ontology/source.h"

namespace Zem {
namespace Ontology {

// A Krona text file: on each line a count, then the names of a path from the most general to
// the most specific, TAB separated. A line with a count only counts for the root.
class SourceKronaText : public Source
{
public:
    explicit SourceKronaText(const QString& fileName = QString());

    QString getDescription() const override;
    void read(BuilderSource& builder) override;

    QString fileName;
};

} // namespace Ontology
} // namespace Zem
