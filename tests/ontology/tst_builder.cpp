#include "ontology/builder.h"
#include "ontology/ontology.h"
#include "sqlfile.h"
#include "tests/support/eventrecorder.h"
#include "tests/support/treeliteral.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using Zem::Ontology::Builder;
using namespace Sorvik::Test;

namespace {

// "id count data" for every row of the nodes table, in row order.
QStringList nodeRows(const QString& file)
{
    QStringList rows;
    for (const QVariantList& row : querySql(file, QStringLiteral("SELECT id, count, data FROM nodes")))
        rows << QStringLiteral("%1 %2 %3").arg(row.at(0).toString(), row.at(1).toString(), row.at(2).toString());
    return rows;
}

QString infoValue(const QString& file, const QString& key)
{
    const auto rows = querySql(file, QStringLiteral("SELECT value FROM info WHERE key = '%1'").arg(key));
    return rows.isEmpty() ? QString() : rows.first().first().toString();
}

// "id=accumCount" for every node written, in row order.
QStringList writtenTotals(const QString& file)
{
    QStringList totals;
    for (const QVariantList& row : querySql(file, QStringLiteral("SELECT id, data FROM nodes"))) {
        const QJsonObject data = QJsonDocument::fromJson(row.at(1).toString().toUtf8()).object();
        totals << row.at(0).toString() + QLatin1Char('=') + data.value(QStringLiteral("accumCount")).toString();
    }
    return totals;
}

} // namespace

class TestBuilder : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void rowsFollowTheBlockLayout();
    void rootAloneIsOneRow();
    void nodeThatIsItsOwnParentBecomesRoot();
    void sameChildTwiceIsLinkedOnce();
    void manyNodesAreFoundAgain();
    void childOfTwoParentsIsWrittenAndCountedUnderBoth();
    void counting_data();
    void counting();
    void trimmedLeafGetsZeroCountsAndLeavesItsParent();
    void buildingStartAnnouncesAccumulatedCountAfterCounting();
    void progressSignalsAreThrottled();
    void existingFileIsReplaced();
    void smallCommitSizeWritesTheSameFile();
    void noRootThrowsAndWritesNothing();
    void cycleThrows_data();
    void cycleThrows();
    void cycleAwayFromTheRootIsIgnored();
    void deepPathCountsWritesAndReads();
    void missingFoldersAreCreated();
    void unwritableTargetThrowsOpenDatabase();
    void failedBuildKeepsThePreviousFile();
    void cancelCheckStopsCountingAndWriting();
    void killDuringWritingNeverLeavesAHalfFile_data();
    void killDuringWritingNeverLeavesAHalfFile();

private:
    std::unique_ptr<QTemporaryDir> dir;
    QString file;
};

void TestBuilder::init()
{
    dir = std::make_unique<QTemporaryDir>();
    QVERIFY(dir->isValid());
    file = dir->filePath(QStringLiteral("out.ontology"));
}

void TestBuilder::rowsFollowTheBlockLayout()
{
    Builder builder(file);
    buildTree(builder, QStringLiteral("r(a(c(f) d) b(e))"));
    builder.build();
    QCOMPARE(nodeRows(file), (QStringList{"r 2 {}", "a 2 {}", "b 1 {}", "c 1 {}", "d 0 {}", "f 0 {}", "e 0 {}"}));
    QCOMPARE(infoValue(file, QStringLiteral("nodes")), QStringLiteral("7"));
    const Zem::Ontology::Ontology ontology(file);
    QCOMPARE(ontology.getNodeNumber(), 7);
    QVERIFY(!ontology.isCounted());
}

void TestBuilder::rootAloneIsOneRow()
{
    Builder builder(file);
    builder.addRoot(QStringLiteral("1"));
    builder.count(true);
    builder.build();
    QCOMPARE(nodeRows(file), QStringList{R"(1 0 {"accumCount":"0","count":"0"})"});
    QCOMPARE(infoValue(file, QStringLiteral("nodes")), QStringLiteral("1"));
    QVERIFY(Zem::Ontology::Ontology(file).isCounted());
}

