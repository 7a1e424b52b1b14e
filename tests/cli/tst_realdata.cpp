#include "tests/support/clirunner.h"
#include "ontology/nodekeys.h"
#include "ontology/ontology.h"
#include "ontology/reader.h"
#include "tests/support/fixtures.h"
#include "tests/support/taxdump.h"

#include <QDirIterator>
#include <QSet>

#include <cmath>
#include <QTemporaryDir>
#include <QtTest>

using namespace Sorvik::Test;

namespace {

// The total a chart counts, as sorvik-cli info tells it; -1 when it cannot.
qint64 chartTotal(const QString& file)
{
    const CliResult info = runCli({QStringLiteral("info"), file});
    bool ok = false;
    const qint64 total = info.out.section(QStringLiteral("total: "), 1).section(QLatin1Char('\n'), 0, 0).toLongLong(&ok);
    return info.exitCode == 0 && ok ? total : -1;
}

// Every node of a chart by its path of names from the root ("Bacteria|Firmicutes"), with its
// id and total.
class ChartTotals : public Zem::Ontology::Reader
{
public:
    struct Total
    {
        QString id;
        qint64 accumCount;
    };

    static QHash<QString, Total> read(const QString& file)
    {
        ChartTotals reader{Zem::Ontology::Ontology(file)};
        reader.Reader::read();
        return reader.totals;
    }

    void openNode(const QString& id, const QVariantMap& data, const Position&) override
    {
        names << (names.isEmpty() ? QString() : data.value(Zem::Ontology::NodeKey::name).toString());
        totals.insert(names.mid(1).join(QLatin1Char('|')),
                      {id, data.value(Zem::Ontology::NodeKey::accumCount).toLongLong()});
    }
    void closeNode(const QString&, const QVariantMap&) override { names.removeLast(); }

private:
    using Reader::Reader;
    QStringList names;
    QHash<QString, Total> totals;
};

// The reads a build reported as lost to ids the taxonomy lacks.
qint64 unplacedReads(const QString& err)
{
    for (const QString& line : err.split(QLatin1Char('\n'))) {
        if (line.contains(QLatin1String("that the taxonomy does not know")))
            return line.section(QStringLiteral(": skipped "), 1).section(QStringLiteral(" read"), 0, 0).remove(QLatin1Char(' ')).toLongLong();
    }
    return 0;
}

// The tab-separated fields of a file's lines that are neither blank nor comments.
QList<QStringList> rowsOf(const QString& file)
{
    QList<QStringList> rows;
    for (const QString& line : QString::fromUtf8(fileContents(file)).split(QLatin1Char('\n'))) {
        if (!line.trimmed().isEmpty() && !line.startsWith(QLatin1Char('#')))
            rows << line.trimmed().split(QLatin1Char('\t'));
    }
    return rows;
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

    // Kraken-style reports: every row's clade reads are its taxon's total, the root's with the
    // unclassified reads beside it.
    void kreports_data()
    {
        QTest::addColumn<QString>("file");
        const QStringList files = filesIn(QStringLiteral("classifiers/kraken2")) + filesIn(QStringLiteral("classifiers/krakenuniq"))
            + filesIn(QStringLiteral("classifiers/centrifuge")) + filesIn(QStringLiteral("taxids")).filter(QStringLiteral("report"));
        for (const QString& file : files)
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << file;
    }

    void kreports()
    {
        QFETCH(QString, file);
        const QString out = build({"build", "kreport", file});
        if (file.endsWith(QLatin1String(".gz")))
            return;
        const QHash<QString, ChartTotals::Total> chart = ChartTotals::read(out);
        QHash<QString, qint64> byId;
        for (const ChartTotals::Total& total : chart)
            byId.insert(total.id, total.accumCount);
        QList<QStringList> rows = rowsOf(file);
        int taxidColumn = -1;
        bool isCount = false;
        rows.first().value(1).toLongLong(&isCount);
        if (!isCount) {
            const QStringList header = rows.takeFirst();
            for (int i = 0; i < header.size(); ++i) {
                if (QStringList{"taxid", "taxonid", "taxonomy id"}.contains(header.at(i).trimmed().toLower()))
                    taxidColumn = i;
            }
        }
        qint64 unclassified = 0;
        QSet<QString> seen;
        for (const QStringList& row : qAsConst(rows)) {
            const QString taxid = row.value(taxidColumn >= 0 ? taxidColumn : row.size() - 2).trimmed();
            const qint64 clade = row.value(1).toLongLong();
            if (taxid == QLatin1String("0"))
                unclassified = clade;
            else if (!seen.contains(taxid))
                QVERIFY2(byId.value(taxid, -1) == clade + (taxid == chart.value(QString()).id ? unclassified : 0),
                         qPrintable(taxid));
            seen.insert(taxid);
        }
        QCOMPARE(chart.value(QString()).accumCount, chartTotal(out));
    }

    // MetaPhlAn profiles: the whole is 100 % (1 000 000) give or take rounding, and every
    // clade's total is its value.
    void metaphlanProfiles_data()
    {
        QTest::addColumn<QString>("file");
        for (const QString& file : filesIn(QStringLiteral("classifiers/metaphlan")))
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << file;
    }

    void metaphlanProfiles()
    {
        QFETCH(QString, file);
        const QHash<QString, ChartTotals::Total> chart = ChartTotals::read(build({"build", "metaphlan", file}));
        QVERIFY(std::abs(chart.value(QString()).accumCount - 1000000) <= 100);
        for (const QStringList& row : rowsOf(file)) {
            QStringList names;
            for (const QString& piece : row.first().split(QLatin1Char('|')))
                names << piece.mid(3);
            const QString path = row.first() == QLatin1String("UNCLASSIFIED") ? QStringLiteral("unclassified")
                                                                              : names.join(QLatin1Char('|'));
            const double value = row.value(row.size() >= 3 ? 2 : 1).toDouble();
            QVERIFY2(chart.contains(path), qPrintable(path));
            QVERIFY2(std::abs(double(chart.value(path).accumCount) / 10000.0 - value) <= 0.01, qPrintable(path));
        }
    }

    // Tables and reads placed in a taxonomy: the chart counts every read of the input, but for
    // those whose ids the taxonomy lacks, which are reported.
    void countsPlacedInTheTaxonomy_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("countColumn");
        for (const QString& file : filesIn(QStringLiteral("classifiers/bracken")))
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << "bracken" << file << 5;
        for (const QString& file : filesIn(QStringLiteral("classifiers/kaiju")))
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << "kaiju" << file << 2;
        for (const QString& file : filesIn(QStringLiteral("taxids")).filter(QStringLiteral("per_read")))
            QTest::newRow(qPrintable(QFileInfo(file).fileName())) << "kraken-reads" << file << -1;
    }

