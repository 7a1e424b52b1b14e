#include "ontology/inputformat.h"
#include "ontology/ontology.h"
#include "tests/support/sqlfile.h"
#include "tests/support/fixtures.h"
#include "tests/support/httpserver.h"
#include "tests/support/inputtotals.h"
#include "tests/support/treeliteral.h"
#include "tests/support/charts.h"
#include "tests/support/windowcase.h"
#include "viewer/browser.h"
#include "viewer/mainwindow.h"
#include "viewer/newpiechartwizard.h"
#include "viewer/piechartitem.h"
#include "viewer/scene.h"
#include "viewer/settings.h"
#include "viewer/view.h"
#include "viewer/viewpreferencesdialog.h"

#include <QAction>
#include <QGraphicsSceneMouseEvent>
#include <QStatusBar>
#include <QtTest>

#include <cmath>

using Sorvik::Test::fileContents;
using Sorvik::Test::fixturePath;
using Sorvik::Test::inTurn;
using Sorvik::Test::waitForClose;
using Sorvik::Test::wizard;
using Sorvik::Test::Script;
using Sorvik::Test::sliceNamed;
using Sorvik::Viewer::MainWindow;
using Sorvik::Viewer::NewPiechartWizard;
using Sorvik::Viewer::PieChartItem;

namespace {

const QString deepTree = QStringLiteral(
    "root(b=Bacteria:10(f=Firmicutes:10(c=Bacilli:30(l=Lactobacillales:20)) p=Proteobacteria:15) a=Archaea:15)");

} // namespace

class TestMainWindow : public Sorvik::Test::WindowCase
{
    Q_OBJECT
private slots:
    void init() { start(); }

    void cleanup()
    {
        stop();
        Sorvik::App::Settings settings;
        settings.setPalette(QStringLiteral("soft"));
        settings.setCollapsing(true);
        settings.setShowingRawNames(false);
    }

