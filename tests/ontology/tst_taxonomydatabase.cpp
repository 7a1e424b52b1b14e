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

namespace {

const QByteArray nodes = smallNodes();
const QByteArray names = smallNames();
const QString expectedTree = QStringLiteral(
    "root(\"cellular organisms\"(Bacteria(Escherichia(\"Escherichia coli\")) \"Homo sapiens\"))");

} // namespace

class TestTaxonomyDatabase : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();

    void dumpRows_data();
    void dumpRows();
    void archiveGivesTheTaxonomy();
    void badArchivesAreRefused_data();
    void badArchivesAreRefused();
    void entriesOutsideTheFolderAreNotWritten();
    void safeEntryNames_data();
    void safeEntryNames();
    void folderIsRemovedWithTheDatabase();

private:
    QString path(const QString& name) const { return dir->filePath(name); }
    QString readDump(const QByteArray& nodesText, const QByteArray& namesText);

    QTemporaryDir top;
    std::unique_ptr<QTemporaryDir> dir;
};

void TestTaxonomyDatabase::initTestCase()
{
    // Unpacked folders go below this test's own temporary folder, where escapes can be checked.
    QVERIFY(top.isValid());
    QVERIFY(QDir(top.path()).mkpath(QStringLiteral("tmp")));
    qputenv("TMPDIR", QFile::encodeName(top.filePath(QStringLiteral("tmp"))));
}

void TestTaxonomyDatabase::init()
{
    dir = std::make_unique<QTemporaryDir>(top.filePath(QStringLiteral("case-XXXXXX")));
    QVERIFY(dir->isValid());
}

QString TestTaxonomyDatabase::readDump(const QByteArray& nodesText, const QByteArray& namesText)
{
    const QString zip = path(QStringLiteral("taxdmp.zip"));
    if (!writeZip(zip, {{QStringLiteral("nodes.dmp"), nodesText}, {QStringLiteral("names.dmp"), namesText}}))
        return QStringLiteral("<zip not written>");
    TaxonomyDatabase database(zip);
    database.open();
    BuilderSource builder(path(QStringLiteral("ncbi.ontology")));
    for (auto& source : database.getSources())
        builder.addSource(std::move(source));
    builder.load();
    return describeTree(builder);
}

void TestTaxonomyDatabase::dumpRows_data()
{
    QTest::addColumn<QByteArray>("nodesText");
    QTest::addColumn<QByteArray>("namesText");
    QTest::addColumn<QString>("tree");

    const QByteArray rootNodes = dumpRow({"1", "1", "no rank"}) + dumpRow({"2", "1", "superkingdom"});
    QTest::newRow("child under parent") << dumpRow({"1", "1", "no rank"}) + dumpRow({"2", "131567", "superkingdom", "", "0"})
                                               + dumpRow({"131567", "1", "no rank"})
                                        << QByteArray() << "1(131567(2))";
    QTest::newRow("synonym never replaces the scientific name")
        << rootNodes << dumpRow({"2", "Bacteria", "", "scientific name"}) + dumpRow({"2", "Monera", "", "synonym"})
        << "1(Bacteria)";
    QTest::newRow("class must be the fourth field")
        << rootNodes << dumpRow({"2", "scientific name", "", "synonym"}) + dumpRow({"2", "x", "scientific name", "authority"})
        << "1(2)";
    QTest::newRow("last rows without line feed")
        << QByteArray("1\t|\t1\t|\tno rank\t|\n2\t|\t1\t|\tsuperkingdom\t|")
        << QByteArray("2\t|\tBacteria\t|\t\t|\tscientific name\t|") << "1(Bacteria)";
    QTest::newRow("four-field rows") << QByteArray("1\t|\t1\t|\tno rank\t|\t\t|\n2\t|\t1\t|\tPhylum\t|\t\t|\n")
                                     << QByteArray("2\t|\tall\t|\t\t|\tscientific name\t|\n") << "1(all)";
    QTest::newRow("duplicate rows") << rootNodes + rootNodes << dumpRow({"2", "B", "", "scientific name"}) + dumpRow({"2", "B", "", "scientific name"})
                                    << "1(B)";
    QTest::newRow("missing parent leaves the taxon out")
        << rootNodes + dumpRow({"7", "99", "species"}) << dumpRow({"7", "Lost", "", "scientific name"}) << "1(2)";
    QTest::newRow("name of an unknown taxon") << rootNodes << dumpRow({"5", "Nowhere", "", "scientific name"}) << "1(2)";
    QTest::newRow("cut rows") << rootNodes + QByteArray("\t|\t1\t|\t1\t|\n9606\t|\tpliant; specified\t|\n") << QByteArray()
                              << "1(2)";
    QTest::newRow("crlf rows") << QByteArray("1\t|\t1\t|\tno rank\t|\r\n2\t|\t1\t|\tx\t|\r\n")
                               << QByteArray("2\t|\tB\t|\t\t|\tscientific name\t|\r\n") << "1(B)";
    QTest::newRow("no root") << dumpRow({"2", "3", "x"}) + dumpRow({"3", "2", "x"}) << QByteArray() << "";
}

