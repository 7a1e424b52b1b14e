#include "ontology/builder.h"
#include "ontology/ontology.h"
#include "tests/support/foldercase.h"
#include "tests/support/sqlfile.h"
#include "tests/support/eventrecorder.h"
#include "tests/support/treeliteral.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QThreadPool>
#include <QtTest>

#include <sys/stat.h>

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

class TestBuilder : public Sorvik::Test::FolderCase
{
    Q_OBJECT
private slots:
    void init()
    {
        start();
        file = path(QStringLiteral("out.ontology"));
    }

    void rowsFollowTheBlockLayout()
    {
        Builder builder(file);
        buildTree(builder, QStringLiteral("r(a(c(f) d) b(e))"));
        builder.build();
        QCOMPARE(nodeRows(file), (QStringList{"r 2 {}", "a 2 {}", "b 1 {}", "c 1 {}", "d 0 {}", "f 0 {}", "e 0 {}"}));
        const Zem::Ontology::Ontology ontology(file);
        QCOMPARE(ontology.getNodeNumber(), 7);
        QVERIFY(!ontology.isCounted());
    }

    void counting_data()
    {
        // The tree, and after " + " links added to it as parent>child.
        QTest::addColumn<QString>("tree");
        QTest::addColumn<bool>("trim");
        QTest::addColumn<QStringList>("totals");
        QTest::newRow("sums towards the root") << "r(a:3(c:2) b:1)" << false << QStringList{"r=6", "a=5", "b=1", "c=2"};
        QTest::newRow("trim keeps the empty root") << "r(a b)" << true << QStringList{"r=0"};
        QTest::newRow("negative subtree is trimmed") << "r(a:-3 b:5)" << true << QStringList{"r=2", "b=5"};
        QTest::newRow("unreadable count is zero") << "r(a:abc b:1)" << true << QStringList{"r=1", "b=1"};
        QTest::newRow("trim drops empty subtrees, keeps order") << "r(a(x y) b:1 c d:2 e)" << true << QStringList{"r=3", "b=1", "d=2"};
        QTest::newRow("large counts do not overflow")
            << "r(a:2000000000 b:2000000000)" << false << QStringList{"r=4000000000", "a=2000000000", "b=2000000000"};
        QTest::newRow("sums past 64 bits stay at the largest")
            << "r(a:9000000000000000000 b:9000000000000000000)" << false
            << QStringList{"r=9223372036854775807", "a=9000000000000000000", "b=9000000000000000000"};
        QTest::newRow("node under two parents is counted under both")
            << "r(a(s:2(t:1)) b) + b>s a>s" << false << QStringList{"r=6", "a=3", "b=3", "s=3", "t=1", "s=3", "t=1"};
        // A cycle away from the root is never reached.
        QTest::newRow("unreachable cycle") << "r(a:1) + x>y y>x" << true << QStringList{"r=1", "a=1"};
    }

    void counting()
    {
        QFETCH(QString, tree);
        QFETCH(bool, trim);
        QFETCH(QStringList, totals);
        Builder builder(file);
        buildTree(builder, tree.section(QStringLiteral(" + "), 0, 0));
        for (const QString& link : tree.section(QStringLiteral(" + "), 1).split(QLatin1Char(' '), Qt::SkipEmptyParts))
            builder.addChild(link.section(QLatin1Char('>'), 0, 0), link.section(QLatin1Char('>'), 1));
        builder.count(trim);
        builder.build();
        QCOMPARE(writtenTotals(file), totals);
        QVERIFY(Zem::Ontology::Ontology(file).isCounted());
    }

    void progressIsAnnouncedAndThrottled()
    {
        Builder builder(file);
        // 5000 nodes counting 2 each: the building total is the root's accumulated count.
        builder.addRoot(QStringLiteral("0"));
        builder.addData(QStringLiteral("0"), QStringLiteral("count"), QStringLiteral("2"));
        for (int i = 1; i < 5000; ++i) {
            builder.addChild(QString::number(i / 3), QString::number(i));
            builder.addData(QString::number(i), QStringLiteral("count"), QStringLiteral("2"));
        }
        QSignalSpy countingStart(&builder, &Builder::signalCountingStart);
        QSignalSpy buildingStart(&builder, &Builder::signalBuildingStart);
        QSignalSpy counted(&builder, &Builder::signalNodesCounted);
        QSignalSpy inserted(&builder, &Builder::signalNodesInserted);
        builder.count(false);
        builder.build();
        QCOMPARE(countingStart.value(0).value(0).toInt(), 5000);
        QCOMPARE(buildingStart.value(0).value(0).toInt(), 10000);
        QVERIFY2(counted.count() >= 190 && counted.count() <= 201, qPrintable(QString::number(counted.count())));
        // Inserting reports nodes against that total: half as many signals, ending at 5000.
        QVERIFY2(inserted.count() >= 95 && inserted.count() <= 101, qPrintable(QString::number(inserted.count())));
        QCOMPARE(inserted.last().value(0).toInt(), 5000);
    }

    void existingFileIsReplacedWhole()
    {
        writeTree(file, QStringLiteral("r(a b c d)"));
        Builder builder(file);
        builder.setWriterCommitSize(2);
        buildTree(builder, QStringLiteral("x(y(z))"));
        builder.build();
        QCOMPARE(nodeRows(file), (QStringList{"x 1 {}", "y 1 {}", "z 0 {}"}));
        // No temporary files are left beside it.
        QCOMPARE(QDir(dir->path()).entryList(QDir::Files | QDir::Hidden), QStringList{"out.ontology"});
        // Missing folders are made.
        writeTree(path(QStringLiteral("a/b/chart.ontology")), QStringLiteral("r(x:1)"));
        QCOMPARE(Zem::Ontology::Ontology(path(QStringLiteral("a/b/chart.ontology"))).getNodeNumber(), 2);
    }