void TestBuilder::nodeThatIsItsOwnParentBecomesRoot()
{
    Builder builder(file);
    builder.addChild(QStringLiteral("1"), QStringLiteral("1"));
    builder.addChild(QStringLiteral("1"), QStringLiteral("2"));
    QCOMPARE(builder.getRoot(), builder.getNode(QStringLiteral("1")));
    QCOMPARE(builder.getRoot()->children.size(), size_t(1));
    builder.build();
    QCOMPARE(nodeRows(file), (QStringList{"1 1 {}", "2 0 {}"}));
}

void TestBuilder::sameChildTwiceIsLinkedOnce()
{
    Builder builder(file);
    builder.addRoot(QStringLiteral("r"));
    for (int i = 0; i < 3; ++i)
        builder.addChild(QStringLiteral("r"), QStringLiteral("a"));
    QCOMPARE(builder.getRoot()->children.size(), size_t(1));
}

void TestBuilder::manyNodesAreFoundAgain()
{
    // Enough nodes for the table to grow many times over.
    Builder builder(file);
    QVector<Builder::Node*> made;
    for (int i = 0; i < 50000; ++i)
        made << builder.getNode(QStringLiteral("n%1").arg(i));
    QCOMPARE(builder.getNodeNumber(), 50000);
    for (int i = 0; i < 50000; i += 7) {
        QCOMPARE(builder.findNode(QStringLiteral("n%1").arg(i)), made.at(i));
        QCOMPARE(builder.getNode(QStringLiteral("n%1").arg(i)), made.at(i));
        QCOMPARE(made.at(i)->id, QStringLiteral("n%1").arg(i));
        QCOMPARE(builder.findNode(QStringLiteral("m%1").arg(i)), nullptr);
    }
    QCOMPARE(builder.getNodeNumber(), 50000);
}

void TestBuilder::childOfTwoParentsIsWrittenAndCountedUnderBoth()
{
    Builder builder(file);
    buildTree(builder, QStringLiteral("r(a(s:2(t:1)) b)"));
    builder.addChild(QStringLiteral("b"), QStringLiteral("s"));
    builder.addChild(QStringLiteral("a"), QStringLiteral("s")); // already there
    builder.count(false);
    builder.build();
    QCOMPARE(writtenTotals(file), (QStringList{"r=6", "a=3", "b=3", "s=3", "t=1", "s=3", "t=1"}));
}

void TestBuilder::counting_data()
{
    QTest::addColumn<QString>("tree");
    QTest::addColumn<bool>("trim");
    QTest::addColumn<QStringList>("totals");
    QTest::newRow("sums towards the root") << "r(a:3(c:2) b:1)" << false << QStringList{"r=6", "a=5", "b=1", "c=2"};
    QTest::newRow("untrimmed keeps empty subtrees") << "r(a(x y) b:4)" << false << QStringList{"r=4", "a=0", "b=4", "x=0", "y=0"};
    QTest::newRow("trim drops empty subtrees") << "r(a(x y) b:4)" << true << QStringList{"r=4", "b=4"};
    QTest::newRow("trim keeps the empty root") << "r(a b)" << true << QStringList{"r=0"};
    QTest::newRow("trim keeps counted inner node") << "r(a:2(x))" << true << QStringList{"r=2", "a=2"};
    QTest::newRow("negative subtree is trimmed") << "r(a:-3 b:5)" << true << QStringList{"r=2", "b=5"};
    QTest::newRow("unreadable count is zero") << "r(a:abc b:1)" << true << QStringList{"r=1", "b=1"};
    QTest::newRow("trim keeps order of survivors") << "r(a b:1 c d:2 e)" << true << QStringList{"r=3", "b=1", "d=2"};
    QTest::newRow("large counts do not overflow") << "r(a:2000000000 b:2000000000)" << false << QStringList{"r=4000000000", "a=2000000000", "b=2000000000"};
}

