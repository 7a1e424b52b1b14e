#pragma once

#include "ontology/source.h"

#include <string_view>

namespace Zem {
namespace Ontology {

class InputSample;

// Kraken's per-read output: one line per read, "C" or "U", the read id, the taxon id (with
// --use-names "Name (taxid N)"), the read's length and its k-mer hits. Each classified read
// counts once for its taxon id, which the NCBI taxonomy places; unclassified reads count under
// the id "unclassified". Files run to many millions of lines: a line is looked at only as far as
// its taxon id.
class SourceKrakenReads : public Source
{
public:
    explicit SourceKrakenReads(const QString& fileName = QString(), bool keepUnclassified = true);

    QString getDescription() const override;
    void read(BuilderSource& builder) override;

    // Empty when the sample reads as per-read output, else where and why not.
    static QString check(const InputSample& sample);

    // What one line says: a classified read of a taxon (its id in taxid), an unclassified
    // read, or nothing readable (the reason in problem, when given).
    enum class Kind { Classified, Unclassified, Malformed };
    static Kind parse(std::string_view line, quint64& taxid, QString* problem = nullptr);

    QString fileName;
    bool keepUnclassified = true;
};

} // namespace Ontology
} // namespace Zem
