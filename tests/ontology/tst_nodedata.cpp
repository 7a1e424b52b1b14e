#include "ontology/nodedata.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using Zem::Ontology::NodeData;

class TestNodeData : public QObject
{
    Q_OBJECT
private slots:
    void insertions_data();
    void insertions();
    void copiesAreIndependent();
};

void TestNodeData::insertions_data()
{
    // Pairs inserted in this order; later values of a key replace earlier ones.
    QTest::addColumn<QStringList>("inserted");
    QTest::newRow("none") << QStringList();
    QTest::newRow("one") << QStringList{"scientific name", "Homo sapiens"};
    QTest::newRow("counted taxon") << QStringList{"scientific name", "Homo sapiens", "count", "3", "accumCount", "7"};
    QTest::newRow("replaced") << QStringList{"count", "3", "count", "4"};
    QTest::newRow("beyond the inline room")
        << QStringList{"name", "p  F", "count", "2500", "percentage", "0.25", "accumCount", "2500", "z", "last", "a", "first"};
    QTest::newRow("replaced after spilling") << QStringList{"d", "1", "c", "2", "b", "3", "a", "4", "c", "5"};
    QTest::newRow("escapes and non-ASCII") << QStringList{"name", "q\"uote\\d\n", "other", QString::fromUtf8("Bact\xc3\xa9rie")};
    QTest::newRow("empty key and value") << QStringList{"", "", "x", ""};
}

void TestNodeData::insertions()
{
    QFETCH(QStringList, inserted);
    NodeData data;
    QVariantMap expected;
    for (int i = 0; i + 1 < inserted.size(); i += 2) {
        data.insert(inserted.at(i), inserted.at(i + 1));
        expected.insert(inserted.at(i), inserted.at(i + 1));
    }
    QCOMPARE(data.size(), expected.size());
    QCOMPARE(data.toVariantMap(), expected);
    QCOMPARE(data.toJson(), QString::fromUtf8(QJsonDocument(QJsonObject::fromVariantMap(expected)).toJson(QJsonDocument::Compact)));
    for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
        QVERIFY(data.contains(it.key()));
        QCOMPARE(data.value(it.key()), it.value());
    }
    QVERIFY(!data.contains(QStringLiteral("missing")));
    QCOMPARE(data.value(QStringLiteral("missing"), QStringLiteral("default")).toString(), QStringLiteral("default"));
    QStringList keys;
    for (const auto& entry : data)
        keys << entry.first;
    QCOMPARE(keys, expected.keys());
}

void TestNodeData::copiesAreIndependent()
{
    NodeData original;
    for (const char* key : {"a", "b", "c", "d"})
        original.insert(QString::fromLatin1(key), QStringLiteral("1"));
    NodeData copy = original;
    copy.insert(QStringLiteral("a"), QStringLiteral("2"));
    NodeData small;
    small.insert(QStringLiteral("x"), QStringLiteral("y"));
    small = original;
    QCOMPARE(original.value(QStringLiteral("a")).toString(), QStringLiteral("1"));
    QCOMPARE(copy.value(QStringLiteral("a")).toString(), QStringLiteral("2"));
    QCOMPARE(small.toVariantMap(), original.toVariantMap());
}

QTEST_APPLESS_MAIN(TestNodeData)
#include "tst_nodedata.moc"