void TestBuilder::counting()
{
    QFETCH(QString, tree);
    QFETCH(bool, trim);
    QFETCH(QStringList, totals);
    Builder builder(file);
    buildTree(builder, tree);
    builder.count(trim);
    builder.build();
    QCOMPARE(writtenTotals(file), totals);
}

void TestBuilder::trimmedLeafGetsZeroCountsAndLeavesItsParent()
{
    Builder builder(file);
    buildTree(builder, QStringLiteral("r(a(x y:1))"));
    builder.count(true);
    Builder::Node* x = builder.getNode(QStringLiteral("x"));
    QCOMPARE(x->data.value(QStringLiteral("count")).toString(), QStringLiteral("0"));
    QCOMPARE(x->data.value(QStringLiteral("accumCount")).toString(), QStringLiteral("0"));
    builder.build();
    QCOMPARE(nodeRows(file), (QStringList{R"(r 1 {"accumCount":"1","count":"0"})",
                                          R"(a 1 {"accumCount":"1","count":"0"})",
                                          R"(y 0 {"accumCount":"1","count":"1"})"}));
    // a trimmed node can be linked again
    builder.addChild(QStringLiteral("a"), QStringLiteral("x"));
    QCOMPARE(builder.getNode(QStringLiteral("a"))->children.size(), size_t(2));
}

void TestBuilder::buildingStartAnnouncesAccumulatedCountAfterCounting()
{
    Builder counted(file);
    buildTree(counted, QStringLiteral("r(a:30 b:12)"));
    QSignalSpy countingStart(&counted, &Builder::signalCountingStart);
    QSignalSpy buildingStart(&counted, &Builder::signalBuildingStart);
    counted.count(false);
    counted.build();
    QCOMPARE(countingStart.value(0).value(0).toInt(), 3);
    QCOMPARE(buildingStart.value(0).value(0).toInt(), 42);

    Builder plain(file);
    buildTree(plain, QStringLiteral("r(a:30 b:12)"));
    QSignalSpy plainStart(&plain, &Builder::signalBuildingStart);
    plain.build();
    QCOMPARE(plainStart.value(0).value(0).toInt(), 3);
}

void TestBuilder::progressSignalsAreThrottled()
{
    Builder builder(file);
    // every node counts 1, so the building total (the root's accumulated count) is 5000 too
    builder.addRoot(QStringLiteral("0"));
    builder.addData(QStringLiteral("0"), QStringLiteral("count"), QStringLiteral("1"));
    for (int i = 1; i < 5000; ++i) {
        builder.addChild(QString::number(i / 3), QString::number(i));
        builder.addData(QString::number(i), QStringLiteral("count"), QStringLiteral("1"));
    }
    QSignalSpy counted(&builder, &Builder::signalNodesCounted);
    QSignalSpy inserted(&builder, &Builder::signalNodesInserted);
    builder.count(false);
    builder.build();
    QVERIFY2(counted.count() >= 190 && counted.count() <= 201, qPrintable(QString::number(counted.count())));
    QVERIFY2(inserted.count() >= 190 && inserted.count() <= 201, qPrintable(QString::number(inserted.count())));
    QCOMPARE(inserted.last().value(0).toInt(), 5000);
}

void TestBuilder::existingFileIsReplaced()
{
    writeTree(file, QStringLiteral("r(a b c d)"));
    writeTree(file, QStringLiteral("x(y)"));
    QCOMPARE(querySql(file, QStringLiteral("SELECT id FROM nodes")).size(), 2);
    QCOMPARE(infoValue(file, QStringLiteral("nodes")), QStringLiteral("2"));
    // no temporary files are left beside it
    QCOMPARE(QDir(dir->path()).entryList(QDir::Files | QDir::Hidden), QStringList{"out.ontology"});
}

