#include "tests/support/eventrecorder.h"

namespace Sorvik {
namespace Test {

void EventRecorder::openNode(const QString& id, const QVariantMap& data, const Position& position)
{
    events << QStringLiteral("open %1 (%2,%3)").arg(id).arg(position.getRow()).arg(position.getChildrenStart());
    openedData << data;
}

void EventRecorder::closeNode(const QString& id, const QVariantMap&)
{
    events << QStringLiteral("close %1").arg(id);
}

} // namespace Test
} // namespace Sorvik
