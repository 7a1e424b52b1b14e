#include "nu/database.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <vector>

class TestDatabase : public QObject
{
    Q_OBJECT
private slots:
    void freeBaseIsUsedAsItIs();
    void laterConnectionsGetOneCharacterSuffixes();
    void namesAreFreedWhenConnectionsDie();
    void manyConnectionsStayDistinct();
};

void TestDatabase::freeBaseIsUsedAsItIs()
{
    QCOMPARE(nu::database::getConnectionName(QStringLiteral("zem-test-free")), QStringLiteral("zem-test-free"));
}

void TestDatabase::laterConnectionsGetOneCharacterSuffixes()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("a.db"));
    nu::database::Connection first(QStringLiteral("zem-ontology-reader"), file, false);
    nu::database::Connection second(QStringLiteral("zem-ontology-reader"), file, false);
    nu::database::Connection third(QStringLiteral("zem-ontology-reader"), file, false);
    QCOMPARE(first.getName(), QStringLiteral("zem-ontology-reader"));
    QCOMPARE(second.getName(), QStringLiteral("zem-ontology-reader_") + QChar(1));
    QCOMPARE(third.getName(), QStringLiteral("zem-ontology-reader_") + QChar(2));
    QCOMPARE(nu::database::getConnectionName(QStringLiteral("zem-ontology-reader")),
             QStringLiteral("zem-ontology-reader_") + QChar(3));
}

void TestDatabase::namesAreFreedWhenConnectionsDie()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("a.db"));
    {
        nu::database::Connection c(QStringLiteral("zem-test-reuse"), file, false);
        QVERIFY(c.open());
        QVERIFY(QSqlDatabase::contains(QStringLiteral("zem-test-reuse")));
    }
    QVERIFY(!QSqlDatabase::contains(QStringLiteral("zem-test-reuse")));
    nu::database::Connection again(QStringLiteral("zem-test-reuse"), file, false);
    QCOMPARE(again.getName(), QStringLiteral("zem-test-reuse"));
}

void TestDatabase::manyConnectionsStayDistinct()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("a.db"));
    std::vector<std::unique_ptr<nu::database::Connection>> connections;
    QSet<QString> names;
    for (int i = 0; i < 300; ++i) {
        connections.push_back(std::make_unique<nu::database::Connection>(QStringLiteral("zem-test-many"), file, true));
        names.insert(connections.back()->getName());
    }
    QCOMPARE(names.size(), 300);
}

QTEST_GUILESS_MAIN(TestDatabase)
#include "tst_database.moc"
