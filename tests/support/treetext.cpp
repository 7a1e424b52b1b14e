#include "tests/support/treetext.h"

#include "ontology/builder.h"
#include "ontology/ontology.h"
#include "ontology/reader.h"

#include <QRegularExpression>

namespace Sorvik {
namespace Test {

namespace {

QString label(const QString& id, const QVariantMap& data)
{
    QString text = data.value(QStringLiteral("name")).toString();
    if (!data.contains(QStringLiteral("name")))
        text = data.value(QStringLiteral("scientific name"), id).toString();
    static const QRegularExpression special(QStringLiteral("[\\s():\"]"));
    if (text.isEmpty() || text.contains(special))
        text = QLatin1Char('"') + text + QLatin1Char('"');
    if (data.contains(QStringLiteral("count")))
        text += QLatin1Char(':') + data.value(QStringLiteral("count")).toString();
    return text;
}

void describe(const Zem::Ontology::Builder::Node* node, QString& out, int depth)
{
    out += label(node->id, node->data.toVariantMap());
    if (node->children.empty() || depth > 10000)
        return;
    out += QLatin1Char('(');
    bool first = true;
    for (const auto* child : node->children) {
        if (!first)
            out += QLatin1Char(' ');
        first = false;
        describe(child, out, depth + 1);
    }
    out += QLatin1Char(')');
}

class Describer : public Zem::Ontology::Reader
{
public:
    using Reader::Reader;

    void openNode(const QString& id, const QVariantMap& data, const Position&) override
    {
        if (!open.isEmpty()) {
            if (open.last())
                text += QLatin1Char('(');
            else
                text += QLatin1Char(' ');
            open.last() = false;
        }
        text += label(id, data);
        open.push_back(true);
    }
    void closeNode(const QString&, const QVariantMap&) override
    {
        if (!open.takeLast())
            text += QLatin1Char(')');
    }

    QString text;
    // Per open node: whether it has had no child yet.
    QVector<bool> open;
};

} // namespace

QString describeTree(const Zem::Ontology::Builder& builder)
{
    QString out;
    if (builder.getRoot())
        describe(builder.getRoot(), out, 0);
    return out;
}

QString describeOntology(const QString& fileName)
{
    const Zem::Ontology::Ontology ontology(fileName);
    if (ontology.getNodeNumber() < 1)
        return QString();
    Describer describer(ontology);
    describer.read();
    return describer.text;
}

} // namespace Test
} // namespace Sorvik
