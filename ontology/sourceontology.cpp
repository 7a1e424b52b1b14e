#include "ontology/sourceontology.h"

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

void SourceOntology::Reader::closeNode(const QString&, const QVariantMap& data)
{
    Builder::Node* node = stack.pop();
    for (auto it = data.constBegin(); it != data.constEnd(); ++it) {
        auto key = keys.constFind(it.key());
        if (key == keys.constEnd())
            key = keys.insert(it.key(), it.key());
        QString value = it.value().toString();
        if (key.value() == NodeKey::rank) {
            auto shared = ranks.constFind(value);
            value = shared != ranks.constEnd() ? shared.value() : ranks.insert(value, value).value();
        }
        node->data.insert(key.value(), value);
    }
    builder.notifySourceCurrentPos(++closed);
    builder.checkCancelled(closed);
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
