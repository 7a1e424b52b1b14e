#include "ontology/nodedata.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using Zem::Ontology::NodeData;

class TestNodeData : public QObject
{
    Q_OBJECT
private slots:
    void behavesLikeAMap_data()
    {
        // Pairs inserted in this order; later values of a key replace earlier ones.
        QTest::addColumn<QStringList>("inserted");
        QTest::newRow("beyond the inline room")
            << QStringList{"name", "p  F", "count", "2500", "percentage", "0.25", "accumCount", "2500", "z", "", "a", "first"};
        QTest::newRow("replaced after spilling") << QStringList{"d", "1", "c", "2", "b", "3", "a", "4", "c", "5"};
        QTest::newRow("escapes and non-ASCII")
            << QStringList{"name", "q\"uote\\d\n", "other", QString::fromUtf8("Bact\xc3\xa9rie")};
    }

    void behavesLikeAMap()
    {
        QFETCH(QStringList, inserted);
        NodeData data;
        QVariantMap expected;
        for (int i = 0; i + 1 < inserted.size(); i += 2) {
            data.insert(inserted.at(i), inserted.at(i + 1));
            expected.insert(inserted.at(i), inserted.at(i + 1));
        }
        QCOMPARE(data.toVariantMap(), expected);
        // The JSON is the one Qt writes, so files read back the same.
        const QByteArray json = QJsonDocument(QJsonObject::fromVariantMap(expected)).toJson(QJsonDocument::Compact);
        QCOMPARE(data.toJson(), QString::fromUtf8(json));
        QCOMPARE(data.value(expected.lastKey()), expected.last());
        QVERIFY(!data.contains(QStringLiteral("missing")));

        // Copies are independent, whether the values spilled or not.
        NodeData copy = data;
        copy.insert(QStringLiteral("count"), QStringLiteral("changed"));
        QCOMPARE(data.toVariantMap(), expected);
    }
};

QTEST_APPLESS_MAIN(TestNodeData)
#include "tst_nodedata.moc"
