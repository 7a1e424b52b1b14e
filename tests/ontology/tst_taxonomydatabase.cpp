#include "ontology/buildersource.h"
#include "ontology/sourcebcp.h"
#include "ontology/taxonomydatabase.h"
#include "tests/support/taxdump.h"
#include "tests/support/treetext.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace Zem::Ontology;
using Zem::Ncbi::TaxonomyDatabase;
using namespace Sorvik::Test;

class TestTaxonomyDatabase : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        // Unpacked folders go below this test's own temporary folder, where escapes can be checked.
        QVERIFY(top.isValid());
        QVERIFY(QDir(top.path()).mkpath(QStringLiteral("tmp")));
        qputenv("TMPDIR", QFile::encodeName(top.filePath(QStringLiteral("tmp"))));
    }

    void init()
    {
        dir = std::make_unique<QTemporaryDir>(top.filePath(QStringLiteral("case-XXXXXX")));
        QVERIFY(dir->isValid());
    }

    void dumpRows_data()
    {
        QTest::addColumn<QByteArray>("nodesText");
        QTest::addColumn<QByteArray>("namesText");
        QTest::addColumn<QString>("tree");
        const QByteArray rootRow = dumpRow({"1", "1", "no rank"});
        const QByteArray rootNodes = rootRow + dumpRow({"2", "1", "superkingdom"});
        const QByteArray bacteria = dumpRow({"2", "Bacteria", "", "scientific name"});
        QTest::newRow("child under parent")
            << rootRow + dumpRow({"2", "131567", "superkingdom", "", "0"}) + dumpRow({"131567", "1", "no rank"})
            << QByteArray() << "1(131567(2))";
        QTest::newRow("synonym never replaces the scientific name")
            << rootNodes << bacteria + dumpRow({"2", "Monera", "", "synonym"}) << "1(Bacteria)";
        QTest::newRow("four-field rows") << QByteArray("1\t|\t1\t|\tno rank\t|\t\t|\n2\t|\t1\t|\tPhylum\t|\t\t|\n")
                                         << QByteArray("2\t|\tall\t|\t\t|\tscientific name\t|\n") << "1(all)";
        QTest::newRow("missing parent leaves the taxon out")
            << rootNodes + dumpRow({"7", "99", "species"}) << dumpRow({"7", "Lost", "", "scientific name"}) << "1(2)";
        QTest::newRow("crlf rows") << QByteArray("1\t|\t1\t|\tno rank\t|\r\n2\t|\t1\t|\tx\t|\r\n")
                                   << QByteArray("2\t|\tB\t|\t\t|\tscientific name\t|\r\n") << "1(B)";
        QTest::newRow("no root") << dumpRow({"2", "3", "x"}) + dumpRow({"3", "2", "x"}) << QByteArray() << "";
    }

    void dumpRows()
    {
        QFETCH(QByteArray, nodesText);
        QFETCH(QByteArray, namesText);
        QFETCH(QString, tree);
        QVERIFY(writeZip(zip(), {{QStringLiteral("readme.txt"), "NCBI taxonomy"},
                                 {QStringLiteral("nodes.dmp"), nodesText},
                                 {QStringLiteral("names.dmp"), namesText}}));
        QCOMPARE(read(), tree);
    }

    void badArchivesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("message");
        QTest::newRow("missing file") << QByteArray("<missing>") << "not a ZIP file";
        QTest::newRow("zip cut short") << QByteArray("<cut>") << "not a ZIP file";
        QTest::newRow("nodes.dmp in a subfolder") << QByteArray("taxdump/nodes.dmp") << "no nodes.dmp";
    }

    void badArchivesAreRefused()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, message);
        if (content.endsWith(".dmp")) {
            QVERIFY(writeZip(zip(), {{QString::fromLatin1(content), smallNodes()}}));
        } else if (content != "<missing>") {
            if (content == "<cut>") {
                QVERIFY(writeSmallTaxdump(zip()));
                QFile whole(zip());
                QVERIFY(whole.open(QIODevice::ReadOnly));
                content = whole.read(whole.size() / 2);
            }
            QFile file(zip());
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        }
        try {
            TaxonomyDatabase(zip()).open();
            QFAIL("the archive was accepted");
        } catch (const TaxonomyDatabase::Exception& e) {
            QVERIFY2(QString::fromUtf8(e.what()).contains(message), e.what());
        }
        // The unpacked folder goes with the database.
        QCOMPARE(QDir(top.filePath(QStringLiteral("tmp"))).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList());
    }

    void entriesOutsideTheFolderAreNotWritten()
    {
        const QString absoluteTarget = path(QStringLiteral("absolute.dmp"));
        const QString linkTarget = path(QStringLiteral("linked"));
        QVERIFY(QDir().mkpath(linkTarget));
        QVERIFY(writeZip(zip(), {{QStringLiteral("../escaped.dmp"), "x"},
                                 {QStringLiteral("sub/../../escaped2.dmp"), "x"},
                                 {QStringLiteral("..\\escaped4.dmp"), "x"},
                                 {QStringLiteral("C:/escaped5.dmp"), "x"},
                                 {absoluteTarget, "x"},
                                 {QStringLiteral("link"), linkTarget.toUtf8(), true},
                                 {QStringLiteral("link/through.dmp"), "x"},
                                 {QStringLiteral("nodes.dmp"), smallNodes()},
                                 {QStringLiteral("names.dmp"), smallNames()}}));
        {
            TaxonomyDatabase database(zip());
            database.open();
            QCOMPARE(database.getRefusedEntries().size(), 6);
            QVERIFY(!QFileInfo(database.getFolder().absoluteFilePath(QStringLiteral("link"))).isSymLink());
        }
        QCOMPARE(read(),
                 QStringLiteral("root(\"cellular organisms\"(Bacteria(Escherichia(\"Escherichia coli\")) \"Homo sapiens\"))"));
        const QDir tmp(top.filePath(QStringLiteral("tmp")));
        QVERIFY(!tmp.exists(QStringLiteral("escaped.dmp")));
        QVERIFY(!tmp.exists(QStringLiteral("escaped2.dmp")));
        QVERIFY(!QFileInfo::exists(absoluteTarget));
        QVERIFY(!QFileInfo::exists(linkTarget + QStringLiteral("/through.dmp")));
        QCOMPARE(tmp.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden), QStringList());
    }

    void unpackingStopsWhenCancelled_data()
    {
        QTest::addColumn<int>("blocksBeforeCancel");
        QTest::newRow("at the first block") << 0;
        QTest::newRow("in the second file") << 1;
        QTest::newRow("never") << 100;
    }

    void unpackingStopsWhenCancelled()
    {
        QFETCH(int, blocksBeforeCancel);
        QVERIFY(writeSmallTaxdump(zip()));
        int blocks = 0;
        bool cancelled = false;
        {
            TaxonomyDatabase database(zip());
            database.setCancelCheck([&blocks, blocksBeforeCancel] { return blocks++ >= blocksBeforeCancel; });
            try {
                database.open();
            } catch (const TaxonomyDatabase::CancelledException&) {
                cancelled = true;
            }
            QCOMPARE(blocks, blocksBeforeCancel < 100 ? blocksBeforeCancel + 1 : 2);
        }
        QCOMPARE(cancelled, blocksBeforeCancel < 100);
        // Nothing unpacked is left behind.
        QCOMPARE(QDir(top.filePath(QStringLiteral("tmp"))).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList());
    }

private:
    QString path(const QString& name) const { return dir->filePath(name); }
    QString zip() const { return path(QStringLiteral("taxdmp.zip")); }

    // The taxonomy of the archive as the NCBI import reads it.
    QString read()
    {
        TaxonomyDatabase database(zip());
        database.open();
        BuilderSource builder(path(QStringLiteral("ncbi.ontology")));
        for (auto& source : database.getSources())
            builder.addSource(std::move(source));
        builder.load();
        return describeTree(builder);
    }

    QTemporaryDir top;
    std::unique_ptr<QTemporaryDir> dir;
};

QTEST_GUILESS_MAIN(TestTaxonomyDatabase)
#include "tst_taxonomydatabase.moc"
