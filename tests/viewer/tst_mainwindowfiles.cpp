#include "tests/support/charts.h"
#include "tests/support/fixtures.h"
#include "tests/support/treeliteral.h"
#include "tests/support/windowcase.h"
#include "viewer/browser.h"
#include "viewer/mainwindow.h"
#include "viewer/newpiechartwizard.h"
#include "viewer/piechartitem.h"
#include "viewer/scene.h"
#include "viewer/settings.h"
#include "viewer/view.h"

#include <QAction>
#include <QDockWidget>
#include <QHeaderView>
#include <QListWidget>
#include <QMimeData>
#include <QTreeView>
#include <QtTest>


using Sorvik::Test::fixturePath;
using Sorvik::Test::sliceNamed;
using Sorvik::Viewer::MainWindow;
using Sorvik::Viewer::NewPiechartWizard;
using Sorvik::Viewer::PieChartItem;
using Sorvik::Test::Script;
using Sorvik::Test::wizard;

namespace {

int reject(QDialog&)
{
    return QDialog::Rejected;
}

// A chart whose Actinobacteria hold 8 of 2508 reads: at 0.5 % they are not drawn, nor is
// anything below them.
const QString bigTree = QStringLiteral("root(b=Bacteria(act=Actinobacteria:1(bif=Bifidobacteriales:1(bi=Bifidobacterium:3 "
                                       "g=Gardnerella:2) c=Corynebacteriales:1) f=Firmicutes:2000) a=Archaea:500)");

} // namespace

class TestMainWindowFiles : public Sorvik::Test::WindowCase
{
    Q_OBJECT
private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    // Cancelling anywhere before the user commits keeps the open chart as it was. Rows: what
    // File > Open is given (empty: New), the wizard's input (empty: cancelled), the answers to
    // the messages, and the title of the last one.
    void cancellingKeepsTheOpenChart_data()
    {
        QTest::addColumn<QString>("opened");
        QTest::addColumn<QString>("input");
        QTest::addColumn<QList<int>>("answers");
        QTest::addColumn<QString>("title");
        const QString krona = fixturePath(QStringLiteral("viewer/small.krona.txt"));
        QTest::newRow("open: the file dialog cancelled") << "<none>" << "" << QList<int>() << "";
        QTest::newRow("open: the save question cancelled")
            << "other.piechart" << "" << QList<int>{QMessageBox::Cancel} << "Save piechart";
        QTest::newRow("new: the wizard cancelled") << "" << "" << QList<int>() << "";
        QTest::newRow("new: the save question cancelled")
            << "" << krona << QList<int>{QMessageBox::Cancel} << "Save piechart";
        QTest::newRow("new: the input refused") << "" << "missing.txt" << QList<int>() << "Problem reading input";
        QTest::newRow("open input: the offer declined") << krona << "" << QList<int>{QMessageBox::No} << "Open file";
        QTest::newRow("open input: the wizard cancelled") << krona << "" << QList<int>{QMessageBox::Yes} << "Open file";
    }

    void cancellingKeepsTheOpenChart()
    {
        QFETCH(QString, opened);
        QFETCH(QString, input);
        QFETCH(QList<int>, answers);
        QFETCH(QString, title);
        newKronaChart();
        PieChartItem* before = chart();
        Sorvik::Test::writeTree(path(QStringLiteral("other.piechart")), QStringLiteral("root(x=Other:5)"));
        for (int answer : answers)
            prompter->answers << QMessageBox::StandardButton(answer);
        prompter->onDialog = input.isEmpty() ? Script(reject) : wizard(QStringLiteral("krona"), QDir(dir->path()).absoluteFilePath(input));
        if (opened.isEmpty()) {
            window->slotFileNew();
        } else {
            prompter->openNames = QStringList{opened == QLatin1String("<none>") ? QString() : QDir(dir->path()).absoluteFilePath(opened)};
            window->slotFileOpen();
        }
        QCOMPARE(chart(), before);
        QCOMPARE(window->getBrowser()->getPieChart(), before);
        QVERIFY(window->getFileHandler().shouldSave());
        QCOMPARE(prompter->lastTitle(), title);
    }

