#include "viewer/newpiechartwizard.h"

#include "ontology/buildersource.h"
#include "ontology/chartsamples.h"
#include "ontology/inputformat.h"
#include "ontology/ontology.h"
#include "viewer/newpiechartwizard_sourcefilewizardpage.h"
#include "tests/support/fixtures.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QLineEdit>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QtTest>

using Sorvik::Viewer::NewPiechartWizard;

namespace {

void check(QWizard& wizard, const QString& text)
{
    for (QRadioButton* button : wizard.findChildren<QRadioButton*>()) {
        if (button->text() == text)
            return button->setChecked(true);
    }
    QFAIL(qPrintable(QStringLiteral("no choice ") + text));
}

QLineEdit* fileEdit(QWizard& wizard, int page)
{
    return wizard.page(page)->findChild<QLineEdit*>(QStringLiteral("fileNameLineEdit"));
}

// A QIIME table written to a file, "<missing>" for none.
QString qiimeTable(const QTemporaryDir& dir, const QByteArray& content)
{
    const QString name = dir.filePath(QStringLiteral("table.txt"));
    QFile file(name);
    if (content != "<missing>" && file.open(QIODevice::WriteOnly))
        file.write(content);
    return name;
}

} // namespace

class TestNewPiechartWizard : public QObject
{
    Q_OBJECT
private slots:
    void qiimePagesFollowTheTable_data()
    {
        QTest::addColumn<QByteArray>("table");
        QTest::addColumn<QList<int>>("pages");
        QTest::addColumn<QStringList>("columns");
        const QByteArray table("# Constructed from biom file\n#OTU ID\tS1\tS2\nk__Bacteria\t0.5\t0.25\n");
        QTest::newRow("qiime") << table << QList<int>{0, 4, 5} << QStringList{"S1", "S2"};
        // A table without sample columns keeps the user on the file page.
        QTest::newRow("qiime without samples") << QByteArray("Taxon\nk__A\n") << QList<int>{0, 4}
                                               << QStringList();
        QTest::newRow("qiime file missing") << QByteArray("<missing>") << QList<int>{0, 4} << QStringList();
    }

    void qiimePagesFollowTheTable()
    {
        QFETCH(QByteArray, table);
        QFETCH(QList<int>, pages);
        QFETCH(QStringList, columns);
        QTemporaryDir dir;
        NewPiechartWizard wizard;
        wizard.restart();
        // Nothing chosen yet: the first page holds.
        QVERIFY(!wizard.button(QWizard::NextButton)->isEnabled());
        check(wizard, QStringLiteral("QIIME file"));
        QVERIFY(wizard.button(QWizard::NextButton)->isEnabled());
        fileEdit(wizard, NewPiechartWizard::QiimeFile)->setText(qiimeTable(dir, table));
        QList<int> visited{wizard.currentId()};
        while (wizard.currentPage()->nextId() != -1 && visited.size() < 5) {
            wizard.next();
            if (wizard.currentId() == visited.last())
                break;
            visited << wizard.currentId();
        }
        QCOMPARE(visited, pages);
        QVERIFY(!wizard.requiresNcbiTaxonomy());
        if (columns.isEmpty())
            return;
        auto* list = wizard.currentPage()->findChild<QListWidget*>();
        QStringList offered;
        for (int i = 0; i < list->count(); ++i)
            offered << list->item(i)->text();
        QCOMPARE(offered, columns);
        list->setCurrentRow(1);
        QCOMPARE(wizard.field(QStringLiteral("qiime-source-column")).toInt(), 1);
        QCOMPARE(wizard.getOptions().column, 1);
    }

    // Every format of the table is offered, and leads to a page whose file the viewer gets; the
    // taxon-id page's count variant is its own format.
    void everyFormatIsOffered_data()
    {
        QTest::addColumn<QString>("choice");
        QTest::addColumn<bool>("withCounts");
        QTest::addColumn<QString>("word");
        for (const Zem::Ontology::InputFormat& format : Zem::Ontology::InputFormat::all()) {
            if (!format.label.isEmpty())
                QTest::newRow(qPrintable(format.word)) << format.label << false << format.word;
        }
        QTest::newRow("taxid-counts") << QStringLiteral("Plain text with NCBI-taxon-ids per lines") << true
                                      << QStringLiteral("taxid-counts");
    }

