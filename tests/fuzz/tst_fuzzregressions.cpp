#include "fuzz/targets.h"
#include "tests/support/fixtures.h"

#include <QDir>
#include <QtTest>

using namespace Sorvik::Test;

// Every input that once crashed, hung or exhausted memory in a fuzzing harness, kept under
// tests/data/fuzz/TARGET/, goes through the same code again; under the sanitizers any fault
// fails the test. An empty input runs through every target too.
class TestFuzzRegressions : public QObject
{
    Q_OBJECT
private slots:
    void replay_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("file");
        const QStringList targets = Sorvik::Fuzz::getTargetNames();
        for (const QString& target : targets) {
            QTest::newRow(qPrintable(target + QStringLiteral("/empty"))) << target << QString();
            const QDir folder(fixturePath(QStringLiteral("fuzz/") + target));
            for (const QString& name : folder.entryList(QDir::Files, QDir::Name))
                QTest::newRow(qPrintable(target + QLatin1Char('/') + name)) << target << folder.filePath(name);
        }
        // A folder with no target would never be replayed.
        for (const QString& folder : QDir(fixturePath(QStringLiteral("fuzz"))).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            QVERIFY2(targets.contains(folder), qPrintable(folder));
    }

    void replay()
    {
        QFETCH(QString, target);
        QFETCH(QString, file);
        QVERIFY(Sorvik::Fuzz::run(target, file.isEmpty() ? QByteArray() : fileContents(file)));
    }
};

QTEST_MAIN(TestFuzzRegressions)
#include "tst_fuzzregressions.moc"
