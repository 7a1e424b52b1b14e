#pragma once

#include "ontology/source.h"

namespace Zem {
namespace Ontology {

class InputSample;

// A Krona text file: on each line a count, then the names of a path from the most general to
// the most specific, TAB separated. A line with a count only counts for the root.
class SourceKronaText : public Source
{
public:
    explicit SourceKronaText(const QString& fileName = QString());

    QString getDescription() const override;
    void read(BuilderSource& builder) override;

    // Empty when the sample reads as Krona text (a count first on every line), else where and
    // why not.
    static QString check(const InputSample& sample);

    QString fileName;
};

} // namespace Ontology
} // namespace Zem