    void everyFormatIsOffered()
    {
        QFETCH(QString, choice);
        QFETCH(bool, withCounts);
        QFETCH(QString, word);
        NewPiechartWizard wizard;
        wizard.restart();
        QCOMPARE(wizard.getFormat(), nullptr);
        check(wizard, choice);
        wizard.next();
        QCOMPARE(wizard.currentId(), NewPiechartWizard::getFilePage(word));
        if (withCounts) {
            auto* counts = wizard.currentPage()->findChild<QRadioButton*>(QStringLiteral("formatIdCountRadioButton"));
            QVERIFY(counts);
            counts->setChecked(true);
        }
        const QString file = QStringLiteral("/data/input.txt");
        fileEdit(wizard, wizard.currentId())->setText(file);
        QVERIFY(wizard.getFormat());
        QCOMPARE(wizard.getFormat()->word, word);
        QCOMPARE(wizard.getInputFileName(), file);
        QCOMPARE(wizard.requiresNcbiTaxonomy(), wizard.getFormat()->needsTaxonomy);
        // Formats that count unclassified reads offer to leave them out.
        auto* keep = wizard.currentPage()->findChild<QCheckBox*>(QStringLiteral("keepUnclassifiedCheckBox"));
        QCOMPARE(keep && keep->isVisibleTo(wizard.currentPage()), wizard.getFormat()->hasUnclassified);
    }

    void detectsTheFormatFromTheFile_data();
    void detectsTheFormatFromTheFile();
    void severalFilesAreSeveralSamples_data();
    void severalFilesAreSeveralSamples();
    void columnsOfATableAreSamples_data();
    void columnsOfATableAreSamples();
    void aTableWithoutColumnsIsSaid();
    void finishWaitsForAFile();
    void samplesFeedABuildOfSeveral();
    void fileNamesOfTheLine_data();
    void fileNamesOfTheLine();
};

namespace {

QString fixture(const char* name)
{
    return Sorvik::Test::fixturePath(QLatin1String(name));
}

QString quoted(const QStringList& files)
{
    return QLatin1Char('"') + files.join(QStringLiteral("\" \"")) + QLatin1Char('"');
}

QStringList describe(const std::vector<NewPiechartWizard::Sample>& samples)
{
    QStringList described;
    for (const NewPiechartWizard::Sample& sample : samples)
        described << QStringLiteral("%1=%2:%3").arg(sample.name, QFileInfo(sample.fileName).fileName()).arg(sample.options.column);
    return described;
}

} // namespace

// Files of one format are each a sample; detection tells every file and refuses a mix.
void TestNewPiechartWizard::severalFilesAreSeveralSamples_data()
{
    QTest::addColumn<QString>("choice");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("samples");
    QTest::addColumn<QString>("said");
    const QString kreport = QStringLiteral("Kraken-style report (Kraken, Bracken, KrakenUniq, centrifuge-kreport)");
    QTest::newRow("two reports") << kreport << QStringList{fixture("formats/kraken2.kreport"), fixture("formats/cut-short.kreport")}
                                 << QStringList{"kraken2=kraken2.kreport:0", "cut-short=cut-short.kreport:0"} << "";
    QTest::newRow("one name twice")
        << kreport << QStringList{fixture("formats/kraken2.kreport"), fixture("formats/kraken2.kreport")}
        << QStringList{"kraken2=kraken2.kreport:0", "kraken2 (2)=kraken2.kreport:0"} << "";
    QTest::newRow("krona files") << "Krona file" << QStringList{fixture("viewer/small.krona.txt"), "/data/b.krona.txt"}
                                 << QStringList{"small=small.krona.txt:0", "b=b.krona.txt:0"} << "";
    QTest::newRow("detected, both reports")
        << "Detect from the file" << QStringList{fixture("formats/kraken2.kreport"), fixture("formats/kraken1.kreport")}
        << QStringList{"kraken2=kraken2.kreport:0", "kraken1=kraken1.kreport:0"} << "Read as a Kraken-style report, 2 files.";
    QTest::newRow("detected, a mix")
        << "Detect from the file" << QStringList{fixture("formats/kraken2.kreport"), fixture("formats/bracken.tsv")} << QStringList()
        << "The files are of different formats: kraken2.kreport is a Kraken-style report, but bracken.tsv is a Bracken "
           "abundance table.";
}