    void countsPlacedInTheTaxonomy()
    {
        QFETCH(QString, format);
        QFETCH(QString, file);
        QFETCH(int, countColumn);
        if (taxonomies.isEmpty())
            QSKIP("no taxonomy was imported");
        QList<QStringList> rows = rowsOf(file);
        if (countColumn >= 0)
            rows.removeFirst();
        qint64 reads = 0;
        for (const QStringList& row : qAsConst(rows))
            reads += countColumn >= 0 ? row.value(countColumn).toLongLong() : 1;
        for (const QString& taxonomy : qAsConst(taxonomies)) {
            QString err;
            const QString out = build({"build", format, file, "--taxonomy", taxonomy}, {"no counted taxa"}, &err);
            const qint64 total = QFileInfo::exists(out) ? chartTotal(out) : 0;
            QVERIFY2(total + unplacedReads(err) == reads, qPrintable(taxonomy + QLatin1Char(' ') + err));
        }
    }

    // Each classifier's output is charted as the format it is told to be.
    void detectedAndCharted()
    {
        for (const QString& file : filesIn(QStringLiteral("classifiers"))) {
            if (!file.endsWith(QLatin1String(".md")))
                build({"build", "auto", file, "--taxonomy", taxonomies.value(0)}, {"no counted taxa"});
        }
    }

private:
    // A build either charts something or fails with exit code 1 and one of the refusals; the
    // chart's file, and what the build said.
    QString build(QStringList arguments, const QStringList& refusals = {}, QString* err = nullptr)
    {
        const QString out = dir.filePath(QStringLiteral("out.piechart"));
        QFile::remove(out);
        const CliResult result = runCli(arguments << "-o" << out);
        const QString what = arguments.join(QLatin1Char(' ')) + QStringLiteral(": ") + result.err;
        if (err)
            *err = result.err;
        bool refused = false;
        for (const QString& refusal : refusals)
            refused = refused || result.err.contains(refusal);
        if (result.exitCode == 0)
            [&] { QVERIFY2(chartTotal(out) > 0, qPrintable(what)); }();
        else
            [&] { QVERIFY2(result.exitCode == 1 && refused, qPrintable(what)); }();
        return out;
    }

    QTemporaryDir dir;
    QStringList taxonomies;
};

QTEST_GUILESS_MAIN(TestRealData)
#include "tst_realdata.moc"
