#include "ontology/ontology.h"
#include "tests/support/sqlfile.h"
#include "tests/support/treeliteral.h"

#include <QTemporaryDir>
#include <QtTest>

using Zem::Ontology::Ontology;
using namespace Sorvik::Test;

class TestOntology : public QObject
{
    Q_OBJECT
private slots:
    void refusesWhatIsNotAnOntology_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("sql");
        QTest::addColumn<bool>("openFails");
        const QString nodes = QStringLiteral("CREATE TABLE nodes( id TEXT, count INTEGER, data TEXT)");
        const QString info = QStringLiteral("CREATE TABLE info( key TEXT PRIMARY KEY, value TEXT)");
        QTest::newRow("missing file") << QByteArray("<missing>") << QStringList() << true;
        QTest::newRow("a folder") << QByteArray("<folder>") << QStringList() << true;
        QTest::newRow("binary file") << QByteArray(8192, '\xff') << QStringList() << false;
        QTest::newRow("no info table") << QByteArray() << QStringList{nodes} << false;
        const QString insert = QStringLiteral("INSERT INTO info VALUES ");
        QTest::newRow("no counted row") << QByteArray() << QStringList{nodes, info, insert + "('nodes','1')"} << false;
        QTest::newRow("info without value column") << QByteArray() << QStringList{nodes, "CREATE TABLE info(key TEXT)"}
                                                   << false;
    }

    void refusesWhatIsNotAnOntology()
    {
        QFETCH(QByteArray, content);
        QFETCH(QStringList, sql);
        QFETCH(bool, openFails);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("x.ontology"));
        QFile raw(file);
        if (content == "<folder>")
            QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("x.ontology")));
        else if (!sql.isEmpty())
            execSql(file, sql);
        else if (content != "<missing>")
            QVERIFY(raw.open(QIODevice::WriteOnly) && raw.write(content) == content.size());
        raw.close();
        if (openFails)
            QVERIFY_EXCEPTION_THROWN(Ontology{file}, Ontology::OpenDatabaseException);
        else
            QVERIFY_EXCEPTION_THROWN(Ontology{file}, Ontology::InvalidFormatException);
        // A check never creates the file it looks at.
        QCOMPARE(QFile::exists(file), content != "<missing>");
    }

    // A write killed just before its rename leaves a complete file under its temporary name.
    void unfinishedWriteIsNoChart()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("target.piechart"));
        writeTree(file, QStringLiteral("root(a:1)"));
        QCOMPARE(Ontology(file).getNodeNumber(), 2);
        const QString part = dir.filePath(QStringLiteral(".target.piechart.Xy12Ab.part"));
        QVERIFY(QFile::rename(file, part));
        QVERIFY_EXCEPTION_THROWN(Ontology{part}, Ontology::InvalidFormatException);
    }
};

QTEST_GUILESS_MAIN(TestOntology)
#include "tst_ontology.moc"