void TestNewPiechartWizard::severalFilesAreSeveralSamples()
{
    QFETCH(QString, choice);
    QFETCH(QStringList, files);
    QFETCH(QStringList, samples);
    QFETCH(QString, said);
    NewPiechartWizard wizard;
    wizard.restart();
    check(wizard, choice);
    wizard.next();
    fileEdit(wizard, wizard.currentId())->setText(quoted(files));
    QCOMPARE(describe(wizard.getSamples()), samples);
    QCOMPARE(wizard.currentPage()->isComplete(), !samples.isEmpty());
    if (!said.isEmpty())
        QCOMPARE(wizard.currentPage()->findChild<QLabel*>(QStringLiteral("detectionLabel"))->text(), said);
    if (!samples.isEmpty())
        QCOMPARE(wizard.getInputFileName(), files.front());
}

// A table of samples offers its columns: one, several or all of them become the samples.
void TestNewPiechartWizard::columnsOfATableAreSamples_data()
{
    QTest::addColumn<QString>("choice");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QList<int>>("chosen");
    QTest::addColumn<bool>("all");
    QTest::addColumn<QStringList>("samples");
    const QString metaphlan = QStringLiteral("Merged MetaPhlAn table (merge_metaphlan_tables.py)");
    const QStringList merged{fixture("tables/merged-metaphlan3.txt")};
    QTest::newRow("the first column unless told") << metaphlan << merged << QList<int>{} << false
                                                  << QStringList{"stool_1=merged-metaphlan3.txt:0"};
    QTest::newRow("two columns") << metaphlan << merged << QList<int>{2, 0} << false
                                 << QStringList{"stool_1=merged-metaphlan3.txt:0", "stool_3=merged-metaphlan3.txt:2"};
    QTest::newRow("all columns") << metaphlan << merged << QList<int>{} << true
                                 << QStringList{"stool_1=merged-metaphlan3.txt:0", "stool_2=merged-metaphlan3.txt:1",
                                                "stool_3=merged-metaphlan3.txt:2"};
    QTest::newRow("combined reports, detected") << "Detect from the file" << QStringList{fixture("tables/combined.kreport")}
                                                << QList<int>{1} << false << QStringList{"gut_B=combined.kreport:1"};
    // Several tables: each file's own columns, named after the file and the column; a file
    // without them is still a sample, for its reader to refuse.
    QTest::newRow("all columns of two tables")
        << "Combined Bracken tables (combine_bracken_outputs.py)"
        << QStringList{fixture("tables/combined-bracken.tsv"), fixture("tables/merged-metaphlan4.txt")} << QList<int>{} << true
        << QStringList{"combined-bracken gut_A.bracken=combined-bracken.tsv:0", "combined-bracken gut_B.bracken=combined-bracken.tsv:1",
                       "merged-metaphlan4=merged-metaphlan4.txt:0"};
    QTest::newRow("qiime, all columns") << "QIIME file" << QStringList{fixture("viewer/small.qiime.txt")} << QList<int>{} << true
                                        << QStringList();
}

void TestNewPiechartWizard::columnsOfATableAreSamples()
{
    QFETCH(QString, choice);
    QFETCH(QStringList, files);
    QFETCH(QList<int>, chosen);
    QFETCH(bool, all);
    QFETCH(QStringList, samples);
    NewPiechartWizard wizard;
    wizard.restart();
    check(wizard, choice);
    wizard.next();
    fileEdit(wizard, wizard.currentId())->setText(quoted(files));
    wizard.next();
    QCOMPARE(wizard.currentId(), int(NewPiechartWizard::QiimeColumn));
    auto* list = wizard.currentPage()->findChild<QListWidget*>();
    for (int row : chosen)
        list->item(row)->setSelected(true);
    if (!chosen.isEmpty())
        list->item(0)->setSelected(chosen.contains(0));
    wizard.currentPage()->findChild<QCheckBox*>(QStringLiteral("allColumnsCheckBox"))->setChecked(all);
    QVERIFY(wizard.currentPage()->isComplete());
    if (samples.isEmpty()) {
        // Every column of the QIIME table, by its header.
        const QStringList columns = Zem::Ontology::InputFormat::find(QStringLiteral("qiime"))->readColumns(files.front());
        QVERIFY(columns.size() > 1);
        for (int i = 0; i < columns.size(); ++i)
            samples << QStringLiteral("%1=small.qiime.txt:%2").arg(columns.at(i)).arg(i);
    }
    QCOMPARE(describe(wizard.getSamples()), samples);
    QCOMPARE(wizard.getOptions().column, wizard.getSamples().front().options.column);
}

