#include "ontology/sourcemgtaxatext.h"

#include "nu/frequencies.h"
#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/nodekeys.h"

#include <QStringRef>
#include <QVector>

namespace Zem {
namespace Ontology {

SourceMgtaxaText::SourceMgtaxaText(const QString& name)
    : fileName(name)
{
}

QString SourceMgtaxaText::getDescription() const
{
    return fileName;
}

void SourceMgtaxaText::read(BuilderSource& builder)
{
    nu::LineReader lines(fileName);
    if (!lines.isOpen())
        return;
    nu::Frequencies frequencies;
    if (lines.next()) {
        // The first line is the header.
        while (nextLine(lines, builder)) {
            if (lines.isTooLong()) {
                skipLine(lines, tooLongReason());
                continue;
            }
            const QString& line = lines.getLine();
            const QVector<QStringRef> fields = line.splitRef(QLatin1Char('\t'));
            // A short row gives the empty id, which no taxon has: it counts nowhere.
            if (fields.size() < 3 && !line.trimmed().isEmpty())
                skipLine(lines, QStringLiteral("it has no third column"));
            frequencies.add(fields.size() > 2 ? fields.at(2).toString() : QString());
        }
    }

    int step = 0;
    const auto& tallies = frequencies.getTallies();
    for (auto it = tallies.constBegin(); it != tallies.constEnd(); ++it) {
        builder.checkCancelled(++step);
        builder.addData(it.key(), NodeKey::count, QString::number(it.value()));
    }
}

} // namespace Ontology
} // namespace Zem
