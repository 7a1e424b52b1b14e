#include "nu/database.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <vector>

class TestDatabase : public QObject
{
    Q_OBJECT
private slots:
    void connectionsAtOnceGetDistinctNames()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("a.db"));
        const QString base = QStringLiteral("zem-ontology-reader");
        QCOMPARE(nu::database::getConnectionName(base), base);
        nu::database::Connection first(base, file, false);
        nu::database::Connection second(base, file, false);
        QCOMPARE(first.getName(), base);
        QCOMPARE(second.getName(), base + QStringLiteral("_") + QChar(1));
        QCOMPARE(nu::database::getConnectionName(base), base + QStringLiteral("_") + QChar(2));
        // Hundreds at once, as readers nest, stay distinct.
        std::vector<std::unique_ptr<nu::database::Connection>> connections;
        QSet<QString> names;
        for (int i = 0; i < 300; ++i) {
            connections.push_back(std::make_unique<nu::database::Connection>(base, file, true));
            names.insert(connections.back()->getName());
        }
        QCOMPARE(names.size(), 300);
        QVERIFY(!names.contains(first.getName()) && !names.contains(second.getName()));
    }

    void namesAreFreedWhenConnectionsDie()
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
};

QTEST_GUILESS_MAIN(TestDatabase)
#include "tst_database.moc"
