#include "clirunner.h"
#include "ontology/ontology.h"
#include "ontology/reader.h"
#include "ontology/sourceqiimetext.h"
#include "tests/support/fixtures.h"
#include "tests/support/taxdump.h"

#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using namespace Sorvik::Test;

namespace {

// The root's "accumCount" of a chart, or -1 when it cannot be read.
qint64 chartTotal(const QString& file)
{
    struct RootReader : Zem::Ontology::Reader
    {
        using Reader::Reader;
        Node root() { return readNode(); }
        void openNode(const QString&, const QVariantMap&, const Position&) override {}
        void closeNode(const QString&, const QVariantMap&) override {}
    };
    try {
        const Zem::Ontology::Ontology ontology(file);
        RootReader reader(ontology);
        return reader.root().data.value(QStringLiteral("accumCount")).toString().toLongLong();
    } catch (const std::exception&) {
        return -1;
    }
}

QStringList lines(const QString& file)
{
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly | QIODevice::Text))
        return QStringList();
    QStringList result = QString::fromUtf8(in.readAll()).split(QLatin1Char('\n'));
    return result;
}

// What a Krona file counts in all: the sum of the counts that lines start with.
qint64 kronaTotal(const QString& file)
{
    qint64 total = 0;
    for (const QString& line : lines(file)) {
        bool ok = false;
        const qint64 count = line.section(QLatin1Char('\t'), 0, 0).toLongLong(&ok);
        if (ok && count > 0)
            total += count;
    }
    return total;
}

// What the first sample column of a QIIME table counts at ten thousand per unit.
qint64 qiimeTotal(const QString& file)
{
    qint64 total = 0;
    bool header = false;
    for (const QString& line : lines(file)) {
        if (!header) {
            header = !(line.startsWith(QLatin1Char('#')) && !line.contains(QLatin1Char('\t')));
            continue;
        }
        const QStringList fields = line.split(QLatin1Char('\t'));
        bool ok = false;
        const double value = fields.value(1).toDouble(&ok) * 10000.0;
        if (fields.size() >= 2 && ok && std::isfinite(value) && value >= 0)
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
    void initTestCase();
    void kronaFiles();
    void qiimeFiles();
    void taxonomyDumps();
    void taxonIdFiles();

private:
    QTemporaryDir dir;
    QStringList taxonomies;
};

void TestRealData::initTestCase()
{
    if (realDataPath().isEmpty())
        QSKIP("no real data beside this checkout");
    QVERIFY(dir.isValid());
}

void TestRealData::kronaFiles()
{
    const QStringList files = filesIn(QStringLiteral("krona"));
    QVERIFY(!files.isEmpty());
    for (const QString& file : files) {
        const QString out = dir.filePath(QFileInfo(file).fileName() + QStringLiteral(".piechart"));
        const CliResult result = runCli({"build", "krona", file, "-o", out});
        const qint64 expected = kronaTotal(file);
        if (expected > 0) {
            QVERIFY2(result.exitCode == 0, qPrintable(file + QLatin1Char(' ') + result.err));
            QCOMPARE(chartTotal(out), expected);
        } else {
            QCOMPARE(result.exitCode, 1);
            QVERIFY(result.err.contains(QLatin1String("no counted taxa")));
        }
    }
}

void TestRealData::qiimeFiles()
{
    const QStringList files = filesIn(QStringLiteral("qiime"));
    QVERIFY(!files.isEmpty());
    for (const QString& file : files) {
        const QString out = dir.filePath(QFileInfo(file).fileName() + QStringLiteral(".piechart"));
        const CliResult result = runCli({"build", "qiime", file, "-o", out});
        QVERIFY2(result.exitCode == 0 || result.exitCode == 1, qPrintable(file + QLatin1Char(' ') + result.err));
        if (Zem::Ontology::SourceQiimeText::readColumnNames(file).isEmpty()) {
            QVERIFY(result.err.contains(QLatin1String("no QIIME header")));
            continue;
        }
        const qint64 expected = qiimeTotal(file);
        if (expected > 0) {
            QVERIFY2(result.exitCode == 0, qPrintable(file + QLatin1Char(' ') + result.err));
            QCOMPARE(chartTotal(out), expected);
        } else {
            QVERIFY2(result.err.contains(QLatin1String("no counted taxa")), qPrintable(result.err));
        }
    }
}

void TestRealData::taxonomyDumps()
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
        QVERIFY2(result.exitCode == 0 || result.exitCode == 1, qPrintable(name + QLatin1Char(' ') + result.err));
        if (result.exitCode == 1) {
            QVERIFY2(result.err.contains(QLatin1String("no taxa below the root")), qPrintable(result.err));
            continue;
        }
        const Zem::Ontology::Ontology ontology(out);
        QVERIFY(!ontology.isCounted());
        QVERIFY(ontology.getNodeNumber() > 1);
        taxonomies << out;
    }
}

void TestRealData::taxonIdFiles()
{
    if (taxonomies.isEmpty())
        QSKIP("no taxonomy was imported");
    const QStringList files = filesIn(QStringLiteral("taxids")) + filesIn(QStringLiteral("other")).filter(QStringLiteral(".txt"));
    QVERIFY(!files.isEmpty());
    const QStringList known{QStringLiteral("no counted taxa"), QStringLiteral("does not look like")};
    auto check = [&](const QString& format, const QString& file, const QString& taxonomy) {
        const QString out = dir.filePath(QStringLiteral("ids.piechart"));
        const CliResult result = runCli({"build", format, file, "-o", out, "--taxonomy", taxonomy});
        const QString what = QStringLiteral("%1 %2 %3: %4").arg(format, file, taxonomy, result.err);
        QVERIFY2(result.exitCode == 0 || result.exitCode == 1, qPrintable(what));
        if (result.exitCode == 0) {
            QVERIFY2(chartTotal(out) > 0, qPrintable(what));
        } else {
            bool explained = false;
            for (const QString& message : known)
                explained = explained || result.err.contains(message);
            QVERIFY2(explained, qPrintable(what));
        }
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

QTEST_GUILESS_MAIN(TestRealData)
#include "tst_realdata.moc"
