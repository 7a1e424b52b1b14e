#include "ontology/buildersource.h"
#include "ontology/nodekeys.h"
#include "ontology/sourcebcp.h"
#include "ontology/sourceontology.h"
#include "ontology/taxonomybuilder.h"
#include "ontology/taxonomycache.h"
#include "ontology/taxonomychanges.h"
#include "ontology/taxonomydatabase.h"
#include "tests/support/fixtures.h"
#include "tests/support/foldercase.h"
#include "tests/support/taxdump.h"
#include "tests/support/treeliteral.h"
#include "tests/support/treetext.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

using namespace Zem::Ontology;
using Zem::Ncbi::TaxonomyBuilder;
using Zem::Ncbi::TaxonomyCache;
using Zem::Ncbi::TaxonomyChanges;
using Zem::Ncbi::TaxonomyDatabase;
using namespace Sorvik::Test;

class TestTaxonomyDatabase : public FolderCase
{
    Q_OBJECT
private slots:
    // Unpacked folders go below this test's own temporary folder, where escapes can be checked.
    void initTestCase() { catchTemporaryFiles(); }
    void init() { start(); }

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
        QTest::newRow("a synonym that reads 'scientific name' is still a synonym")
            << rootNodes << dumpRow({"2", "scientific name", "", "synonym"}) + bacteria << "1(Bacteria)";
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

    void importKeepsRanksAndRetiredIds_data()
    {
        QTest::addColumn<QByteArray>("merged");
        QTest::addColumn<QByteArray>("deleted");
        // "old>new" for each merged id looked up (new empty when not merged), then the deleted ids.
        QTest::addColumn<QString>("merges");
        QTest::addColumn<QString>("deletions");
        const QByteArray none("<none>");
        QTest::newRow("no merged.dmp or delnodes.dmp") << none << none << "12> 562>" << "";
        QTest::newRow("empty files") << QByteArray() << QByteArray() << "12>" << "";
        QTest::newRow("rows as NCBI writes them")
            << QByteArray("12\t|\t562\t|\n13\t|\t9606\t|\n") << QByteArray("99\t|\n77\t|\n")
            << "12>562 13>9606 562> 99>" << "77 99";
        QTest::newRow("crlf, no last line end") << QByteArray("12\t|\t562\t|\r\n13\t|\t9606\t|")
                                                << QByteArray("99\t|\r\n77\t|") << "12>562 13>9606" << "77 99";
        QTest::newRow("a chain of merges ends at today's id")
            << QByteArray("10\t|\t11\t|\n11\t|\t562\t|\n") << QByteArray() << "10>562 11>562" << "";
        QTest::newRow("a loop of merges leads nowhere")
            << QByteArray("20\t|\t21\t|\n21\t|\t20\t|\n") << QByteArray() << "20> 21> 30>" << "";
        QTest::newRow("rows without ids are passed over")
            << QByteArray("abc\t|\t562\t|\n\t|\t562\t|\n14\t|\t\t|\n-5\t|\t2\t|\n99999999999\t|\t2\t|\n"
                          "562\t|\t562\t|\n15\t|\t2\t|\n")
            << QByteArray("x\t|\n\t|\n5\t|\n5\t|\n") << "abc> 14> -5> 562> 15>2" << "5";
    }

    void importKeepsRanksAndRetiredIds()
    {
        QFETCH(QByteArray, merged);
        QFETCH(QByteArray, deleted);
        QFETCH(QString, merges);
        QFETCH(QString, deletions);
        // The 2025 rank names, as written.
        QList<ZipEntry> entries{{QStringLiteral("nodes.dmp"),
                                 dumpRow({"1", "1", "no rank"}) + dumpRow({"131567", "1", "cellular root"})
                                     + dumpRow({"2", "131567", "domain"}) + dumpRow({"10239", "1", "acellular root"})
                                     + dumpRow({"562", "2", "species"}) + dumpRow({"9606", "131567", "species"})},
                                {QStringLiteral("names.dmp"), dumpRow({"2", "Bacteria", "", "scientific name"})}};
        if (merged != "<none>")
            entries << ZipEntry{QStringLiteral("merged.dmp"), merged};
        if (deleted != "<none>")
            entries << ZipEntry{QStringLiteral("delnodes.dmp"), deleted};
        QVERIFY(writeZip(zip(), entries));
        const QString cache = path(QStringLiteral("ncbi.ontology"));
        const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
        {
            TaxonomyDatabase database(zip());
            database.open();
            TaxonomyBuilder builder(cache);
            builder.addDump(database, QStringLiteral("https://mirror.example/taxdmp.zip"));
            builder.load();
            builder.build();
        }

        // The ranks come back with the tree.
        BuilderSource copy(path(QStringLiteral("copy.ontology")));
        copy.addSource(std::make_unique<SourceOntology>(cache));
        copy.load();
        QStringList ranks;
        for (const char* id : {"1", "131567", "2", "10239", "562", "9606"})
            ranks << copy.findNode(QString::fromLatin1(id))->data.value(NodeKey::rank).toString();
        QCOMPARE(ranks, (QStringList{"no rank", "cellular root", "domain", "acellular root", "species", "species"}));
        QCOMPARE(describeOntology(cache), QStringLiteral("1(131567(Bacteria(562) 9606) 10239)"));

        // Read whole, and only for the ids asked about, as a chart does: the same answers.
        const QStringList candidates{"5", "77", "99", "562", "12"};
        QStringList asked = candidates;
        for (const QString& merge : merges.split(QLatin1Char(' '), Qt::SkipEmptyParts))
            asked << merge.section(QLatin1Char('>'), 0, 0);
        for (const TaxonomyChanges& changes : {TaxonomyChanges::read(cache, true), TaxonomyChanges::read(cache, asked)}) {
            QStringList found;
            for (const QString& merge : merges.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
                const QString old = merge.section(QLatin1Char('>'), 0, 0);
                found << old + QLatin1Char('>') + changes.getNewId(old);
            }
            QCOMPARE(found.join(QLatin1Char(' ')), merges);
            QStringList gone;
            for (const QString& id : candidates) {
                if (changes.isDeleted(id))
                    gone << id;
            }
            QCOMPARE(gone.join(QLatin1Char(' ')), deletions);
        }
        // Reading only the merged ids leaves the deleted ones out.
        QCOMPARE(TaxonomyChanges::read(cache, false).getDeletedNumber(), 0);

        const TaxonomyCache info(cache);
        QVERIFY(info.isUsable());
        QVERIFY(!info.isCounted());
        QCOMPARE(info.getOrigin(), QStringLiteral("https://mirror.example/taxdmp.zip"));
        QVERIFY2(info.getCreated() >= before && info.getCreated() <= QDateTime::currentDateTimeUtc(),
                 qPrintable(info.getCreated().toString(Qt::ISODate)));
        QCOMPARE(info.getAgeDays(), 0);
    }

