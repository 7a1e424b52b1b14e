#pragma once

#include "ontology/source.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

namespace Zem {
namespace Ontology {

// A delimited dump file (the NCBI taxonomy's nodes.dmp and names.dmp): each row that passes the
// filters gives a node; the column map says which columns link it under a parent
// (key "parent-id") and which become values under their key.
class SourceBcp : public Source
{
public:
    static const QString parentKey;

    explicit SourceBcp(const QString& fileName = QString());

    QString getDescription() const override;
    void read(BuilderSource& builder) override;

    QString fieldSeparator = QStringLiteral("\t");
    QString rowTerminator = QStringLiteral("\n");
    QString finalTerminator = QStringLiteral("\n");
    QString fileName;
    int idColumn = 0;
    QHash<int, QString> columns;
    // Columns whose few distinct values repeat row after row (the ranks): each distinct text is
    // kept once and shared by every node that has it, which saves millions of small strings.
    QSet<int> sharedValueColumns;
    QRegularExpression rowFilter{QStringLiteral(".*")};
    // A cheaper filter for the common case of one field's start: rows whose field at filterColumn
    // does not begin with filterPrefix are passed over. The names' class is picked so; a regular
    // expression cost a fifth of the whole import there.
    int filterColumn = -1;
    QString filterPrefix;
};

} // namespace Ontology
} // namespace Zem
