#include "tests/support/clirunner.h"
#include "tests/support/fixtures.h"
#include "tests/support/taxdump.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace Sorvik::Test;

// sorvik-cli build on the tables that hold many samples: --all-columns makes one sample per
// column, named by the table, each with the total its column gives on its own.
class TestCliSampleTables : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(dir.isValid());
        const QString archive = dir.filePath(QStringLiteral("small.zip"));
        QVERIFY(writeSmallTaxdump(archive));
        const CliResult imported = runCli({"import-taxonomy", archive, "-o", taxonomy(), "--quiet"});
        QVERIFY2(imported.exitCode == 0, qPrintable(imported.err));
    }

    void allColumnsAreTheColumnsBuiltAlone_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QStringList>("samples");
        QTest::newRow("combined reports") << "kreport-combined" << "combined.kreport" << QStringList{"gut_A\t100", "gut_B\t200"};
        QTest::newRow("merged metaphlan")
            << "metaphlan-merged" << "merged-metaphlan3.txt"
            << QStringList{"stool_1\t1000000", "stool_2\t1000000", "stool_3\t1000000"};
        QTest::newRow("told from the file") << "auto" << "merged-metaphlan4.txt"
                                            << QStringList{"A_profile\t1000000", "B_profile\t1000000"};
        // Bacteroides fragilis is not in the small taxonomy: its reads count as unknown, not lost.
        QTest::newRow("combined bracken") << "bracken-combined" << "combined-bracken.tsv"
                                          << QStringList{"gut_A.bracken\t250", "gut_B.bracken\t90"};
    }

    void allColumnsAreTheColumnsBuiltAlone()
    {
        QFETCH(QString, format);
        QFETCH(QString, file);
        QFETCH(QStringList, samples);
        const QString input = fixturePath(QStringLiteral("tables/") + file);
        const QString study = dir.filePath(QStringLiteral("study.piechart"));
        QFile::remove(study);
        const CliResult built = build({format, input, "--all-columns", "-o", study});
        QVERIFY2(built.exitCode == 0, qPrintable(built.err));
        QCOMPARE(sampleLines(study), samples);
        for (int column = 0; column < samples.size(); ++column) {
            const QString alone = dir.filePath(QStringLiteral("alone%1.piechart").arg(column));
            const CliResult one = build({format, input, "--column", QString::number(column), "-o", alone});
            QVERIFY2(one.exitCode == 0, qPrintable(one.err));
            QCOMPARE(QStringLiteral("total: ") + samples.at(column).section(QLatin1Char('\t'), 1), infoLine(alone, "total: "));
        }
    }

    // A bad value in one sample's column is said, and --strict fails the build.
    void aBadValueIsSaid()
    {
        const QString input = dir.filePath(QStringLiteral("bad.tsv"));
        QFile file(input);
        QVERIFY(file.open(QIODevice::WriteOnly));
        // Among many good rows, as a real table has them.
        QByteArray table("clade_name\ts1\ts2\nk__B\tx\t0\n");
        for (int i = 0; i < 20; ++i)
            table += "k__A" + QByteArray::number(i) + "\t5\t5\n";
        file.write(table);
        file.close();
        const QString study = dir.filePath(QStringLiteral("bad.piechart"));
        const CliResult built = build({"metaphlan-merged", input, "--all-columns", "-o", study});
        QCOMPARE(built.exitCode, 0);
        QVERIFY2(built.err.contains(QLatin1String("line 2: 'x' is not an abundance")), qPrintable(built.err));
        const CliResult strict = build({"metaphlan-merged", input, "--all-columns", "--strict", "-o", study});
        QCOMPARE(strict.exitCode, 1);
    }

private:
    QString taxonomy() const { return dir.filePath(QStringLiteral("ncbi.ontology")); }

    // Bracken's reads are placed in the taxonomy; the other tables make their own tree.
    CliResult build(const QStringList& arguments) const
    {
        const QStringList placed = arguments.first() == QLatin1String("bracken-combined")
                                       ? QStringList{"--taxonomy", taxonomy()}
                                       : QStringList();
        return runCli(QStringList{"build"} + arguments + placed + QStringList{"--quiet"});
    }

    // The "sample:" lines of info, without their label.
    static QStringList sampleLines(const QString& chart)
    {
        QStringList samples;
        for (const QString& line : runCli({"info", chart}).out.split(QLatin1Char('\n'))) {
            if (line.startsWith(QLatin1String("sample: ")))
                samples << line.mid(8);
        }
        return samples;
    }

    static QString infoLine(const QString& chart, const char* label)
    {
        for (const QString& line : runCli({"info", chart}).out.split(QLatin1Char('\n'))) {
            if (line.startsWith(QLatin1String(label)))
                return line;
        }
        return QString();
    }

    QTemporaryDir dir;
};

QTEST_GUILESS_MAIN(TestCliSampleTables)
#include "tst_clisampletables.moc"
