#include "ontology/sourcemgtaxatext.h"

#include "nu/frequencies.h"
#include "nu/parser/bcp.h"
#include "ontology/buildersource.h"
#include "ontology/nodekeys.h"

#include <QFile>
#include <QTextStream>

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
    QFile file(fileName);
    QTextStream stream;
    if (!openText(file, stream))
        return;
    nu::parser::BCP rows(stream);
    rows.setRowTerminator(QStringLiteral("\n"));
    rows.setFieldSeparator(QStringLiteral("\t"));
    rows.setFinalTerminator(QStringLiteral("\n"));

    nu::Frequencies frequencies;
    int row = 0;
    if (rows.next()) {
        while (rows.next()) {
            builder.checkCancelled(++row);
            frequencies.add(rows.get(2));
        }
    }

    const auto& tallies = frequencies.getTallies();
    for (auto it = tallies.constBegin(); it != tallies.constEnd(); ++it) {
        builder.checkCancelled(++row);
        builder.addData(it.key(), NodeKey::count, QString::number(it.value()));
    }
}

} // namespace Ontology
} // namespace Zem
