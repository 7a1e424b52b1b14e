#include "nu/compactjson.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

class TestCompactJson : public QObject
{
    Q_OBJECT
private slots:
    void writesWhatQtWrites_data()
    {
        QTest::addColumn<QVariantMap>("map");
        QTest::newRow("key order")
            << QVariantMap{{"scientific name", "Homo sapiens"}, {"Z", "1"}, {"_", "2"}, {"a", "3"}, {"count", "0"}};
        QTest::newRow("escapes") << QVariantMap{{"name", QString::fromLatin1("q\"b\\s/t\tn\nr\rb\bf\f\x01\x1f end")}};
        QTest::newRow("non-ascii value")
            << QVariantMap{{"name", QString::fromUtf8("Bact\xc3\xa9rie \xe2\x80\x94 \xf0\x9f\xa6\xa0")}};
        QTest::newRow("lone surrogate") << QVariantMap{{"name", QString(QString(QChar(0xd800)) + QLatin1String("x"))}};
        QTest::newRow("non-ascii key") << QVariantMap{{QString::fromUtf8("\xc3\xa9"), "1"}, {"e", "2"}};
        QTest::newRow("non-string value") << QVariantMap{{"n", QVariant(5)}, {"b", QVariant(true)}, {"s", QVariant("x")}};
    }

    void writesWhatQtWrites()
    {
        QFETCH(QVariantMap, map);
        const QByteArray expected = QJsonDocument(QJsonObject::fromVariantMap(map)).toJson(QJsonDocument::Compact);
        QCOMPARE(nu::toCompactJson(map), expected);
    }

    // The quick way takes flat objects of plain strings and refuses all else, for the general way.
    void splitsFlatObjectsOnly_data()
    {
        QTest::addColumn<QString>("json");
        QTest::addColumn<QString>("pairs");
        QTest::newRow("empty object") << "{}" << "";
        QTest::newRow("flat, in order") << "{\"b\":\"2\",\"a\":\"x y\"}" << "b=2;a=x y;";
        QTest::newRow("empty value") << "{\"a\":\"\"}" << "a=;";
        QTest::newRow("escape") << "{\"a\":\"x\\\"y\"}" << "refused";
        QTest::newRow("number") << "{\"a\":1}" << "refused";
        QTest::newRow("nested") << "{\"a\":{\"b\":\"c\"}}" << "refused";
        QTest::newRow("cut short") << "{\"a\":\"1\"" << "refused";
        QTest::newRow("trailing") << "{\"a\":\"1\"}x" << "refused";
        QTest::newRow("empty object, trailing") << "{}x" << "refused";
        QTest::newRow("empty text") << "" << "refused";
    }

    void splitsFlatObjectsOnly()
    {
        QFETCH(QString, json);
        QFETCH(QString, pairs);
        std::vector<std::pair<QStringView, QStringView>> found;
        QString text;
        if (nu::splitCompactJson(json, found)) {
            for (const auto& pair : found)
                text += pair.first.toString() + QLatin1Char('=') + pair.second.toString() + QLatin1Char(';');
        } else {
            text = QStringLiteral("refused");
        }
        QCOMPARE(text, pairs);
    }

    // Defined below the class: moc misreads the raw string literals in it.
    void readsWhatQtReads_data();
    void readsWhatQtReads()
    {
        QFETCH(QByteArray, json);
        QCOMPARE(nu::fromCompactJson(json), QJsonDocument::fromJson(json).object().toVariantMap());
        QCOMPARE(nu::fromCompactJson(QString::fromUtf8(json)), QJsonDocument::fromJson(json).object().toVariantMap());
    }
};

void TestCompactJson::readsWhatQtReads_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("escapes") << QByteArray(R"({"a":"x\"y\\z\/\n\t\u0041\u00e9"})");
    QTest::newRow("spaces") << QByteArray(R"({ "a" : "1" })");
    QTest::newRow("numbers") << QByteArray(R"({"a":1,"b":[1,2],"c":{"d":"e"}})");
    QTest::newRow("utf8") << QByteArray("{\"a\":\"Bact\xc3\xa9rie\"}");
    QTest::newRow("not an object") << QByteArray(R"(["a"])");
    QTest::newRow("garbage") << QByteArray("{\"a\":\"1\"");
    QTest::newRow("trailing") << QByteArray(R"({"a":"1"}x)");
    QTest::newRow("empty text") << QByteArray();
    QTest::newRow("binary") << QByteArray("\x00\xff{\"", 4);
    QTest::newRow("repeated key") << QByteArray(R"({"a":"1","a":"2"})");
    QTest::newRow("control character") << QByteArray("{\"a\":\"x\ty\"}");
}

QTEST_APPLESS_MAIN(TestCompactJson)
#include "tst_compactjson.moc"
