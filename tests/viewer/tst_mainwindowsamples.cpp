#include "resources/resources.h"
#include "tests/support/charts.h"
#include "tests/support/samplechart.h"
#include "tests/support/scriptedprompter.h"
#include "viewer/browser.h"
#include "viewer/browsermodel.h"
#include "viewer/comparedialog.h"
#include "viewer/comparegrid.h"
#include "viewer/comparewindow.h"
#include "viewer/mainwindow.h"
#include "viewer/newpiechartwizard.h"
#include "viewer/piechartitem.h"
#include "viewer/samplechooser.h"
#include "viewer/scene.h"
#include "viewer/settings.h"
#include "viewer/view.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QSortFilterProxyModel>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QToolBar>
#include <QTreeView>
#include <QtTest>

using Sorvik::Test::ScriptedPrompter;
using Sorvik::Test::sliceNamed;
using Sorvik::Viewer::CompareDialog;
using Sorvik::Viewer::CompareWindow;
using Sorvik::Viewer::MainWindow;
using Sorvik::Viewer::PieChartItem;
using Sorvik::Viewer::View;

namespace {

// Three samples over one tree: S3 has no Firmicutes, S2 no Archaea.
const QList<QPair<QString, QString>> study{
    {"S1", "120\tBacteria\tFirmicutes\tBacilli\n60\tBacteria\tFirmicutes\tClostridia\n"
           "80\tBacteria\tProteobacteria\n30\tArchaea\n"},
    {"S2", "10\tBacteria\tFirmicutes\tBacilli\n200\tBacteria\tProteobacteria\n40\tBacteria\tBacteroidetes\n"},
    {"S3", "50\tBacteria\tProteobacteria\n50\tArchaea\n"},
};

PieChartItem* chartOf(const View* view)
{
    return view ? view->getScene()->getPieChart() : nullptr;
}

// The count drawn for a taxon, or -1 when it is not drawn.
qint64 countOf(const View* view, const QString& name)
{
    PieChartItem* slice = chartOf(view) ? sliceNamed(chartOf(view), name) : nullptr;
    return slice ? slice->getAccumCount() : -1;
}

QColor colourOf(const View* view, const QString& name)
{
    PieChartItem* slice = chartOf(view) ? sliceNamed(chartOf(view), name) : nullptr;
    return slice ? slice->getColor() : QColor();
}

} // namespace