void TestBuilder::smallCommitSizeWritesTheSameFile()
{
    const QString other = dir->filePath(QStringLiteral("other.ontology"));
    const QString tree = QStringLiteral("r(a(b c d) e(f g(h i j)) k)");
    writeTree(file, tree);
    Builder builder(other);
    builder.setWriterCommitSize(2);
    builder.setWriterCommitSize(0); // ignored
    buildTree(builder, tree);
    builder.count(false);
    builder.build();
    QCOMPARE(nodeRows(other), nodeRows(file));
}

void TestBuilder::noRootThrowsAndWritesNothing()
{
    Builder builder(file);
    builder.addData(QStringLiteral("a"), QStringLiteral("count"), QStringLiteral("1"));
    QVERIFY_EXCEPTION_THROWN(builder.count(true), Builder::NoRootException);
    QVERIFY_EXCEPTION_THROWN(builder.build(), Builder::NoRootException);
    QVERIFY(!QFile::exists(file));
    QVERIFY(QDir(dir->path()).isEmpty(QDir::Files | QDir::Hidden));
}

void TestBuilder::cycleThrows_data()
{
    QTest::addColumn<QString>("tree");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("child");
    QTest::newRow("back to the root") << "r(a(b))" << "b" << "r";
    QTest::newRow("inner loop") << "r(a(b(c)))" << "c" << "a";
    QTest::newRow("two-node loop") << "r(a(b))" << "b" << "a";
    QTest::newRow("loop under a shared node") << "r(a(s(t)) b)" << "t" << "s";
}

void TestBuilder::cycleThrows()
{
    QFETCH(QString, tree);
    QFETCH(QString, parent);
    QFETCH(QString, child);
    {
        Builder builder(file);
        buildTree(builder, tree);
        builder.addChild(parent, child);
        QVERIFY_EXCEPTION_THROWN(builder.count(false), Builder::CycleException);
    }
    {
        Builder builder(file);
        buildTree(builder, tree);
        builder.addChild(parent, child);
        QVERIFY_EXCEPTION_THROWN(builder.build(), Builder::CycleException);
    }
    QVERIFY(!QFile::exists(file));
    QVERIFY(QDir(dir->path()).isEmpty(QDir::Files | QDir::Hidden));
}

void TestBuilder::cycleAwayFromTheRootIsIgnored()
{
    Builder builder(file);
    buildTree(builder, QStringLiteral("r(a:1)"));
    builder.addChild(QStringLiteral("x"), QStringLiteral("y"));
    builder.addChild(QStringLiteral("y"), QStringLiteral("x"));
    builder.count(true);
    builder.build();
    QCOMPARE(writtenTotals(file), (QStringList{"r=1", "a=1"}));
}

void TestBuilder::deepPathCountsWritesAndReads()
{
    const int depth = 100000;
    Builder builder(file);
    builder.addRoot(QStringLiteral("n0"));
    for (int i = 1; i < depth; ++i)
        builder.addChild(QStringLiteral("n%1").arg(i - 1), QStringLiteral("n%1").arg(i));
    builder.addData(QStringLiteral("n%1").arg(depth - 1), QStringLiteral("count"), QStringLiteral("7"));
    builder.count(true);
    builder.build();
    QCOMPARE(Zem::Ontology::Ontology(file).getNodeNumber(), depth);

    EventRecorder reader{Zem::Ontology::Ontology(file)};
    reader.read();
    QCOMPARE(reader.events.size(), 2 * depth);
    QCOMPARE(reader.events.at(depth - 1), QStringLiteral("open n%1 (%2,%3)").arg(depth - 1).arg(depth - 1).arg(depth));
    QCOMPARE(reader.events.at(depth), QStringLiteral("close n%1").arg(depth - 1));
    QCOMPARE(reader.events.last(), QStringLiteral("close n0"));
    QCOMPARE(reader.openedData.first().value(QStringLiteral("accumCount")).toString(), QStringLiteral("7"));
}