void TestTaxonomyDatabase::dumpRows()
{
    QFETCH(QByteArray, nodesText);
    QFETCH(QByteArray, namesText);
    QFETCH(QString, tree);
    QCOMPARE(readDump(nodesText, namesText), tree);
}

void TestTaxonomyDatabase::archiveGivesTheTaxonomy()
{
    const QString zip = path(QStringLiteral("taxdmp.zip"));
    QVERIFY(writeZip(zip, {{QStringLiteral("readme.txt"), "NCBI taxonomy"},
                           {QStringLiteral("nodes.dmp"), nodes},
                           {QStringLiteral("names.dmp"), names},
                           {QStringLiteral("merged.dmp"), QByteArray()}}));
    TaxonomyDatabase database(zip);
    database.open();
    QVERIFY(database.getRefusedEntries().isEmpty());
    QVERIFY(database.getFolder().exists(QStringLiteral("readme.txt")));
    const auto sources = database.getSources();
    QCOMPARE(sources.size(), size_t(2));
    QCOMPARE(sources[0]->getDescription(), database.getFolder().absoluteFilePath(QStringLiteral("nodes.dmp")));
    QCOMPARE(sources[1]->getDescription(), database.getFolder().absoluteFilePath(QStringLiteral("names.dmp")));

    BuilderSource builder(path(QStringLiteral("ncbi.ontology")));
    for (auto& source : database.getSources())
        builder.addSource(std::move(source));
    builder.load();
    builder.build();
    QCOMPARE(describeOntology(builder.getFileName()), expectedTree);
}

void TestTaxonomyDatabase::badArchivesAreRefused_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("message");
    QTest::newRow("missing file") << "missing" << "not a ZIP file";
    QTest::newRow("empty file") << "empty" << "not a ZIP file";
    QTest::newRow("text file") << "text" << "not a ZIP file";
    QTest::newRow("zip cut short") << "cut" << "not a ZIP file";
    QTest::newRow("zip without nodes.dmp") << "no nodes" << "no nodes.dmp";
    QTest::newRow("nodes.dmp in a subfolder") << "subfolder" << "no nodes.dmp";
}

