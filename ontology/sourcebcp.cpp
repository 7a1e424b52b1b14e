#include "ontology/sourcebcp.h"

#include "nu/inputdevice.h"
#include "nu/linereader.h"
#include "nu/parser/bcp.h"
#include "ontology/buildersource.h"

#include <QTextStream>

#include <vector>

namespace Zem {
namespace Ontology {

namespace {

// One copy of each distinct text, found by its hash without making a string first. A column
// that turns out to hold many values stops being collected and is copied row by row.
class SharedTexts
{
public:
    QString get(QStringView text)
    {
        const uint hash = qHash(text);
        const auto found = texts.constFind(hash);
        if (found != texts.constEnd() && QStringView(found.value()) == text)
            return found.value();
        QString copy = text.toString();
        if (found == texts.constEnd() && texts.size() < limit)
            texts.insert(hash, copy);
        return copy;
    }

private:
    static constexpr int limit = 4096;
    QHash<uint, QString> texts;
};

} // namespace

const QString SourceBcp::parentKey = QStringLiteral("parent-id");

SourceBcp::SourceBcp(const QString& name)
    : fileName(name)
{
}

QString SourceBcp::getDescription() const
{
    return fileName;
}

void SourceBcp::read(BuilderSource& builder)
{
    // The shared input device, for its gzip and its read errors; rows need not end at line ends.
    nu::InputDevice file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    builder.notifySourceTotalSize(std::max<qint64>(0, file.getSourceSize()));

    nu::parser::BCP rows(stream);
    rows.setRowTerminator(rowTerminator);
    rows.setFieldSeparator(fieldSeparator);
    rows.setFinalTerminator(finalTerminator);

    // The filter that takes every row is not run at all.
    const bool everyRow = rowFilter.pattern() == QLatin1String(".*");
    rowFilter.optimize();
    struct Column
    {
        int index;
        bool parent;
        bool shared;
        QString key;
    };
    std::vector<Column> mapped;
    for (auto it = columns.constBegin(); it != columns.constEnd(); ++it)
        mapped.push_back({it.key(), it.value() == parentKey, sharedValueColumns.contains(it.key()), it.value()});
    SharedTexts shared;

    int row = 0;
    while (rows.next()) {
        builder.checkCancelled(++row);
        builder.notifySourceCurrentPos(file.getSourcePosition());
        if (filterColumn >= 0 && !rows.getRef(filterColumn).startsWith(filterPrefix))
            continue;
        if (!everyRow && !rowFilter.match(rows.getLineRef()).hasMatch())
            continue;
        const QStringView id(rows.getRef(idColumn));
        // A row cut short in a damaged dump can start with an empty id; no taxon has one.
        if (id.isEmpty())
            continue;
        Builder::Node* node = builder.getNode(id);
        for (const Column& column : mapped) {
            if (column.parent)
                builder.addChild(builder.getNode(QStringView(rows.getRef(column.index))), node);
            else if (column.shared)
                node->data.insert(column.key, shared.get(QStringView(rows.getRef(column.index))));
            else
                node->data.insert(column.key, rows.get(column.index));
        }
    }
    if (file.hasFailed())
        throw nu::LineReader::ReadException(QStringLiteral("cannot read %1: %2").arg(fileName, file.errorString()));
}

} // namespace Ontology
} // namespace Zem
