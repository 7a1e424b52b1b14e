#include "tests/support/clirunner.h"
#include "ontology/ontology.h"
#include "tests/support/fixtures.h"
#include "tests/support/taxdump.h"

#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

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

// Every public sample file in the shared data folder through sorvik-cli: each is charted, or
// refused with one of the program's messages; none crashes or hangs.
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
        build({"build", format, file}, {"no QIIME header", "no counted taxa", "does not look like"});
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
        const QStringList refusals{"no counted taxa", "does not look like"};
        // Every file in every id format against one taxonomy, one id list against each of them.
        const QString viral = taxonomies.filter(QStringLiteral("kraken2_viral")).value(0, taxonomies.first());
        for (const QString& file : files) {
            for (const QString& format : {QStringLiteral("taxids"), QStringLiteral("taxid-counts"), QStringLiteral("mgtaxa")})
                build({"build", format, file, "--taxonomy", viral}, refusals);
        }
        const QString ids = files.filter(QStringLiteral("taxid_list")).value(0, files.first());
        for (const QString& taxonomy : qAsConst(taxonomies))
            build({"build", "taxids", ids, "--taxonomy", taxonomy}, refusals);
        // The taxonomies are used, never changed.
        for (const QString& taxonomy : qAsConst(taxonomies))
            QVERIFY(!Zem::Ontology::Ontology(taxonomy).isCounted());
    }

private:
    // A build either charts something or fails with exit code 1 and one of the refusals.
    void build(QStringList arguments, const QStringList& refusals)
    {
        const QString out = dir.filePath(QStringLiteral("out.piechart"));
        QFile::remove(out);
        const CliResult result = runCli(arguments << "-o" << out);
        const QString what = arguments.join(QLatin1Char(' ')) + QStringLiteral(": ") + result.err;
        bool refused = false;
        for (const QString& refusal : refusals)
            refused = refused || result.err.contains(refusal);
        if (result.exitCode == 0)
            QVERIFY2(chartTotal(out) > 0, qPrintable(what));
        else
            QVERIFY2(result.exitCode == 1 && refused, qPrintable(what));
    }

    QTemporaryDir dir;
    QStringList taxonomies;
};

QTEST_GUILESS_MAIN(TestRealData)
#include "tst_realdata.moc"
