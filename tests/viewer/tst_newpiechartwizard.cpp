#include "viewer/newpiechartwizard.h"

#include "ontology/inputformat.h"
#include "tests/support/fixtures.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QLabel>
#include <QComboBox>
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
        auto* combo = wizard.currentPage()->findChild<QComboBox*>();
        QStringList offered;
        for (int i = 0; i < combo->count(); ++i)
            offered << combo->itemText(i);
        QCOMPARE(offered, columns);
        combo->setCurrentIndex(1);
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
};

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
    QTest::newRow("nothing known") << QByteArray("\x01\x02\n") << "Cannot tell the format of this file:\nnot a Kraken-style report"
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
    const bool columns = word == QLatin1String("qiime");
    QCOMPARE(wizard.currentPage()->nextId(), columns ? int(NewPiechartWizard::QiimeColumn) : -1);
    if (columns) {
        wizard.next();
        QCOMPARE(wizard.currentId(), int(NewPiechartWizard::QiimeColumn));
        QCOMPARE(wizard.currentPage()->findChild<QComboBox*>()->count(), 2);
    }
}

QTEST_MAIN(TestNewPiechartWizard)
#include "tst_newpiechartwizard.moc"
