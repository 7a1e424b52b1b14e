#pragma once

#include "ontology/reader.h"

#include <QStringList>

namespace Sorvik {
namespace Test {

// A reader that writes down its events as text: "open ID (row,start)" and "close ID".
class EventRecorder : public Zem::Ontology::Reader
{
public:
    using Reader::Reader;

    void openNode(const QString& id, const QVariantMap& data, const Position& position) override;
    void closeNode(const QString& id, const QVariantMap& data) override;

    QStringList events;
    QList<QVariantMap> openedData;
};

} // namespace Test
} // namespace Sorvik