class TestMainWindowSamples : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        Sorvik::initResources();
    }

    void init()
    {
        dir = std::make_unique<QTemporaryDir>();
        QVERIFY(dir->isValid());
        Sorvik::App::Settings().setPath(dir->path());
        prompter = std::make_shared<ScriptedPrompter>();
        window = std::make_unique<MainWindow>();
        window->setPrompter(prompter);
    }

    void cleanup()
    {
        prompter->answers = {QMessageBox::No};
        window.reset();
        dir.reset();
    }

    void oneSampleShowsNoChooser()
    {
        openStudy({study.first()});
        QVERIFY(chart());
        const Sorvik::Viewer::SampleChooser* chooser = window->getSampleChooser();
        QCOMPARE(chooser->getCount(), 1);
        QVERIFY(!chooser->isShown());
        QVERIFY(!chooser->getPrevious()->isEnabled() && !chooser->getPrevious()->isVisible());
        QVERIFY(!chooser->getNext()->isEnabled() && !chooser->getNext()->isVisible());
        QVERIFY(!chooser->getComboBox()->isEnabled());
        QVERIFY(!window->getCompareAction()->isEnabled());
        QVERIFY(window->findChild<QToolBar*>(QStringLiteral("samplesToolBar"))->isHidden());
        QCOMPARE(window->getBrowser()->getTreeView()->model()->headerData(1, Qt::Horizontal).toString(),
                 QStringLiteral("Count"));
        // The shortcut does nothing.
        window->getSampleChooser()->slotNext();
        QCOMPARE(chooser->getCurrent(), 0);
    }

    // File > New given several files makes one chart with a sample of each, named after them.
    void newChartOfSeveralFiles()
    {
        QStringList quoted;
        for (const auto& sample : study) {
            const QString file = dir->filePath(sample.first + QStringLiteral(".krona.txt"));
            QFile out(file);
            QVERIFY(out.open(QIODevice::WriteOnly) && out.write(sample.second.toUtf8()) > 0);
            quoted << QLatin1Char('"') + file + QLatin1Char('"');
        }
        prompter->onDialog = [&quoted](QDialog& dialog) {
            auto& wizard = dynamic_cast<Sorvik::Viewer::NewPiechartWizard&>(dialog);
            wizard.setField(QStringLiteral("input-type-krona"), true);
            wizard.setField(QStringLiteral("krona-source-filename"), quoted.join(QLatin1Char(' ')));
            return int(QDialog::Accepted);
        };
        window->slotFileNew();
        QVERIFY2(chart(), qPrintable(prompter->lastTitle()));
        const Sorvik::Viewer::SampleChooser* chooser = window->getSampleChooser();
        QCOMPARE(chooser->getNames(), (QStringList{"S1", "S2", "S3"}));
        QCOMPARE(chooser->getTotals(), (QList<qint64>{290, 250, 100}));
        QVERIFY(chooser->isShown());
    }

    void switchingKeepsCentreAndColours_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<int>("sample");
        QTest::newRow("combo box") << "combo" << 1;
        QTest::newRow("next sample") << "next" << 1;
        QTest::newRow("combo box to the last") << "combo" << 2;
    }

    void switchingKeepsCentreAndColours()
    {
        QFETCH(QString, how);
        QFETCH(int, sample);
        openStudy(study);
        QVERIFY(window->getSampleChooser()->isShown());
        QVERIFY(window->getCompareAction()->isEnabled());
        stepInto(window->getView(), QStringLiteral("Bacteria"));
        const auto centre = window->getNavigator().getCurrentPosition();
        QCOMPARE(chart()->getChainNames().last(), QStringLiteral("Bacteria"));
        const QColor proteobacteria = colourOf(window->getView(), QStringLiteral("Proteobacteria"));
        QVERIFY(proteobacteria.isValid());
        QCOMPARE(countOf(window->getView(), QStringLiteral("Proteobacteria")), qint64(80));

        if (how == QLatin1String("combo"))
            window->getSampleChooser()->getComboBox()->setCurrentIndex(sample);
        else
            window->getSampleChooser()->getNext()->trigger();

        QCOMPARE(window->getSampleChooser()->getCurrent(), sample);
        QCOMPARE(window->getNavigator().getCurrentPosition(), centre);
        QVERIFY(chart());
        QVERIFY(chart()->getChainNames().contains(QStringLiteral("Bacteria")));
        QCOMPARE(countOf(window->getView(), QStringLiteral("Proteobacteria")), sample == 1 ? qint64(200) : qint64(50));
        QCOMPARE(colourOf(window->getView(), QStringLiteral("Proteobacteria")), proteobacteria);
        // The Navigation panel lists the sample drawn, and names it.
        QCOMPARE(window->getBrowser()->getPieChart(), chart());
        const QAbstractItemModel* listed = window->getBrowser()->getTreeView()->model();
        QCOMPARE(listed->columnCount(), 3);
        QCOMPARE(listed->headerData(1, Qt::Horizontal).toString(), study.at(sample).first);
        QCOMPARE(listed->index(0, 1).data(Sorvik::Viewer::BrowserModel::SortRole).toLongLong(),
                 chart()->getAccumCount());
        QVERIFY(window->getFileHandler().isOpened());
    }

    void shortcutsMoveThroughSamples_data()
    {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QList<int>>("samples");
        const int down = Qt::Key_PageDown;
        const int up = Qt::Key_PageUp;
        QTest::newRow("down, down, past the last") << QList<int>{down, down, down} << QList<int>{1, 2, 2};
        QTest::newRow("up at the first") << QList<int>{up, down, up} << QList<int>{0, 1, 0};
    }

    void shortcutsMoveThroughSamples()
    {
        QFETCH(QList<int>, keys);
        QFETCH(QList<int>, samples);
        openStudy(study);
        window->show();
        QApplication::setActiveWindow(window.get());
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        const QColor archaea = colourOf(window->getView(), QStringLiteral("Archaea"));
        for (int i = 0; i < keys.size(); ++i) {
            QTest::keyClick(window.get(), Qt::Key(keys.at(i)), Qt::ControlModifier);
            QCOMPARE(window->getSampleChooser()->getCurrent(), samples.at(i));
            QCOMPARE(window->getSampleChooser()->getComboBox()->currentIndex(), samples.at(i));
            QCOMPARE(window->getSampleChooser()->getPrevious()->isEnabled(), samples.at(i) > 0);
            QCOMPARE(window->getSampleChooser()->getNext()->isEnabled(), samples.at(i) < 2);
            // S2 has no Archaea: not drawn there, and the same colour where it is.
            const QColor now = colourOf(window->getView(), QStringLiteral("Archaea"));
            QCOMPARE(now.isValid(), samples.at(i) != 1);
            if (now.isValid())
                QCOMPARE(now, archaea);
        }
    }

    void centreAbsentFromSampleKeepsChart()
    {
        openStudy(study);
        stepInto(window->getView(), QStringLiteral("Firmicutes"));
        const auto centre = window->getNavigator().getCurrentPosition();
        window->getSampleChooser()->getComboBox()->setCurrentIndex(2);
        QVERIFY(prompter->shown.isEmpty());
        QVERIFY(window->getFileHandler().isOpened());
        QVERIFY(!chart());
        auto* note = window->findChild<QLabel*>(QStringLiteral("absentNote"));
        QVERIFY(note && !note->isHidden());
        QVERIFY(note->text().contains(QStringLiteral("S3")) && note->text().contains(QStringLiteral("Firmicutes")));
        QVERIFY(window->getActions().stepOut->isEnabled());
        // Back to a sample that has it: drawn there again.
        window->getSampleChooser()->getPrevious()->trigger();
        QCOMPARE(window->getNavigator().getCurrentPosition(), centre);
        QCOMPARE(countOf(window->getView(), QStringLiteral("Firmicutes")), qint64(10));
        QVERIFY(note->isHidden());
    }

    void compareGridStepsInTogether()
    {
        openStudy(study);
        CompareWindow* compare = openCompare({0, 1, 2});
        Sorvik::Viewer::CompareGrid* grid = compare->getGrid();
        QCOMPARE(grid->getCount(), 3);
        for (int cell = 0; cell < 3; ++cell) {
            const QString title = grid->getTitle(cell)->text();
            QVERIFY2(title.startsWith(study.at(cell).first), qPrintable(title));
        }
        QVERIFY(grid->getTitle(0)->text().contains(QLocale().toString(290)));
        QVERIFY(grid->getTitle(1)->text().contains(QLocale().toString(250)));
        // One colour per taxon in every chart and in the main window.
        const QColor proteobacteria = colourOf(window->getView(), QStringLiteral("Proteobacteria"));
        for (int cell = 0; cell < 3; ++cell)
            QCOMPARE(colourOf(grid->getView(cell), QStringLiteral("Proteobacteria")), proteobacteria);
        QCOMPARE(countOf(grid->getView(2), QStringLiteral("Firmicutes")), qint64(-1));

        // Stepping into Firmicutes in the first chart steps into it in all; selecting it there
        // selects it in the others.
        PieChartItem* firmicutes = sliceNamed(chartOf(grid->getView(0)), QStringLiteral("Firmicutes"));
        QVERIFY(firmicutes);
        grid->getView(0)->getScene()->slotSelectItem(firmicutes->getId());
        emit grid->getView(0)->getScene()->signalSelectedItem(firmicutes->getId());
        QCOMPARE(grid->getSelectedId(), firmicutes->getId());
        QCOMPARE(compare->getBrowser()->getSelectedId(), firmicutes->getId());
        QVERIFY(!grid->getView(2)->getScene()->getSelectedItem());
        emit grid->getView(0)->getScene()->signalItemEntered();
        QCOMPARE(chartOf(grid->getView(0))->getChainNames().last(), QStringLiteral("Firmicutes"));
        QCOMPARE(chartOf(grid->getView(0))->getAccumCount(), qint64(180));
        QCOMPARE(grid->getTitle(0)->text(), QStringLiteral("S1 \u2014 total 290\nFirmicutes: 180 (62.07 %)"));
        QCOMPARE(grid->getTitle(2)->text(), QStringLiteral("S3 \u2014 total 100\nFirmicutes: 0 (0.00 %)"));
        QVERIFY(chartOf(grid->getView(1))->getChainNames().contains(QStringLiteral("Firmicutes")));
        QCOMPARE(chartOf(grid->getView(1))->getAccumCount(), qint64(10));
        // Absent from S3: no chart, and a note that says so.
        QVERIFY(!chartOf(grid->getView(2)));
        QVERIFY(!grid->getNote(2)->isHidden());
        QVERIFY(grid->getNote(0)->isHidden());
        // The main window stays where it was.
        QVERIFY(window->getNavigator().isAtRoot());

        // Out through Bacteria, the slice between, in all of them.
        compare->getStepOut()->trigger();
        for (int cell = 0; cell < 3; ++cell)
            QVERIFY(chartOf(grid->getView(cell))->getChainNames().contains(QStringLiteral("Bacteria")));
        QCOMPARE(countOf(grid->getView(2), QStringLiteral("Proteobacteria")), qint64(50));
        compare->getStepOut()->trigger();
        QCOMPARE(countOf(grid->getView(1), QStringLiteral("Bacteria")), qint64(250));
        QVERIFY(!compare->getStepOut()->isEnabled());
    }

    void compareListsEverySampleShown()
    {
        openStudy(study);
        CompareWindow* compare = openCompare({0, 2});
        Sorvik::Viewer::Browser* browser = compare->getBrowser();
        QAbstractItemModel* model = browser->getTreeView()->model();
        QCOMPARE(model->columnCount(), 5);
        QCOMPARE(model->headerData(1, Qt::Horizontal).toString(), QStringLiteral("S1"));
        QCOMPARE(model->headerData(3, Qt::Horizontal).toString(), QStringLiteral("S3"));
        const QModelIndex root = model->index(0, 0);
        QVERIFY(root.isValid());
        // Whole chart: 290 in S1 and 100 in S3, all of it.
        QCOMPARE(model->index(0, 1).data(Sorvik::Viewer::BrowserModel::SortRole).toLongLong(), qint64(290));
        QCOMPARE(model->index(0, 3).data(Sorvik::Viewer::BrowserModel::SortRole).toLongLong(), qint64(100));
        QCOMPARE(model->index(0, 4).data().toString(), QStringLiteral("100.00"));
        // Sorted by S1's count: Archaea (30) before Bacteria (260), then the other way round.
        browser->getTreeView()->sortByColumn(1, Qt::AscendingOrder);
        QCOMPARE(model->index(0, 0, root).data().toString(), QStringLiteral("Archaea"));
        QCOMPARE(model->index(0, 1, root).data(Sorvik::Viewer::BrowserModel::SortRole).toLongLong(), qint64(30));
        QCOMPARE(model->index(0, 3, root).data(Sorvik::Viewer::BrowserModel::SortRole).toLongLong(), qint64(50));
        QCOMPARE(model->index(0, 4, root).data().toString(), QStringLiteral("50.00"));
        browser->getTreeView()->sortByColumn(1, Qt::DescendingOrder);
        QCOMPARE(model->index(0, 0, root).data().toString(), QStringLiteral("Bacteria"));
        QCOMPARE(model->index(0, 1, root).data(Sorvik::Viewer::BrowserModel::SortRole).toLongLong(), qint64(260));
        QCOMPARE(model->index(0, 2, root).data().toString(), QStringLiteral("89.66"));
    }

    void compareFollowsTheMainWindow()
    {
        openStudy(study);
        QPointer<CompareWindow> compare = openCompare({1, 2});
        // Asked again: the same window, with the samples chosen now, and last time's choice offered.
        QList<int> offered;
        prompter->onDialog = [&offered](QDialog& dialog) {
            auto& chooser = dynamic_cast<CompareDialog&>(dialog);
            offered = chooser.getChosen();
            chooser.setChosen({0, 1});
            return int(QDialog::Accepted);
        };
        window->slotViewCompare();
        QCOMPARE(offered, (QList<int>{1, 2}));
        QCOMPARE(window->getCompareWindow(), compare.data());
        QCOMPARE(compare->getSamples(), (QList<int>{0, 1}));
        // Cancelled: nothing changes.
        prompter->onDialog = [](QDialog&) { return int(QDialog::Rejected); };
        window->slotViewCompare();
        QCOMPARE(compare->getSamples(), (QList<int>{0, 1}));
        // The chart closed: its comparison goes with it.
        QVERIFY(window->slotFileClose());
        QTRY_VERIFY(compare.isNull());
        QVERIFY(!window->getCompareAction()->isEnabled());
        QCOMPARE(window->getSampleChooser()->getCount(), 0);
    }

