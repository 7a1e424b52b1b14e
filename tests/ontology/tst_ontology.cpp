#include "ontology/ontology.h"
#include "sqlfile.h"
#include "tests/support/treeliteral.h"

#include <QTemporaryDir>
#include <QtTest>

using Zem::Ontology::Ontology;
using namespace Sorvik::Test;

class TestOntology : public QObject
{
    Q_OBJECT
private slots:
    void headerOfAWrittenFile_data();
    void headerOfAWrittenFile();
    void refusesWhatIsNotAnOntology_data();
    void refusesWhatIsNotAnOntology();
    void missingFileIsNotCreated();
};

void TestOntology::headerOfAWrittenFile_data()
{
    QTest::addColumn<QString>("tree");
    QTest::addColumn<bool>("count");
    QTest::addColumn<int>("nodes");
    QTest::newRow("counted") << "r(a:1 b:2)" << true << 3;
    QTest::newRow("uncounted") << "r(a b(c))" << false << 4;
}

void TestOntology::headerOfAWrittenFile()
{
    QFETCH(QString, tree);
    QFETCH(bool, count);
    QFETCH(int, nodes);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("x.ontology"));
    writeTree(file, tree, count);
    const Ontology ontology(file);
    QCOMPARE(ontology.getFileName(), file);
    QCOMPARE(ontology.getNodeNumber(), nodes);
    QCOMPARE(ontology.isCounted(), count);
}

void TestOntology::refusesWhatIsNotAnOntology_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("sql");
    QTest::addColumn<bool>("openFails");
    const QString nodes = QStringLiteral("CREATE TABLE nodes( id TEXT, count INTEGER, data TEXT)");
    const QString info = QStringLiteral("CREATE TABLE info( key TEXT PRIMARY KEY, value TEXT)");
    QTest::newRow("empty file") << QByteArray("") << QStringList() << false;
    QTest::newRow("text file") << QByteArray("1\n2\n3\n") << QStringList() << false;
    QTest::newRow("binary file") << QByteArray(8192, '\xff') << QStringList() << false;
    QTest::newRow("no info table") << QByteArray() << QStringList{nodes} << false;
    QTest::newRow("no nodes table") << QByteArray() << QStringList{info, "INSERT INTO info VALUES ('nodes','1'),('counted','1')"} << false;
    QTest::newRow("tables in other case") << QByteArray() << QStringList{"CREATE TABLE NODES(id TEXT)", "CREATE TABLE INFO(key TEXT, value TEXT)"} << false;
    QTest::newRow("no counted row") << QByteArray() << QStringList{nodes, info, "INSERT INTO info VALUES ('nodes','1')"} << false;
    QTest::newRow("no nodes row") << QByteArray() << QStringList{nodes, info, "INSERT INTO info VALUES ('counted','1')"} << false;
    QTest::newRow("info without value column") << QByteArray() << QStringList{nodes, "CREATE TABLE info(key TEXT)"} << false;
    QTest::newRow("a folder") << QByteArray() << QStringList{"folder"} << true;
}

void TestOntology::refusesWhatIsNotAnOntology()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, sql);
    QFETCH(bool, openFails);
    QTemporaryDir dir;
    QString file = dir.filePath(QStringLiteral("x.ontology"));
    if (sql == QStringList{"folder"}) {
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("x.ontology")));
    } else if (sql.isEmpty()) {
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(content);
    } else {
        execSql(file, sql);
    }
    if (openFails)
        QVERIFY_EXCEPTION_THROWN(Ontology{file}, Ontology::OpenDatabaseException);
    else
        QVERIFY_EXCEPTION_THROWN(Ontology{file}, Ontology::InvalidFormatException);
}

void TestOntology::missingFileIsNotCreated()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("missing.ontology"));
    QVERIFY_EXCEPTION_THROWN(Ontology{file}, Ontology::OpenDatabaseException);
    QVERIFY(!QFile::exists(file));
}

QTEST_GUILESS_MAIN(TestOntology)
#include "tst_ontology.moc"