void TestTaxonomyDatabase::badArchivesAreRefused()
{
    QFETCH(QString, kind);
    QFETCH(QString, message);
    const QString zip = path(QStringLiteral("taxdmp.zip"));
    if (kind == QLatin1String("no nodes")) {
        QVERIFY(writeZip(zip, {{QStringLiteral("names.dmp"), names}}));
    } else if (kind == QLatin1String("subfolder")) {
        QVERIFY(writeZip(zip, {{QStringLiteral("taxdump/nodes.dmp"), nodes}}));
    } else if (kind != QLatin1String("missing")) {
        QByteArray content;
        if (kind == QLatin1String("text"))
            content = "<html>Not found</html>";
        if (kind == QLatin1String("cut")) {
            QVERIFY(writeZip(zip, {{QStringLiteral("nodes.dmp"), nodes}, {QStringLiteral("names.dmp"), names}}));
            QFile whole(zip);
            QVERIFY(whole.open(QIODevice::ReadOnly));
            content = whole.read(whole.size() / 2);
        }
        QFile file(zip);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    TaxonomyDatabase database(zip);
    try {
        database.open();
        QFAIL("the archive was accepted");
    } catch (const TaxonomyDatabase::Exception& e) {
        QVERIFY2(QString::fromUtf8(e.what()).contains(message), e.what());
    }
}

void TestTaxonomyDatabase::entriesOutsideTheFolderAreNotWritten()
{
    const QString zip = path(QStringLiteral("taxdmp.zip"));
    const QString absoluteTarget = path(QStringLiteral("absolute.dmp"));
    const QString linkTarget = path(QStringLiteral("linked"));
    QVERIFY(QDir().mkpath(linkTarget));
    QVERIFY(writeZip(zip, {{QStringLiteral("../escaped.dmp"), "x"},
                           {QStringLiteral("sub/../../escaped2.dmp"), "x"},
                           {QStringLiteral("../../escaped3.dmp"), "x"},
                           {absoluteTarget, "x"},
                           {QStringLiteral("link"), linkTarget.toUtf8(), true},
                           {QStringLiteral("link/through.dmp"), "x"},
                           {QStringLiteral("nodes.dmp"), nodes},
                           {QStringLiteral("names.dmp"), names}}));
    {
        TaxonomyDatabase database(zip);
        database.open();
        QCOMPARE(database.getRefusedEntries().size(), 5);
        const QDir folder = database.getFolder();
        QVERIFY(folder.exists(QStringLiteral("nodes.dmp")));
        QVERIFY(!QFileInfo(folder.absoluteFilePath(QStringLiteral("link"))).isSymLink());

        BuilderSource builder(path(QStringLiteral("ncbi.ontology")));
        for (auto& source : database.getSources())
            builder.addSource(std::move(source));
        builder.load();
        QCOMPARE(describeTree(builder), expectedTree);
    }
    const QDir tmp(top.filePath(QStringLiteral("tmp")));
    QVERIFY(!tmp.exists(QStringLiteral("escaped.dmp")));
    QVERIFY(!tmp.exists(QStringLiteral("escaped2.dmp")));
    QVERIFY(!QFileInfo::exists(top.filePath(QStringLiteral("escaped3.dmp"))));
    QVERIFY(!QFileInfo::exists(absoluteTarget));
    QVERIFY(!QFileInfo::exists(linkTarget + QStringLiteral("/through.dmp")));
    QCOMPARE(tmp.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden), QStringList());
}

void TestTaxonomyDatabase::safeEntryNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("link");
    QTest::addColumn<bool>("safe");
    QTest::newRow("plain") << "nodes.dmp" << false << true;
    QTest::newRow("in a folder") << "a/b/nodes.dmp" << false << true;
    QTest::newRow("folder entry") << "a/" << false << true;
    QTest::newRow("dots inside") << "a/../nodes.dmp" << false << true;
    QTest::newRow("two dots in a name") << "..nodes.dmp" << false << true;
    QTest::newRow("parent") << "../nodes.dmp" << false << false;
    QTest::newRow("parent through a folder") << "a/../../nodes.dmp" << false << false;
    QTest::newRow("parent with backslashes") << "..\\nodes.dmp" << false << false;
    QTest::newRow("absolute") << "/etc/passwd" << false << false;
    QTest::newRow("drive") << "C:/x.dmp" << false << false;
    QTest::newRow("only dots") << ".." << false << false;
    QTest::newRow("the folder itself") << "." << false << false;
    QTest::newRow("empty") << "" << false << false;
    QTest::newRow("link") << "nodes.dmp" << true << false;
}

void TestTaxonomyDatabase::safeEntryNames()
{
    QFETCH(QString, name);
    QFETCH(bool, link);
    QFETCH(bool, safe);
    QCOMPARE(TaxonomyDatabase::isSafeEntry(name, link), safe);
}

void TestTaxonomyDatabase::folderIsRemovedWithTheDatabase()
{
    const QString zip = path(QStringLiteral("taxdmp.zip"));
    QVERIFY(writeZip(zip, {{QStringLiteral("nodes.dmp"), nodes}, {QStringLiteral("sub/names.dmp"), names}}));
    QString folder;
    {
        TaxonomyDatabase database(zip);
        database.open();
        folder = database.getFolder().absolutePath();
        QVERIFY(QFileInfo(folder).isDir());
        database.open(); // a second unpacking replaces the first folder
        QVERIFY(!QFileInfo::exists(folder));
        folder = database.getFolder().absolutePath();
        QVERIFY(folder.startsWith(top.filePath(QStringLiteral("tmp"))));
    }
    QVERIFY(!QFileInfo::exists(folder));

    {
        QVERIFY(writeZip(zip, {{QStringLiteral("names.dmp"), names}}));
        TaxonomyDatabase database(zip);
        QVERIFY_EXCEPTION_THROWN(database.open(), TaxonomyDatabase::MissingNodesException);
        folder = database.getFolder().absolutePath();
    }
    QVERIFY(!QFileInfo::exists(folder));
}

QTEST_GUILESS_MAIN(TestTaxonomyDatabase)
#include "tst_taxonomydatabase.moc"