private:
    void openStudy(const QList<QPair<QString, QString>>& samples)
    {
        const QString file = dir->filePath(QStringLiteral("study.piechart"));
        Sorvik::Test::writeSampleChart(file, samples);
        window->openFile(file);
        QVERIFY2(prompter->shown.isEmpty(), qPrintable(prompter->lastTitle()));
    }

    CompareWindow* openCompare(const QList<int>& samples)
    {
        prompter->onDialog = [samples](QDialog& dialog) {
            auto& chooser = dynamic_cast<CompareDialog&>(dialog);
            chooser.setChosen(samples);
            return chooser.isAcceptable() ? int(QDialog::Accepted) : int(QDialog::Rejected);
        };
        window->slotViewCompare();
        prompter->onDialog = nullptr;
        return window->getCompareWindow();
    }

    void stepInto(View* view, const QString& name)
    {
        PieChartItem* slice = sliceNamed(chartOf(view), name);
        QVERIFY2(slice, qPrintable(name));
        view->getScene()->slotSelectItem(slice->getId());
        window->slotNavigationStepInto();
    }

    PieChartItem* chart() const { return chartOf(window->getView()); }

    std::unique_ptr<QTemporaryDir> dir;
    std::shared_ptr<ScriptedPrompter> prompter;
    std::unique_ptr<MainWindow> window;
};

QTEST_MAIN(TestMainWindowSamples)
#include "tst_mainwindowsamples.moc"