// A file that is no table of samples keeps the user on the file page, saying why.
void TestNewPiechartWizard::aTableWithoutColumnsIsSaid()
{
    NewPiechartWizard wizard;
    wizard.restart();
    check(wizard, QStringLiteral("Merged MetaPhlAn table (merge_metaphlan_tables.py)"));
    wizard.next();
    fileEdit(wizard, wizard.currentId())->setText(fixture("formats/metaphlan4.txt"));
    wizard.next();
    QCOMPARE(wizard.currentId(), int(NewPiechartWizard::InputFile));
    auto* label = wizard.currentPage()->findChild<QLabel*>(QStringLiteral("detectionLabel"));
    QVERIFY(label->isVisibleTo(wizard.currentPage()));
    QCOMPARE(label->text(), QStringLiteral("metaphlan4.txt has no header that names sample columns of a merged MetaPhlAn table."));
    fileEdit(wizard, wizard.currentId())->setText(fixture("tables/merged-metaphlan4.txt"));
    QVERIFY(!label->isVisibleTo(wizard.currentPage()));
    wizard.next();
    QCOMPARE(wizard.currentId(), int(NewPiechartWizard::QiimeColumn));
}

// Finish is offered only once a file is named, and, for a table, a column chosen.
void TestNewPiechartWizard::finishWaitsForAFile()
{
    NewPiechartWizard wizard;
    wizard.restart();
    check(wizard, QStringLiteral("Krona file"));
    wizard.next();
    QVERIFY(!wizard.button(QWizard::FinishButton)->isEnabled());
    QVERIFY(wizard.getSamples().empty());
    fileEdit(wizard, wizard.currentId())->setText(QStringLiteral("  "));
    QVERIFY(!wizard.button(QWizard::FinishButton)->isEnabled());
    fileEdit(wizard, wizard.currentId())->setText(fixture("viewer/small.krona.txt"));
    QVERIFY(wizard.button(QWizard::FinishButton)->isEnabled());
    fileEdit(wizard, wizard.currentId())->clear();
    QVERIFY(!wizard.button(QWizard::FinishButton)->isEnabled());

    wizard.restart();
    check(wizard, QStringLiteral("Combined Kraken-style reports (combine_kreports.py)"));
    wizard.next();
    fileEdit(wizard, wizard.currentId())->setText(fixture("tables/combined.kreport"));
    wizard.next();
    auto* list = wizard.currentPage()->findChild<QListWidget*>();
    QVERIFY(wizard.button(QWizard::FinishButton)->isEnabled());
    list->clearSelection();
    QVERIFY(!wizard.button(QWizard::FinishButton)->isEnabled());
    wizard.currentPage()->findChild<QCheckBox*>(QStringLiteral("allColumnsCheckBox"))->setChecked(true);
    QVERIFY(wizard.button(QWizard::FinishButton)->isEnabled());
}

// The chosen samples make one chart of them all, each sample's total its column's.
void TestNewPiechartWizard::samplesFeedABuildOfSeveral()
{
    QTemporaryDir dir;
    NewPiechartWizard wizard;
    wizard.restart();
    check(wizard, QStringLiteral("Detect from the file"));
    wizard.next();
    fileEdit(wizard, wizard.currentId())->setText(fixture("tables/combined.kreport"));
    wizard.next();
    wizard.currentPage()->findChild<QCheckBox*>(QStringLiteral("allColumnsCheckBox"))->setChecked(true);
    const QString chart = dir.filePath(QStringLiteral("study.piechart"));
    {
        Zem::Ontology::BuilderSource builder(chart);
        for (auto& [name, source] : wizard.makeSampleSources())
            builder.addSample(name, std::move(source));
        builder.load();
        builder.count(true);
        builder.build();
        QVERIFY(!builder.getReport().hasSkips());
    }
    const Zem::Ontology::Ontology ontology(chart);
    const std::vector<Zem::Ontology::ChartSamples::Stored> samples = Zem::Ontology::ChartSamples::read(ontology);
    QStringList totals;
    for (const auto& sample : samples) {
        const auto entries = Zem::Ontology::ChartSamples::decode(sample.counts, ontology.getNodeNumber());
        qint64 total = 0;
        for (const auto& entry : entries)
            total = std::max(total, entry.total);
        totals << QStringLiteral("%1=%2").arg(sample.name).arg(total);
    }
    // gut_A: 90 classified and 10 unclassified reads; gut_B: 150 and 50.
    QCOMPARE(totals, (QStringList{"gut_A=100", "gut_B=200"}));
}