    void failuresWriteNothing_data()
    {
        QTest::addColumn<QString>("tree");
        QTest::addColumn<QString>("parent");
        QTest::addColumn<QString>("child");
        QTest::newRow("no root") << "" << "" << "";
        QTest::newRow("cycle back to the root") << "r(a(b))" << "b" << "r";
        QTest::newRow("cycle under a shared node") << "r(a(s(t)) b)" << "t" << "s";
    }

    void failuresWriteNothing()
    {
        QFETCH(QString, tree);
        QFETCH(QString, parent);
        QFETCH(QString, child);
        // An earlier file survives a failed build untouched.
        writeTree(file, QStringLiteral("old(a:1 b:2)"));
        for (bool counting : {true, false}) {
            Builder builder(file);
            if (tree.isEmpty())
                builder.addData(QStringLiteral("a"), QStringLiteral("count"), QStringLiteral("1"));
            else
                buildTree(builder, tree);
            if (!parent.isEmpty())
                builder.addChild(parent, child);
            const auto run = [&] { counting ? builder.count(tree.isEmpty()) : builder.build(); };
            if (tree.isEmpty())
                QVERIFY_EXCEPTION_THROWN(run(), Builder::NoRootException);
            else
                QVERIFY_EXCEPTION_THROWN(run(), Builder::CycleException);
        }
        QCOMPARE(writtenTotals(file), (QStringList{"old=3", "a=1", "b=2"}));
        QCOMPARE(QDir(dir->path()).entryList(QDir::Files | QDir::Hidden), QStringList{"out.ontology"});
    }

    void unwritableTargetThrowsOpenDatabase()
    {
        QFile blocker(path(QStringLiteral("blocker")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        Builder builder(path(QStringLiteral("blocker/chart.ontology")));
        buildTree(builder, QStringLiteral("r"));
        QVERIFY_EXCEPTION_THROWN(builder.build(), Builder::OpenDatabaseException);
    }

    void deepPathCountsWritesAndReads()
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

    void cancelCheckStopsCountingAndWriting()
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

    // A cancelled builder frees its tree on a pool thread; every node must still go, whether
    // the cancellation came while counting, while writing or never.
    void everyNodeIsFreed_data()
    {
        QTest::addColumn<int>("cancelIn");
        QTest::newRow("finished") << 0;
        QTest::newRow("cancelled while counting") << 1;
        QTest::newRow("cancelled while writing") << 2;
        QTest::newRow("cancelled at once, nothing linked") << 3;
    }

    void everyNodeIsFreed()
    {
        QFETCH(int, cancelIn);
        // Every node holds the same value text: it is alone again once the last node has gone.
        QString shared = QStringLiteral("shared value");
        shared.detach();
        {
            Builder builder(file);
            bool cancel = false;
            builder.setCancelCheck([&cancel] { return cancel; });
            if (cancelIn == 3) {
                builder.addData(QStringLiteral("lone"), QStringLiteral("name"), shared);
                cancel = true;
                QVERIFY_EXCEPTION_THROWN(builder.checkCancelled(0), Builder::CancelledException);
            } else {
                builder.addRoot(QStringLiteral("0"));
                for (int i = 1; i < 20000; ++i)
                    builder.addChild(QString::number(i / 2), QString::number(i));
                for (int i = 0; i < 20000; ++i)
                    builder.addData(QString::number(i), QStringLiteral("name"), shared);
                QVERIFY(!shared.isDetached());
                cancel = cancelIn == 1;
                if (cancel)
                    QVERIFY_EXCEPTION_THROWN(builder.count(false), Builder::CancelledException);
                else
                    builder.count(false);
                cancel = cancel || cancelIn == 2;
                if (cancel)
                    QVERIFY_EXCEPTION_THROWN(builder.build(), Builder::CancelledException);
                else
                    builder.build();
            }
        }
        QThreadPool::globalInstance()->waitForDone();
        QVERIFY(shared.isDetached());
        // A cancelled build leaves no file behind; a finished one is complete.
        QCOMPARE(QFile::exists(file), cancelIn == 0);
    }

    void killDuringWritingNeverLeavesAHalfFile_data()
    {
        QTest::addColumn<bool>("previous");
        QTest::newRow("previous file survives") << true;
        QTest::newRow("no file at all") << false;
    }

    void killDuringWritingNeverLeavesAHalfFile()
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
        if (previous)
            QCOMPARE(writtenTotals(file), (QStringList{"old=3", "a=1", "b=2"}));
        else
            QVERIFY(!QFile::exists(file));

        // The killed run's part goes the next time the chart is written, which is then the only
        // file there, with the permissions the umask gives a new file, or the old file's.
        QCOMPARE(folder.entryList({QStringLiteral("*.part")}, QDir::Files | QDir::Hidden).size(), 1);
        const QFile::Permissions old = QFile::permissions(file);
        const mode_t before = ::umask(027);
        writeTree(file, QStringLiteral("new(c:4)"));
        ::umask(before);
        QCOMPARE(folder.entryList(QDir::Files | QDir::Hidden), QStringList{QFileInfo(file).fileName()});
        const QFile::Permissions groupMayRead =
            QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser | QFile::ReadGroup;
        QCOMPARE(QFile::permissions(file), previous ? old : groupMayRead);
    }

private:
    QString file;
};

QTEST_GUILESS_MAIN(TestBuilder)
#include "tst_builder.moc"