void TestBuilder::missingFoldersAreCreated()
{
    const QString nested = dir->filePath(QStringLiteral("a/b/c/chart.ontology"));
    writeTree(nested, QStringLiteral("r(x:1)"));
    QCOMPARE(Zem::Ontology::Ontology(nested).getNodeNumber(), 2);
}

void TestBuilder::unwritableTargetThrowsOpenDatabase()
{
    QFile blocker(dir->filePath(QStringLiteral("blocker")));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    Builder builder(dir->filePath(QStringLiteral("blocker/chart.ontology")));
    buildTree(builder, QStringLiteral("r"));
    QVERIFY_EXCEPTION_THROWN(builder.build(), Builder::OpenDatabaseException);
}

void TestBuilder::failedBuildKeepsThePreviousFile()
{
    writeTree(file, QStringLiteral("old(a:1 b:2)"));
    Builder builder(file);
    buildTree(builder, QStringLiteral("r(a(b))"));
    builder.addChild(QStringLiteral("b"), QStringLiteral("a"));
    QVERIFY_EXCEPTION_THROWN(builder.build(), Builder::CycleException);
    QCOMPARE(writtenTotals(file), (QStringList{"old=3", "a=1", "b=2"}));
    QCOMPARE(QDir(dir->path()).entryList(QDir::Files | QDir::Hidden), QStringList{"out.ontology"});
}

void TestBuilder::cancelCheckStopsCountingAndWriting()
{
    Builder builder(file);
    builder.addRoot(QStringLiteral("0"));
    for (int i = 1; i < 20000; ++i)
        builder.addChild(QString::number(i / 2), QString::number(i));
    int asked = 0;
    bool cancel = false;
    builder.setCancelCheck([&] {
        ++asked;
        return cancel;
    });
    builder.count(false);
    QVERIFY(asked > 0);
    cancel = true;
    QVERIFY_EXCEPTION_THROWN(builder.count(false), Builder::CancelledException);
    QVERIFY_EXCEPTION_THROWN(builder.build(), Builder::CancelledException);
    QVERIFY(QDir(dir->path()).isEmpty(QDir::Files | QDir::Hidden));
}

void TestBuilder::killDuringWritingNeverLeavesAHalfFile_data()
{
    QTest::addColumn<bool>("previous");
    QTest::newRow("previous file survives") << true;
    QTest::newRow("no file at all") << false;
}

void TestBuilder::killDuringWritingNeverLeavesAHalfFile()
{
    QFETCH(bool, previous);
    if (previous)
        writeTree(file, QStringLiteral("old(a:1 b:2)"));

    QProcess writer;
    writer.start(QStringLiteral(WRITE_HELPER), {file, QStringLiteral("400000")});
    QVERIFY(writer.waitForStarted());
    // Wait until the temporary file is being filled, then kill without warning.
    const QDir folder(dir->path());
    QElapsedTimer waited;
    waited.start();
    bool writing = false;
    while (!writing && waited.elapsed() < 120000 && writer.state() == QProcess::Running) {
        for (const QFileInfo& info : folder.entryInfoList({QStringLiteral("*.part")}, QDir::Files | QDir::Hidden))
            writing = writing || info.size() > 0;
        if (!writing)
            QTest::qWait(2);
    }
    QVERIFY2(writing, "the writer never started writing");
    writer.kill();
    QVERIFY(writer.waitForFinished());

    if (previous) {
        QCOMPARE(writtenTotals(file), (QStringList{"old=3", "a=1", "b=2"}));
    } else {
        QVERIFY(!QFile::exists(file));
    }
}

QTEST_GUILESS_MAIN(TestBuilder)
#include "tst_builder.moc"