void TestNewPiechartWizard::fileNamesOfTheLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("files");
    QTest::newRow("one name as typed") << "/data/my file.txt" << QStringList{"/data/my file.txt"};
    QTest::newRow("blank") << " " << QStringList();
    QTest::newRow("several quoted") << "\"/a b.txt\" \"c.txt\"" << QStringList{"/a b.txt", "c.txt"};
    QTest::newRow("a quote left open") << "\"a.txt\" \"b.txt" << QStringList{"a.txt", "b.txt"};
    QTest::newRow("empty quotes") << "\"\" \"a.txt\"" << QStringList{"a.txt"};
}

void TestNewPiechartWizard::fileNamesOfTheLine()
{
    QFETCH(QString, text);
    QFETCH(QStringList, files);
    QCOMPARE(Sorvik::Viewer::NewPieChartWizard_SourceFileWizardPage::splitFileNames(text), files);
    if (files.size() > 1)
        QCOMPARE(Sorvik::Viewer::NewPieChartWizard_SourceFileWizardPage::splitFileNames(
                     Sorvik::Viewer::NewPieChartWizard_SourceFileWizardPage::joinFileNames(files)),
                 files);
}

// Detection: the page says which format it found, or why none, and goes on as that format's own
// choice would.
void TestNewPiechartWizard::detectsTheFormatFromTheFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("said");
    QTest::addColumn<QString>("word");
    QTest::addColumn<bool>("unclassifiedOffered");
    QTest::newRow("kraken-style report")
        << Sorvik::Test::fileContents(Sorvik::Test::fixturePath(QStringLiteral("formats/kraken2.kreport")))
        << "Read as a Kraken-style report." << "kreport" << true;
    QTest::newRow("bracken table") << Sorvik::Test::fileContents(Sorvik::Test::fixturePath(QStringLiteral("formats/bracken.tsv")))
                                   << "Read as a Bracken abundance table." << "bracken" << false;
    QTest::newRow("qiime table, then its columns") << QByteArray("Taxon\tS1\tS2\nk__A;p__B\t0.5\t0.25\n")
                                                   << "Read as a QIIME summary table." << "qiime" << false;
    QTest::newRow("nothing known") << QByteArray("\x01\x02\n") << "Cannot tell the format of this file:\nnot combined Kraken-style reports"
                                   << "" << false;
    QTest::newRow("no file") << QByteArray("<missing>") << "Cannot tell the format of this file:\ncannot read" << "" << false;
}

void TestNewPiechartWizard::detectsTheFormatFromTheFile()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, said);
    QFETCH(QString, word);
    QFETCH(bool, unclassifiedOffered);
    QTemporaryDir dir;
    NewPiechartWizard wizard;
    wizard.restart();
    check(wizard, QStringLiteral("Detect from the file"));
    wizard.next();
    QCOMPARE(wizard.currentId(), int(NewPiechartWizard::InputFile));
    QVERIFY(!wizard.currentPage()->isComplete());
    const QString file = qiimeTable(dir, content);
    fileEdit(wizard, NewPiechartWizard::InputFile)->setText(file);

    QVERIFY2(wizard.currentPage()->findChild<QLabel*>(QStringLiteral("detectionLabel"))->text().startsWith(said),
             qPrintable(wizard.currentPage()->findChild<QLabel*>(QStringLiteral("detectionLabel"))->text()));
    QCOMPARE(wizard.currentPage()->isComplete(), !word.isEmpty());
    QCOMPARE(wizard.getFormat() ? wizard.getFormat()->word : QString(), word);
    auto* keep = wizard.currentPage()->findChild<QCheckBox*>(QStringLiteral("keepUnclassifiedCheckBox"));
    QCOMPARE(keep->isVisibleTo(wizard.currentPage()), unclassifiedOffered);
    if (word.isEmpty())
        return;
    QCOMPARE(wizard.getInputFileName(), file);
    QVERIFY(wizard.getOptions().keepUnclassified);
    keep->setChecked(false);
    QVERIFY(!wizard.getOptions().keepUnclassified);
    // A table of samples asks for its column next.
    const bool columns = bool(Zem::Ontology::InputFormat::find(word)->readColumns);
    QCOMPARE(wizard.currentPage()->nextId(), columns ? int(NewPiechartWizard::QiimeColumn) : -1);
    if (columns) {
        wizard.next();
        QCOMPARE(wizard.currentId(), int(NewPiechartWizard::QiimeColumn));
        QCOMPARE(wizard.currentPage()->findChild<QListWidget*>()->count(), 2);
    }
}

QTEST_MAIN(TestNewPiechartWizard)
#include "tst_newpiechartwizard.moc"
