#include "ontology/sourceontology.h"

#include "ontology/buildersource.h"
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
    if (stack.isEmpty())
        builder.addChild(id, id);
    else
        builder.addChild(stack.top(), id);
    stack.push(id);
}

void SourceOntology::Reader::closeNode(const QString& id, const QVariantMap& data)
{
    for (auto it = data.constBegin(); it != data.constEnd(); ++it) {
        auto key = keys.constFind(it.key());
        if (key == keys.constEnd())
            key = keys.insert(it.key(), it.key());
        builder.addData(id, key.value(), it.value().toString());
    }
    builder.notifySourceCurrentPos(++closed);
    builder.checkCancelled(closed);
    stack.pop();
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