    void cacheAge_data()
    {
        QTest::addColumn<QString>("created");
        QTest::addColumn<int>("days");
        QTest::addColumn<bool>("old");
        QTest::newRow("made today") << "2025-07-01T08:00:00Z" << 0 << false;
        QTest::newRow("180 days is not yet old") << "2025-01-02T12:00:00Z" << 180 << false;
        QTest::newRow("181 days is") << "2025-01-01T12:00:00Z" << 181 << true;
        QTest::newRow("a date the file does not read as one: the file's own time") << "yesterday" << -2 << false;
    }

    void cacheAge()
    {
        QFETCH(QString, created);
        QFETCH(int, days);
        QFETCH(bool, old);
        const QString cache = path(QStringLiteral("ncbi.ontology"));
        writeTree(cache, QStringLiteral("1(2)"), false);
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("age"));
            db.setDatabaseName(cache);
            QVERIFY(db.open());
            QSqlQuery query(db);
            QVERIFY(query.prepare(QStringLiteral("INSERT INTO info (key, value) VALUES (:key, :value)")));
            query.bindValue(QStringLiteral(":key"), TaxonomyCache::createdKey);
            query.bindValue(QStringLiteral(":value"), created);
            QVERIFY(query.exec());
        }
        QSqlDatabase::removeDatabase(QStringLiteral("age"));
        const TaxonomyCache info(cache);
        const QDateTime now = QDateTime::fromString(QStringLiteral("2025-07-01T13:00:00Z"), Qt::ISODate);
        if (days < 0) {
            QCOMPARE(info.getCreated(), QFileInfo(cache).lastModified().toUTC());
        } else {
            QCOMPARE(info.getAgeDays(now), qint64(days));
            QCOMPARE(info.isOld(now), old);
        }
        QCOMPARE(info.getOrigin(), QString());
        QVERIFY(!TaxonomyCache(path(QStringLiteral("missing.ontology"))).isOld(now));
        QCOMPARE(TaxonomyCache(path(QStringLiteral("missing.ontology"))).getAgeDays(now), qint64(-1));
    }

    void realDumpsKeepTheirRanks_data()
    {
        QTest::addColumn<QString>("folder");
        const QString real = realDataPath(QStringLiteral("ncbi"));
        if (real.isEmpty())
            QSKIP("no real data beside the checkout");
        for (const QString& name : QDir(real).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
            QTest::newRow(qPrintable(name)) << QDir(real).filePath(name);
    }

    void realDumpsKeepTheirRanks()
    {
        QFETCH(QString, folder);
        QList<ZipEntry> entries;
        for (const QString& name : QDir(folder).entryList({QStringLiteral("*.dmp")}, QDir::Files))
            entries << ZipEntry{name, fileContents(QDir(folder).filePath(name))};
        QVERIFY(writeZip(zip(), entries));
        // The rank of every taxon, as its nodes.dmp row writes it.
        QHash<QString, QString> written;
        for (const QByteArray& row : fileContents(QDir(folder).filePath(QStringLiteral("nodes.dmp"))).split('\n')) {
            const QList<QByteArray> fields = row.split('|');
            // krakenpy_missing2 has rows cut short, some without an id; those make no taxon.
            if (fields.size() > 2 && !fields.at(0).trimmed().isEmpty())
                written.insert(QString::fromUtf8(fields.at(0).trimmed()), QString::fromUtf8(fields.at(2).trimmed()));
        }
        TaxonomyDatabase database(zip());
        database.open();
        TaxonomyBuilder builder(path(QStringLiteral("ncbi.ontology")));
        builder.addDump(database, zip());
        builder.load();
        QVERIFY(!written.isEmpty());
        for (auto it = written.constBegin(); it != written.constEnd(); ++it) {
            const auto* node = builder.findNode(it.key());
            QVERIFY2(node, qPrintable(it.key()));
            QCOMPARE(node->data.value(NodeKey::rank).toString(), it.value());
        }
        // taxpasta_synthetic ships empty merged.dmp and delnodes.dmp.
        QCOMPARE(builder.getChanges().getMergedNumber(), 0);
        QCOMPARE(builder.getChanges().getDeletedNumber(), 0);
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
};

QTEST_GUILESS_MAIN(TestTaxonomyDatabase)
#include "tst_taxonomydatabase.moc"