    void openRefusals_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("tree");
        QTest::addColumn<QStringList>("sql");
        QTest::addColumn<QString>("text");
        const QString notValid = QStringLiteral("Warning Problem opening file: The selected file is not a valid Sorvik pie "
                                                "chart. You must choose a file previously saved by Sorvik.");
        QTest::newRow("missing file") << QByteArray("<missing>") << QString() << QStringList() << notValid;
        QTest::newRow("uncounted taxonomy") << QByteArray() << deepTree
                                            << QStringList{"UPDATE info SET value = '0' WHERE key = 'counted'"} << notValid;
        QTest::newRow("nothing counted") << QByteArray() << QStringLiteral("root(a b(c))") << QStringList() << notValid;
        QTest::newRow("rows missing") << QByteArray() << deepTree << QStringList{"DELETE FROM nodes WHERE id <> 'root'"}
                                      << QStringLiteral("Critical Problem opening file: Error while creating new pie chart");
    }

    void openRefusals()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, tree);
        QFETCH(QStringList, sql);
        QFETCH(QString, text);
        const QString file = path(QStringLiteral("chart.piechart"));
        if (!tree.isEmpty())
            Sorvik::Test::writeTree(file, tree);
        if (!sql.isEmpty())
            Sorvik::Test::execSql(file, sql);
        if (tree.isEmpty() && sql.isEmpty() && bytes != "<missing>")
            QCOMPARE(write(QStringLiteral("chart.piechart"), bytes), file);

        // A chart is open before, so that its closing is seen.
        newKronaChart();
        prompter->answers = {QMessageBox::No};
        prompter->openNames = QStringList{file};
        window->slotFileOpen();
        QCOMPARE(shown().size(), 2);
        QCOMPARE(shown().last(), text);
        QCOMPARE(state(), QStringLiteral("closed 000000"));
        QCOMPARE(QFile::exists(file), bytes != "<missing>");
    }

    void newChart_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("option");
        QTest::addColumn<bool>("cached");
        QTest::addColumn<QString>("slice");
        QTest::addColumn<double>("share");
        QTest::addColumn<QString>("refusal");
        // The centre drawn: a root with one child is drawn as one with it (the NCBI root and
        // "cellular organisms" too).
        QTest::addColumn<QString>("centre");
        const QString nothing = QStringLiteral("Critical Problem opening piechart: Piechart couldn't be generated");
        QTest::newRow("krona") << "krona" << "viewer/small.krona.txt" << "" << false << "Firmicutes" << 180 * 100.0 / 350
                               << "" << "root";
        QTest::newRow("qiime second column") << "qiime" << "viewer/small.qiime.txt" << "1" << false << "Proteobacteria"
                                             << 60.0 << "" << "root";
        QTest::newRow("krona of zeros") << "krona" << "viewer/zero.krona.txt" << "" << false << "" << 0.0 << nothing << "";
        QTest::newRow("one id per line") << "taxids" << "viewer/taxids.txt" << "id" << true << "Escherichia coli"
                                         << 100.0 / 3 << "" << "cellular organisms";
        QTest::newRow("ids with counts") << "taxids" << "viewer/taxid-counts.txt" << "idcount" << true << "Escherichia coli"
                                         << 200.0 / 7 << "" << "cellular organisms";
        QTest::newRow("mg-taxa") << "mgtaxa" << "viewer/mgtaxa.txt" << "" << true << "Escherichia coli" << 75.0 << ""
                                 << "cellular organisms";
        // Every read counts: those the taxonomy does not know under a slice of their own.
        QTest::newRow("no known id") << "taxids" << "viewer/unknown-taxids.txt" << "id" << true << "Unknown taxon ids"
                                     << 100.0 << "" << "Unknown taxon ids";
        QTest::newRow("download refused") << "taxids" << "viewer/taxids.txt" << "id" << false << "" << 0.0
                                          << "Critical Problem creating new pie chart: NCBI data couldn't be downloaded"
                                          << "";
        // Its unclassified reads are the root's second child.
        QTest::newRow("per-read output in the background") << "kraken-reads" << "formats/kraken2.reads" << "" << true
                                                            << "Escherichia coli" << 100.0 / 3 << "" << "root";
        QTest::newRow("told from the file") << "auto" << "formats/metaphlan2.txt" << "" << false << "Firmicutes" << 40.0
                                            << "" << "Bacteria";
    }

    void newChart()
    {
        QFETCH(QString, type);
        QFETCH(QString, file);
        QFETCH(QString, option);
        QFETCH(bool, cached);
        QFETCH(QString, slice);
        QFETCH(double, share);
        QFETCH(QString, refusal);
        QFETCH(QString, centre);
        if (cached)
            writeTaxonomy();
        qputenv("SORVIK_TAXDUMP_URL", Sorvik::Test::HttpServer::refusingUrl(QStringLiteral("/taxdmp.zip")).toEncoded());
        prompter->onDialog = inTurn(wizard(type, fixturePath(file), option), waitForClose);
        window->slotFileNew();
        qunsetenv("SORVIK_TAXDUMP_URL");

        // The inputs placed in the NCBI taxonomy are built in the background, behind a progress
        // dialog; a report follows when the taxonomy could not place some reads.
        const bool report = slice == QLatin1String("Unknown taxon ids");
        const Zem::Ontology::InputFormat* format = Zem::Ontology::InputFormat::find(type);
        QCOMPARE(prompter->dialogs.size(), (format && format->needsTaxonomy ? 2 : 1) + report);
        QVERIFY(!window->isBuilding());
        // The cache is the taxonomy still, uncounted; none is left from a failed download.
        QTRY_COMPARE(QFile::exists(ncbi()), cached);
        if (!refusal.isEmpty()) {
            QCOMPARE(shown(), QStringList{refusal});
            QCOMPARE(state(), QStringLiteral("closed 000000"));
            return;
        }
        QVERIFY(shown().isEmpty());
        QCOMPARE(state(), QStringLiteral("working unsaved %1 110001").arg(centre));
        QVERIFY(!cached || !Zem::Ontology::Ontology(ncbi()).isCounted());
        const PieChartItem* found = sliceNamed(chart(), slice);
        QVERIFY2(found, qPrintable(slice));
        QVERIFY(std::abs(found->getPercentage() - share) < 1e-9);
    }

    // Once the chart is drawn, the window says what the reading of its input passed over.
    void newChartSaysWhatItPassedOver_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QByteArray>("input");
        QTest::addColumn<QString>("said");
        QTest::newRow("a report cut short") << "kreport" << fileContents(fixturePath(QStringLiteral("formats/cut-short.kreport")))
                                            << "Information Input notes: 1 of 4 rows disagree with the rows below them, as "
                                               "in a cut or filtered report; the chart follows their clade reads (first: "
                                               "line 5: 'Viruses' has 40 clade reads, but its own and its children's add up "
                                               "to 0)";
        // Few enough bad lines that the file still looks like its format.
        QTest::newRow("lines passed over") << "kraken-reads" << QByteArray("C\tr1\t562\t9\nbad\n").append(QByteArray("C\tr2\t562\t9\n").repeated(10))
                                           << "Warning Input not read in full: skipped 1 of 12 lines (first: line 2: it "
                                              "does not start with C or U and a TAB)";
    }

    void newChartSaysWhatItPassedOver()
    {
        QFETCH(QString, type);
        QFETCH(QByteArray, input);
        QFETCH(QString, said);
        writeTaxonomy();
        const QString file = write(QStringLiteral("input.txt"), input);
        QVERIFY(!file.isEmpty());
        prompter->onDialog = inTurn(wizard(type, file), waitForClose);
        window->slotFileNew();
        QTRY_VERIFY(!window->isBuilding());
        QCOMPARE(shown(), QStringList{said});
        QVERIFY(state().startsWith(QLatin1String("working unsaved ")));
    }

    void closeAsksToSaveANewChart_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("saveAs");
        QTest::addColumn<bool>("closed");
        QTest::newRow("save") << int(QMessageBox::Save) << "kept.piechart" << true;
        QTest::newRow("save, then cancel the file dialog") << int(QMessageBox::Save) << QString() << true;
        QTest::newRow("don't save") << int(QMessageBox::No) << QString() << true;
        QTest::newRow("cancel") << int(QMessageBox::Cancel) << QString() << false;
    }

    void closeAsksToSaveANewChart()
    {
        QFETCH(int, answer);
        QFETCH(QString, saveAs);
        QFETCH(bool, closed);
        newKronaChart();
        prompter->answers = {QMessageBox::StandardButton(answer)};
        prompter->saveNames = QStringList{saveAs.isEmpty() ? QString() : path(saveAs)};
        QCloseEvent event;
        QApplication::sendEvent(window.get(), &event);
        QCOMPARE(event.isAccepted(), closed);
        QCOMPARE(shown(), QStringList{"Question Save piechart: Do you want to save the current pie chart?"});
        QCOMPARE(prompter->saveDialogs, answer == QMessageBox::Save ? 1 : 0);
        QCOMPARE(state(), closed ? QStringLiteral("closed 000000") : QStringLiteral("working unsaved root 110001"));
        if (!saveAs.isEmpty())
            QCOMPARE(fileContents(path(saveAs)), fileContents(working()));
    }

    void saveAsKeepsWorkingOnTheWorkingFile_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<bool>("saved");
        QTest::newRow("over an older file") << "old.piechart" << true;
        QTest::newRow("over the working file itself") << MainWindow::workingFileName << true;
        QTest::newRow("into a missing folder") << "missing/folder/chart.piechart" << false;
    }

    void saveAsKeepsWorkingOnTheWorkingFile()
    {
        QFETCH(QString, target);
        QFETCH(bool, saved);
        newKronaChart();
        const QByteArray chartBytes = fileContents(working());
        QVERIFY(!write(QStringLiteral("old.piechart"), "an older chart").isEmpty());

        prompter->saveNames = QStringList{path(target)};
        window->slotFileSaveAs();
        const QString stateAfter = QStringLiteral("working %1 root 110001").arg(saved ? "saved" : "unsaved");
        QCOMPARE(state(), stateAfter);
        QCOMPARE(fileContents(working()), chartBytes);
        if (saved) {
            QVERIFY(shown().isEmpty());
            QCOMPARE(fileContents(path(target)), chartBytes);
        } else {
            QCOMPARE(shown(),
                     QStringList{"Critical Problem saving file: The pie chart couldn't be saved as " + path(target) + "."});
            QVERIFY(!QFile::exists(path(target)));
        }

        // The copy goes away; new view settings still draw from the working file.
        if (target != MainWindow::workingFileName)
            QFile::remove(path(target));
        const int messages = shown().size();
        QVERIFY(sliceNamed(chart(), QStringLiteral("Archaea")));
        prompter->onDialog = [](QDialog& dialog) {
            dynamic_cast<Sorvik::Viewer::ViewPreferencesDialog&>(dialog).setMaxLevels(2);
            dynamic_cast<Sorvik::Viewer::ViewPreferencesDialog&>(dialog).setMinPercentage(20);
            return int(QDialog::Accepted);
        };
        window->slotViewPreferences();
        QCOMPARE(shown().size(), messages);
        QCOMPARE(state(), stateAfter);
        QCOMPARE(Sorvik::Test::ringCount(chart()), 2);
        // 30 of 350 is below the new cutoff.
        QVERIFY(!sliceNamed(chart(), QStringLiteral("Archaea")));
        QVERIFY(sliceNamed(chart(), QStringLiteral("Bacteria")));
    }

    void openedChartNavigatesFromThePositionAndClosesQuietly_data()
    {
        QTest::addColumn<QString>("entered");
        QTest::addColumn<QStringList>("stepsOut");
        QTest::newRow("child") << "Bacteria" << QStringList{"root"};
        QTest::newRow("three levels down") << "Lactobacillales" << QStringList{"Bacilli", "Firmicutes", "Bacteria", "root"};
    }

    void openedChartNavigatesFromThePositionAndClosesQuietly()
    {
        QFETCH(QString, entered);
        QFETCH(QStringList, stepsOut);
        QCOMPARE(state(), QStringLiteral("closed 000000"));
        openTree(deepTree);
        QCOMPARE(state(), QStringLiteral("saved.piechart saved root 110001"));
        select(entered);
        QCOMPARE(window->getView()->getScene()->getSelectedItem(), sliceNamed(chart(), entered));
        QCOMPARE(state(), QStringLiteral("saved.piechart saved root 111001"));
        const PieChartItem::Position position = sliceNamed(chart(), entered)->getPosition();
        window->getActions().stepInto->trigger();

        QCOMPARE(state(), QStringLiteral("saved.piechart saved %1 110111").arg(entered));
        QCOMPARE(window->getNavigator().getCurrentPosition(), position);
        for (const QString& expected : stepsOut) {
            window->getActions().stepOut->trigger();
            QCOMPARE(centre(), expected);
        }
        QVERIFY(window->getNavigator().isAtRoot());
        QCOMPARE(state(), QStringLiteral("saved.piechart saved root 110001"));

        // Go to root from deep down; entering the centre then changes nothing.
        select(entered);
        window->getActions().stepInto->trigger();
        window->getActions().goRoot->trigger();
        QCOMPARE(state(), QStringLiteral("saved.piechart saved root 110001"));
        PieChartItem* before = chart();
        select(QStringLiteral("root"));
        window->slotNavigationStepInto();
        QCOMPARE(chart(), before);
        QVERIFY(window->getNavigator().isAtRoot());

        // A cancelled wizard keeps the chart, and asks nothing.
        const QString kept = state();
        window->slotFileNew();
        QCOMPARE(prompter->dialogs, QStringList{QStringLiteral("Sorvik::Viewer::NewPiechartWizard")});
        QCOMPARE(state(), kept);
        QVERIFY(!QFile::exists(working()));
        QVERIFY(shown().isEmpty());
    }

    void cancellingTheBuildLeavesNothing()
    {
        writeTaxonomy();
        // A long input, so that counting lasts long enough to be cancelled.
        const QString ids = write(QStringLiteral("many.txt"), QByteArray("9606\n562\n").repeated(100000));
        QVERIFY(!ids.isEmpty());
        const Script cancel = [](QDialog& dialog) {
            dialog.reject();
            return dialog.result();
        };
        prompter->onDialog = inTurn(wizard(QStringLiteral("taxids"), ids, QStringLiteral("id")), cancel);
        window->slotFileNew();
        QVERIFY(shown().isEmpty());
        QCOMPARE(state(), QStringLiteral("closed 000000"));
        // The task ends on its own and takes its partial files with it; the cache it did not make stays.
        QTRY_VERIFY(!QFile::exists(working()));
        QVERIFY(QFile::exists(ncbi()));
        // A new chart right after is not disturbed by the ending task.
        newKronaChart();
        QTest::qWait(50);
        QVERIFY(QFile::exists(working()));
    }

    void viewPreferencesDrawChartsTheirWay_data()
    {
        QTest::addColumn<QString>("palette");
        QTest::addColumn<bool>("collapse");
        QTest::addColumn<bool>("raw");
        QTest::addColumn<QString>("centre");
        QTest::addColumn<QString>("firmicutes");
        QTest::newRow("as at start") << "soft" << true << false << "Bacteria" << "Firmicutes";
        QTest::newRow("names as stored") << "soft" << true << true << "d__Bacteria" << "p__Firmicutes";
        QTest::newRow("chains on rings of their own") << "soft" << false << false << "root" << "Firmicutes";
        QTest::newRow("another palette") << "okabe-ito" << true << false << "Bacteria" << "Firmicutes";
    }

    void viewPreferencesDrawChartsTheirWay()
    {
        QFETCH(QString, palette);
        QFETCH(bool, collapse);
        QFETCH(bool, raw);
        QFETCH(QString, centre);
        QFETCH(QString, firmicutes);
        openTree(QStringLiteral("root(b=\"d__Bacteria\"(f=\"p__Firmicutes\":3 p=\"p__Proteobacteria\":2))"));
        const QColor before = sliceNamed(chart(), QStringLiteral("Firmicutes"))->getColor();
        prompter->onDialog = [&](QDialog& dialog) {
            auto& preferences = dynamic_cast<Sorvik::Viewer::ViewPreferencesDialog&>(dialog);
            preferences.setPalette(palette);
            preferences.setCollapsing(collapse);
            preferences.setShowingRawNames(raw);
            return int(QDialog::Accepted);
        };
        window->slotViewPreferences();
        QCOMPARE(this->centre(), centre);
        const PieChartItem* slice = sliceNamed(chart(), firmicutes);
        QVERIFY(slice);
        QCOMPARE(slice->getColor() == before, palette == QLatin1String("soft"));
        // Remembered for the next chart and the next run.
        const Sorvik::App::Settings settings;
        QCOMPARE(settings.getPalette(), palette);
        QCOMPARE(settings.isCollapsing(), collapse);
        QCOMPARE(settings.isShowingRawNames(), raw);
    }

    void matchColoursTakesTheOtherChartsColours()
    {
        // The other sample: Proteobacteria is its largest phylum, so it has the first colour there.
        const QString other = path(QStringLiteral("other.piechart"));
        Sorvik::Test::writeTree(other, QStringLiteral("root(p=Proteobacteria:9 f=Firmicutes:3 a=Actinobacteria:1)"));
        const QColor wanted = sliceNamed(Sorvik::Test::buildChart(other).get(), QStringLiteral("Firmicutes"))->getColor();
        openTree(QStringLiteral("root(f=Firmicutes:9 b=Bacteroidetes:5)"));
        QVERIFY(sliceNamed(chart(), QStringLiteral("Firmicutes"))->getColor() != wanted);

        prompter->openNames = QStringList{other};
        window->slotViewMatchColours();
        QVERIFY(shown().isEmpty());
        QCOMPARE(sliceNamed(chart(), QStringLiteral("Firmicutes"))->getColor(), wanted);
        QVERIFY(sliceNamed(chart(), QStringLiteral("Bacteroidetes"))->getColor() != wanted);
        // Kept while stepping about, and refused with the file's name when it is no chart.
        select(QStringLiteral("Firmicutes"));
        window->slotNavigationStepInto();
        QCOMPARE(chart()->getColor(), wanted);
        prompter->openNames = QStringList{path(QStringLiteral("missing.piechart"))};
        window->slotViewMatchColours();
        QCOMPARE(shown().size(), 1);
        QVERIFY2(shown().first().contains(path(QStringLiteral("missing.piechart"))), qPrintable(shown().first()));
        QCOMPARE(chart()->getColor(), wanted);
    }

    void hoverShowsThePathInTheStatusBar()
    {
        openTree(deepTree);
        select(QStringLiteral("Firmicutes"));
        window->slotNavigationStepInto();
        const PieChartItem* bacilli = sliceNamed(chart(), QStringLiteral("Bacilli"));
        QVERIFY(bacilli);
        // The middle of the slice, in the scene.
        const double middle = bacilli->getAngleRad() / 2;
        const double radius = bacilli->getRadius() + bacilli->getRadiusOffset() / 2;
        QGraphicsSceneMouseEvent move(QEvent::GraphicsSceneMouseMove);
        move.setScenePos(bacilli->mapToScene(QPointF(radius * std::cos(middle), -radius * std::sin(middle))));
        QCoreApplication::sendEvent(window->getView()->getScene(), &move);
        // The whole path from the root, though the chart's centre is Firmicutes: 50 of its 60
        // reads, 50 of the chart's 100.
        QCOMPARE(window->statusBar()->currentMessage(),
                 QStringLiteral("root \u203a Bacteria \u203a Firmicutes \u203a Bacilli: count 50, 83.33 % of the centre, "
                                "50.00 % of the whole chart"));
        move.setScenePos(QPointF(1e6, 1e6));
        QCoreApplication::sendEvent(window->getView()->getScene(), &move);
        QVERIFY(window->statusBar()->currentMessage().isEmpty());
    }

    void realKronaAndQiimeFiles_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("file");
        const QString real = Sorvik::Test::realDataPath();
        if (real.isEmpty())
            QSKIP("no real data beside the checkout");
        for (const QString& type : {QStringLiteral("krona"), QStringLiteral("qiime")}) {
            const QDir folder(QDir(real).filePath(type));
            for (const QString& name : folder.entryList(QDir::Files, QDir::Name))
                QTest::newRow(qPrintable(type + QLatin1Char('/') + name)) << type << folder.filePath(name);
        }
    }

    // Each file gives the chart its counts imply (for QIIME, the first column's shares times
    // 10 000, less what each row loses to whole numbers); one that counts nothing is refused.
    void realKronaAndQiimeFiles()
    {
        QFETCH(QString, type);
        QFETCH(QString, file);
        prompter->onDialog = wizard(type, file, QStringLiteral("0"));
        window->slotFileNew();
        qint64 least = 0;
        qint64 most = 0;
        if (type == QLatin1String("krona")) {
            least = most = Sorvik::Test::kronaTotals(file).total;
        } else {
            const Sorvik::Test::QiimeTotals qiime = Sorvik::Test::qiimeTotals(file, 0);
            most = qint64(std::ceil(qiime.sum * Zem::Ontology::InputFormat::abundanceMultiplier));
            least = qint64(std::floor(qiime.sum * Zem::Ontology::InputFormat::abundanceMultiplier)) - qiime.rows;
        }
        if (most < 1) {
            QVERIFY(!chart());
            // Refused before it is read when it does not look like its format.
            QCOMPARE(shown().size(), 1);
            QVERIFY2(shown().first() == QLatin1String("Critical Problem opening piechart: Piechart couldn't be generated")
                         || shown().first().startsWith("Warning Problem reading input: " + file + " doesn't look like"),
                     qPrintable(shown().first()));
            return;
        }
        QVERIFY2(chart(), qPrintable(shown().join(QLatin1Char('\n'))));
        QVERIFY(shown().isEmpty());
        QVERIFY2(chart()->getTotal() >= qMax<qint64>(1, least) && chart()->getTotal() <= most,
                 qPrintable(QStringLiteral("%1, expected %2 to %3").arg(chart()->getTotal()).arg(least).arg(most)));
        select(centre());
    }