    // Open, the command line and a drop offer any input Sorvik reads as a new chart, the format
    // and the file filled in.
    void openOffersTheWizardForInputs_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("via");
        QTest::newRow("krona through Open") << "viewer/small.krona.txt" << "krona" << "open";
        QTest::newRow("qiime from the command line") << "viewer/small.qiime.txt" << "qiime" << "command line";
        // The variant of another format's page.
        QTest::newRow("ids with counts dropped") << "viewer/taxid-counts.txt" << "taxid-counts" << "drop";
    }

    void openOffersTheWizardForInputs()
    {
        QFETCH(QString, file);
        QFETCH(QString, format);
        QFETCH(QString, via);
        const QString input = fixturePath(file);
        QString chosenFormat;
        QString chosenFile;
        prompter->answers = {QMessageBox::Yes};
        // Reads what the wizard shows, then cancels it.
        prompter->onDialog = [&](QDialog& dialog) {
            auto& wizard = dynamic_cast<NewPiechartWizard&>(dialog);
            chosenFormat = wizard.getFormat() ? wizard.getFormat()->word : QString();
            chosenFile = wizard.getInputFileName();
            return int(QDialog::Rejected);
        };
        if (via == QLatin1String("open")) {
            prompter->openNames = QStringList{input};
            window->slotFileOpen();
        } else if (via == QLatin1String("drop")) {
            drop(input);
        } else {
            window->openChartOrInput(input);
        }
        QCOMPARE(prompter->shown.size(), 1);
        QCOMPARE(prompter->shown.first().title, QStringLiteral("Open file"));
        QVERIFY2(prompter->shown.first().text.startsWith(QDir::toNativeSeparators(input) + " is not a Sorvik pie chart"),
                 qPrintable(prompter->shown.first().text));
        QCOMPARE(chosenFormat, format);
        QCOMPARE(chosenFile, input);
    }

    void anAcceptedOfferMakesTheChart()
    {
        prompter->answers = {QMessageBox::Yes};
        prompter->onDialog = [](QDialog&) { return int(QDialog::Accepted); };
        drop(fixturePath(QStringLiteral("viewer/small.krona.txt")));
        QVERIFY(chart());
        QVERIFY(sliceNamed(chart(), QStringLiteral("Firmicutes")));
        QVERIFY(window->getFileHandler().shouldSave());
        // A saved chart dropped replaces it after the save question.
        Sorvik::Test::writeTree(path(QStringLiteral("other.piechart")), QStringLiteral("root(x=Other:5)"));
        prompter->answers = {QMessageBox::No};
        drop(path(QStringLiteral("other.piechart")));
        QVERIFY(sliceNamed(chart(), QStringLiteral("Other")));
        QCOMPARE(prompter->lastTitle(), QStringLiteral("Save piechart"));
    }

    void saveAsAddsTheSuffix_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("saved");
        QTest::addColumn<QList<int>>("answers");
        QTest::newRow("no suffix") << "kept" << "kept.piechart" << QList<int>();
        QTest::newRow("a suffix of its own") << "kept.chart" << "kept.chart" << QList<int>();
        QTest::newRow("a dotted folder, no suffix") << "v1.2/kept" << "v1.2/kept.piechart" << QList<int>();
        QTest::newRow("the suffixed name exists, replaced") << "old" << "old.piechart" << QList<int>{QMessageBox::Yes};
        QTest::newRow("the suffixed name exists, kept") << "old" << "" << QList<int>{QMessageBox::No};
    }

    void saveAsAddsTheSuffix()
    {
        QFETCH(QString, given);
        QFETCH(QString, saved);
        QFETCH(QList<int>, answers);
        QVERIFY(QDir(dir->path()).mkpath(QStringLiteral("v1.2")));
        QVERIFY(!write(QStringLiteral("old.piechart"), "older").isEmpty());
        newKronaChart();
        for (int answer : answers)
            prompter->answers << QMessageBox::StandardButton(answer);
        prompter->saveNames = QStringList{path(given)};
        window->slotFileSaveAs();
        QCOMPARE(prompter->shown.size(), answers.size());
        if (saved.isEmpty()) {
            QCOMPARE(Sorvik::Test::fileContents(path(QStringLiteral("old.piechart"))), QByteArray("older"));
            QVERIFY(window->getFileHandler().shouldSave());
            return;
        }
        QCOMPARE(Sorvik::Test::fileContents(path(saved)), Sorvik::Test::fileContents(path(MainWindow::workingFileName)));
        QVERIFY(!QFile::exists(path(given)) || given == saved);
        QVERIFY(!window->getFileHandler().shouldSave());
        QVERIFY(window->windowTitle().startsWith(QFileInfo(saved).fileName() + "[*]"));
    }

    void saveAsHasCtrlShiftS()
    {
        QVERIFY(window->getActions().fileSaveAs->shortcuts().contains(QKeySequence(QStringLiteral("Ctrl+Shift+S"))));
    }

    void titleNamesTheFileAndMarksUnsavedCharts()
    {
        QCOMPARE(window->windowTitle(), QStringLiteral("Sorvik Piechart Viewer"));
        newKronaChart();
        QCOMPARE(window->windowTitle(), QStringLiteral("target.piechart[*] \u2014 Sorvik Piechart Viewer"));
        QVERIFY(window->isWindowModified());
        prompter->answers = {QMessageBox::No};
        window->slotFileClose();
        QCOMPARE(window->windowTitle(), QStringLiteral("Sorvik Piechart Viewer"));
        QVERIFY(!window->isWindowModified());
        openTree(QStringLiteral("root(x=Other:5)"), QStringLiteral("mine.piechart"));
        QCOMPARE(window->windowTitle(), QStringLiteral("mine.piechart[*] \u2014 Sorvik Piechart Viewer"));
        QVERIFY(!window->isWindowModified());
    }

    void navigationFindsTaxaThatAreNotDrawn()
    {
        openBigTree();
        // Bifidobacterium holds 3 of 2508 reads: below the cutoff, not drawn.
        QVERIFY(!sliceNamed(chart(), QStringLiteral("Bifidobacterium")));
        Sorvik::Viewer::Browser* browser = window->getBrowser();
        browser->setFilterText(QStringLiteral("bifido"));
        QListWidget* undrawn = browser->getUndrawnList();
        QCOMPARE(undrawn->count(), 2);
        QCOMPARE(undrawn->item(0)->text(), QStringLiteral("Bifidobacteriales"));
        QCOMPARE(undrawn->item(1)->text(), QStringLiteral("Bifidobacterium"));
        QVERIFY(browser->getFilterNotice().isEmpty());

        // Choosing it draws the chart from its parent, with it selected.
        emit undrawn->itemActivated(undrawn->item(1));
        QCOMPARE(chart()->getText().text, QStringLiteral("Bifidobacteriales"));
        PieChartItem* selected = window->getView()->getScene()->getSelectedItem();
        QVERIFY(selected);
        QCOMPARE(selected->getText().text, QStringLiteral("Bifidobacterium"));
        QVERIFY(window->getActions().stepInto->isEnabled());
        // Stepping out goes through its real ancestors.
        window->getActions().stepOut->trigger();
        QCOMPARE(chart()->getText().text, QStringLiteral("Actinobacteria"));

        browser->setFilterText(QStringLiteral("Homo"));
        QCOMPARE(browser->getFilterNotice(), QStringLiteral("No taxon matches \u201cHomo\u201d."));
        QCOMPARE(undrawn->count(), 0);
        browser->setFilterText(QString());
        QVERIFY(browser->getFilterNotice().isEmpty());
    }

    void doubleClickingARowStepsIntoIt()
    {
        openBigTree();
        QTreeView* tree = window->getBrowser()->getTreeView();
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        const QModelIndexList found = tree->model()->match(tree->model()->index(0, 0), Qt::DisplayRole,
                                                           QStringLiteral("Archaea"), 1, Qt::MatchRecursive);
        QCOMPARE(found.size(), 1);
        const QPoint centre = tree->visualRect(found.first()).center();
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, centre);
        QTest::mouseDClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, centre);
        QCOMPARE(chart()->getText().text, QStringLiteral("Archaea"));
    }

    void theDockShrinksAndTheNameColumnTakesTheWidth()
    {
        openBigTree();
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        auto* dock = window->findChild<QDockWidget*>(QStringLiteral("navigationDock"));
        QVERIFY(dock);
        window->resize(420, 400);
        QTRY_VERIFY2(dock->width() <= 200, qPrintable(QString::number(dock->width())));
        window->resize(1100, 700);
        window->resizeDocks({dock}, {500}, Qt::Horizontal);
        QTRY_VERIFY(dock->width() >= 400);
        QTreeView* tree = window->getBrowser()->getTreeView();
        QHeaderView* header = tree->header();
        // The name takes all the width the count and the share leave.
        QTRY_COMPARE(header->sectionSize(0) + header->sectionSize(1) + header->sectionSize(2), tree->viewport()->width());
        QVERIFY(header->sectionSize(0) > header->sectionSize(1) + header->sectionSize(2));
    }

private:
    void openBigTree()
    {
        openTree(bigTree);
        QVERIFY(chart());
    }

    // Drops a file on the window as a file manager would; what it starts runs once the drop is over.
    void drop(const QString& file)
    {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(file)});
        QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent dropped(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.get(), &dropped);
        QVERIFY(dropped.isAccepted());
        QTest::qWait(20);
        QCoreApplication::processEvents();
    }
};

QTEST_MAIN(TestMainWindowFiles)
#include "tst_mainwindowfiles.moc"
