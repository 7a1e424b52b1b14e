#pragma once

#include "ontology/source.h"

namespace Zem {
namespace Ontology {

// An MG-Taxa prediction table: a header row, then one row per sequence whose third column is
// the predicted taxon id. Each row is one occurrence of its id; a tree source places the ids.
class SourceMgtaxaText : public Source
{
public:
    explicit SourceMgtaxaText(const QString& fileName = QString());

    QString getDescription() const override;
    void read(BuilderSource& builder) override;

    QString fileName;
};

} // namespace Ontology
} // namespace Zem