private:
    QString working() const { return path(MainWindow::workingFileName); }
    QString ncbi() const { return path(Sorvik::App::Settings::taxonomyFileName); }
    // The window at a glance: "closed", or the chart's file ("working" for the working file),
    // whether it is saved, and the label at the centre; then which of Save as, Close, Step into,
    // Go to root, Step out and View preferences are enabled, as 0 and 1.
    QString state() const
    {
        const MainWindow::Actions& a = window->getActions();
        QString word;
        for (const QAction* action : {a.fileSaveAs, a.fileClose, a.stepInto, a.goRoot, a.stepOut, a.viewPreferences})
            word += action->isEnabled() ? QLatin1Char('1') : QLatin1Char('0');
        const nu::AppFileHandler& handler = window->getFileHandler();
        if (window->getBrowser()->getPieChart() != chart())
            return QStringLiteral("the browser shows another chart");
        if (!handler.isOpened())
            return chart() ? QStringLiteral("closed, with a chart shown") : QStringLiteral("closed ") + word;
        const QString file = handler.getFileName() == working() ? QStringLiteral("working")
                                                                : QFileInfo(handler.getFileName()).fileName();
        return QStringLiteral("%1 %2 %3 %4").arg(file, handler.shouldSave() ? "unsaved" : "saved", centre(), word);
    }

    // A cached taxonomy of five named taxa.
    void writeTaxonomy() const
    {
        Sorvik::Test::writeTree(ncbi(),
                                QStringLiteral("1=root(131567=\"cellular organisms\"(2=Bacteria(561=Escherichia("
                                               "562=\"Escherichia coli\")) 2759=Eukaryota(9606=\"Homo sapiens\")))"),
                                false);
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
