#include "nu/partfile.h"
#include "tests/support/fixtures.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using nu::PartFile;

namespace {

mode_t permissionsOf(const QString& fileName)
{
    struct stat status;
    return ::stat(QFile::encodeName(fileName).constData(), &status) == 0 ? status.st_mode & 0777 : 0;
}

QStringList hiddenFiles(const QString& folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

// Sets the process's umask for the life of the object.
class Umask
{
public:
    explicit Umask(mode_t mask)
        : previous(::umask(mask))
    {
    }
    ~Umask() { ::umask(previous); }

private:
    mode_t previous;
};

} // namespace

class TestPartFile : public QObject
{
    Q_OBJECT
private slots:
    void permissionsFollowTheUmask_data()
    {
        QTest::addColumn<int>("mask");
        QTest::addColumn<int>("existing");
        QTest::addColumn<int>("expected");
        QTest::newRow("usual umask") << 022 << 0 << 0644;
        QTest::newRow("group may write") << 002 << 0 << 0664;
        QTest::newRow("private umask") << 077 << 0 << 0600;
        QTest::newRow("a replaced file keeps its own") << 022 << 0640 << 0640;
    }

    void permissionsFollowTheUmask()
    {
        QFETCH(int, mask);
        QFETCH(int, existing);
        QFETCH(int, expected);
        QTemporaryDir dir;
        const QString target = dir.filePath(QStringLiteral("chart.piechart"));
        if (existing) {
            QVERIFY(!Sorvik::Test::writeFile(target, "x").isEmpty());
            QVERIFY(::chmod(QFile::encodeName(target).constData(), mode_t(existing)) == 0);
        }
        const Umask restricted{mode_t(mask)};
        PartFile part(target);
        QVERIFY(part.create());
        QCOMPARE(int(permissionsOf(part.getFileName())), expected);
        QVERIFY(part.commit());
        QCOMPARE(int(permissionsOf(target)), expected);
    }

    // A killed run's parts go when the same target is written again; another target's parts, a
    // part still being written and files that only look alike stay.
    void leftoversOfTheSameTargetGo()
    {
        QTemporaryDir dir;
        const QString target = dir.filePath(QStringLiteral("ncbi.ontology"));
        const QStringList stay{".ncbi.ontology.part", ".ncbi.ontology.AbC12.part", ".other.ontology.AbC123.part",
                               "ncbi.ontology.AbC123.part"};
        for (const QString& name : stay + QStringList{".ncbi.ontology.AbC123.part", ".ncbi.ontology.zzzzzz.part"})
            QVERIFY(!Sorvik::Test::writeFile(dir.filePath(name), "x").isEmpty());

        PartFile running(target);
        QVERIFY(running.create());
        PartFile next(target);
        QVERIFY(next.create());
        QStringList expected = stay + QStringList{QFileInfo(running.getFileName()).fileName(),
                                                  QFileInfo(next.getFileName()).fileName()};
        expected.sort();
        QCOMPARE(hiddenFiles(dir.path()), expected);

        // The run still writing finishes undisturbed.
        QVERIFY(running.commit());
        QVERIFY(QFile::exists(target));
    }

    void uncommittedPartIsRemoved()
    {
        QTemporaryDir dir;
        {
            PartFile part(dir.filePath(QStringLiteral("a.piechart")));
            QVERIFY(part.create());
            QVERIFY(QFile::exists(part.getFileName()));
        }
        QCOMPARE(hiddenFiles(dir.path()), QStringList());
    }

    void targetFolderIsMade()
    {
        QTemporaryDir dir;
        PartFile part(dir.filePath(QStringLiteral("deeper/still/a.piechart")));
        QVERIFY(part.create());
        QVERIFY(part.commit());
        QVERIFY(QFile::exists(dir.filePath(QStringLiteral("deeper/still/a.piechart"))));
    }

    void partFileNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("part");
        QTest::newRow("part of a chart") << ".target.piechart.Ab12Cd.part" << true;
        QTest::newRow("part of a dotted name") << ".a.b.c.ABCDEF.part" << true;
        QTest::newRow("a chart") << "target.piechart" << false;
        QTest::newRow("no leading dot") << "target.piechart.Ab12Cd.part" << false;
        QTest::newRow("five characters") << ".target.piechart.Ab12C.part" << false;
        QTest::newRow("no target name") << "..Ab12Cd.part" << false;
        QTest::newRow("other ending") << ".target.piechart.Ab12Cd.partial" << false;
    }

    void partFileNames()
    {
        QFETCH(QString, name);
        QFETCH(bool, part);
        QCOMPARE(PartFile::isPartFileName(name), part);
    }
};

QTEST_GUILESS_MAIN(TestPartFile)
#include "tst_partfile.moc"
