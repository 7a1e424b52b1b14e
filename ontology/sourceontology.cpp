#include "ontology/sourceontology.h"

#include "nu/compactjson.h"
#include "ontology/buildersource.h"
#include "ontology/nodekeys.h"
#include "ontology/ontology.h"

namespace Zem {
namespace Ontology {

SourceOntology::Reader::Reader(const Ontology& ontology, BuilderSource& target)
    : Zem::Ontology::Reader(ontology)
    , builder(target)
{
}

void SourceOntology::Reader::openNode(const QString& id, const QVariantMap&, const Position&)
{
    Builder::Node* node = builder.getNode(id);
    builder.addChild(stack.isEmpty() ? node : stack.top(), node);
    stack.push(node);
}

void SourceOntology::Reader::closeNode(const QString& id, const QVariantMap& data)
{
    closeNode(id, data, QString());
}

void SourceOntology::Reader::closeNode(const QString&, const QVariantMap& data, const QString& text)
{
    Builder::Node* node = stack.top();
    // The values are taken from the file's text directly; what the quick way cannot read (an
    // escape, a number) goes the general way.
    if (!text.isEmpty() && nu::splitCompactJson(text, pairs)) {
        for (const auto& pair : pairs)
            addValue(node, pair.first, pair.second);
    } else {
        const QVariantMap values = text.isEmpty() ? data : nu::fromCompactJson(text);
        for (auto it = values.constBegin(); it != values.constEnd(); ++it)
            addValue(node, it.key(), it.value().toString());
    }
    stack.pop();
    builder.notifySourceCurrentPos(++closed);
    builder.checkCancelled(closed);
}

void SourceOntology::Reader::addValue(Builder::Node* node, QStringView key, QStringView value)
{
    const QString shared = share(key, keys);
    node->data.insert(shared, shared == NodeKey::rank ? share(value, ranks) : value.toString());
}

QString SourceOntology::Reader::share(QStringView text, std::vector<QString>& texts)
{
    for (const QString& known : texts) {
        if (QStringView(known) == text)
            return known;
    }
    // Only so many are kept, should a file hold keys or ranks of its own by the thousand.
    QString copy = text.toString();
    if (texts.size() < 256)
        texts.push_back(copy);
    return copy;
}

SourceOntology::SourceOntology(const QString& name)
    : fileName(name)
{
}

QString SourceOntology::getDescription() const
{
    return fileName;
}

void SourceOntology::read(BuilderSource& builder)
{
    const Ontology ontology(fileName);
    builder.notifySourceTotalSize(ontology.getNodeNumber());
    Reader reader(ontology, builder);
    reader.read();
}

} // namespace Ontology
} // namespace Zem
