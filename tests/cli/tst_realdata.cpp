#include "clirunner.h"
#include "ontology/ontology.h"
#include "ontology/sourceqiimetext.h"
#include "tests/support/fixtures.h"
#include "tests/support/taxdump.h"

#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using namespace Sorvik::Test;

namespace {

// The total a chart counts, as sorvik-cli info tells it; -1 when it cannot.
qint64 chartTotal(const QString& file)
{
    const CliResult info = runCli({QStringLiteral("info"), file});
    bool ok = false;
    const qint64 total = info.out.section(QStringLiteral("total: "), 1).trimmed().toLongLong(&ok);
    return info.exitCode == 0 && ok ? total : -1;
}

// What a file counts in all: for Krona the counts that lines start with; for QIIME the first
// value column, after the header, at ten thousand per unit.
qint64 expectedTotal(const QString& format, const QString& file)
{
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly | QIODevice::Text))
        return 0;
    const bool krona = format == QLatin1String("krona");
    qint64 total = 0;
    bool header = krona;
    for (const QString& line : QString::fromUtf8(in.readAll()).split(QLatin1Char('\n'))) {
        if (!header) {
            header = !(line.startsWith(QLatin1Char('#')) && !line.contains(QLatin1Char('\t')));
            continue;
        }
        bool ok = false;
        const double value = krona ? line.section(QLatin1Char('\t'), 0, 0).toLongLong(&ok)
                                   : line.section(QLatin1Char('\t'), 1, 1).toDouble(&ok) * 10000.0;
        if (ok && std::isfinite(value) && value > 0)
            total += static_cast<qint64>(value);
    }
    return total;
}

QStringList filesIn(const QString& folder)
{
    QStringList files;
    QDirIterator it(realDataPath(folder), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        files << it.next();
    files.sort();
    return files;
}

} // namespace

// Every public sample file in the shared data folder through sorvik-cli: each is charted with the
// counts it holds, or refused with a message; none crashes or hangs.
class TestRealData : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        if (realDataPath().isEmpty())
            QSKIP("no real data beside this checkout");
        QVERIFY(dir.isValid());
    }

    void pathFiles_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("file");
        for (const QString& format : {QStringLiteral("krona"), QStringLiteral("qiime")}) {
            for (const QString& file : filesIn(format))
                QTest::newRow(qPrintable(QFileInfo(file).fileName())) << format << file;
        }
    }

    void pathFiles()
    {
        QFETCH(QString, format);
        QFETCH(QString, file);
        const QString out = dir.filePath(QFileInfo(file).fileName() + QStringLiteral(".piechart"));
        const CliResult result = runCli({"build", format, file, "-o", out});
        const qint64 expected = expectedTotal(format, file);
        if (format == QLatin1String("qiime") && Zem::Ontology::SourceQiimeText::readColumnNames(file).isEmpty()) {
            QCOMPARE(result.exitCode, 1);
            QVERIFY(result.err.contains(QLatin1String("no QIIME header")));
        } else if (expected > 0) {
            QVERIFY2(result.exitCode == 0, qPrintable(result.err));
            QCOMPARE(chartTotal(out), expected);
        } else {
            QCOMPARE(result.exitCode, 1);
            QVERIFY2(result.err.contains(QLatin1String("no counted taxa")), qPrintable(result.err));
        }
    }

    void taxonomyDumps()
    {
        QStringList folders;
        for (const QString& file : filesIn(QString())) {
            if (QFileInfo(file).fileName() == QLatin1String("nodes.dmp"))
                folders << QFileInfo(file).absolutePath();
        }
        QVERIFY(!folders.isEmpty());
        for (const QString& folder : folders) {
            const QString name = QFileInfo(folder).fileName();
            QList<ZipEntry> entries;
            for (const QString& dump : QDir(folder).entryList({QStringLiteral("*.dmp")}, QDir::Files)) {
                QFile in(QDir(folder).filePath(dump));
                QVERIFY(in.open(QIODevice::ReadOnly));
                entries << ZipEntry{dump, in.readAll()};
            }
            const QString archive = dir.filePath(name + QStringLiteral(".zip"));
            QVERIFY(writeZip(archive, entries));
            const QString out = dir.filePath(name + QStringLiteral(".ontology"));
            const CliResult result = runCli({"import-taxonomy", archive, "-o", out});
            const bool refused = result.exitCode == 1 && result.err.contains(QLatin1String("no taxa below the root"));
            QVERIFY2(result.exitCode == 0 || refused, qPrintable(name + QLatin1Char(' ') + result.err));
            if (result.exitCode != 0)
                continue;
            const Zem::Ontology::Ontology ontology(out);
            QVERIFY(!ontology.isCounted());
            QVERIFY(ontology.getNodeNumber() > 1);
            taxonomies << out;
        }
    }

    void taxonIdFiles()
    {
        if (taxonomies.isEmpty())
            QSKIP("no taxonomy was imported");
        const QStringList files =
            filesIn(QStringLiteral("taxids")) + filesIn(QStringLiteral("other")).filter(QStringLiteral(".txt"));
        QVERIFY(!files.isEmpty());
        auto check = [&](const QString& format, const QString& file, const QString& taxonomy) {
            const QString out = dir.filePath(QStringLiteral("ids.piechart"));
            const CliResult result = runCli({"build", format, file, "-o", out, "--taxonomy", taxonomy});
            const QString what = QStringLiteral("%1 %2 %3: %4").arg(format, file, taxonomy, result.err);
            if (result.exitCode == 0)
                QVERIFY2(chartTotal(out) > 0, qPrintable(what));
            else
                QVERIFY2(result.exitCode == 1
                             && (result.err.contains(QLatin1String("no counted taxa"))
                                 || result.err.contains(QLatin1String("does not look like"))),
                         qPrintable(what));
            // The taxonomy is used, never changed.
            QVERIFY(!Zem::Ontology::Ontology(taxonomy).isCounted());
        };
        // Every file in every id format against one taxonomy, one id list against each of them.
        const QString viral = taxonomies.filter(QStringLiteral("kraken2_viral")).value(0, taxonomies.first());
        for (const QString& file : files) {
            for (const QString& format : {QStringLiteral("taxids"), QStringLiteral("taxid-counts"), QStringLiteral("mgtaxa")})
                check(format, file, viral);
        }
        for (const QString& taxonomy : qAsConst(taxonomies))
            check(QStringLiteral("taxids"), files.filter(QStringLiteral("taxid_list")).value(0, files.first()), taxonomy);
    }

private:
    QTemporaryDir dir;
    QStringList taxonomies;
};

QTEST_GUILESS_MAIN(TestRealData)
#include "tst_realdata.moc"
