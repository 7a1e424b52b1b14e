#include "tests/support/charts.h"
#include "tests/support/fixtures.h"
#include "tests/support/treeliteral.h"
#include "tests/support/windowcase.h"
#include "viewer/chartexports.h"
#include "viewer/exportimagedialog.h"
#include "viewer/mainwindow.h"
#include "viewer/piechartitem.h"
#include "viewer/scene.h"
#include "viewer/settings.h"
#include "viewer/view.h"

#include <QAction>
#include <QImage>
#include <QMenuBar>
#include <QtTest>

using Sorvik::Test::fileContents;
using Sorvik::Viewer::ChartExports;
using Sorvik::Viewer::ExportImageDialog;
using Sorvik::Viewer::MainWindow;

namespace {

const QString life = QStringLiteral("root=Life(b=Bacteria(f=Firmicutes:60(bc=Bacilli:20) p=Proteobacteria:30) "
                                    "v=Viruses:10)");

} // namespace

// The viewer's File > Export… entries, driven as a user would through the scripted prompter.
class TestChartExports : public Sorvik::Test::WindowCase
{
    Q_OBJECT
private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    void entriesFollowTheOpenChart()
    {
        ChartExports* exports = window->getExports();
        const QList<QAction*> actions = exports->getActions();
        QCOMPARE(actions.size(), 3);
        // In the File menu, after Save as.
        const QList<QAction*> file = window->menuBar()->actions().first()->menu()->actions();
        QVERIFY(file.indexOf(actions[0]) > file.indexOf(window->getActions().fileSaveAs));
        for (QAction* action : actions)
            QVERIFY(!action->isEnabled());
        openChart();
        for (QAction* action : actions)
            QVERIFY(action->isEnabled());
        window->slotFileClose();
        for (QAction* action : actions)
            QVERIFY(!action->isEnabled());
    }

    void imageIsTheChartAsShown_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("written");
        QTest::newRow("svg, the extension added") << int(ExportImageDialog::Format::Svg) << "gut" << "gut.svg";
        QTest::newRow("pdf") << int(ExportImageDialog::Format::Pdf) << "gut.pdf" << "gut.pdf";
        QTest::newRow("png") << int(ExportImageDialog::Format::Png) << "gut.png" << "gut.png";
    }

    void imageIsTheChartAsShown()
    {
        QFETCH(int, format);
        QFETCH(QString, typed);
        QFETCH(QString, written);
        openChart();
        QString title;
        prompter->onDialog = [&](QDialog& dialog) {
            auto& options = dynamic_cast<ExportImageDialog&>(dialog);
            title = options.getTitle();
            options.setFormat(ExportImageDialog::Format(format));
            options.setSize(500);
            options.setDotsPerInch(254);
            options.setLegend(true);
            return int(QDialog::Accepted);
        };
        prompter->saveNames = QStringList{path(typed)};
        window->getExports()->slotExportImage();
        QVERIFY2(prompter->shown.isEmpty(), qPrintable(prompter->lastTitle()));
        // The default title is the chart's file name.
        QCOMPARE(title, QStringLiteral("gut sample"));
        QCOMPARE(prompter->filters.last(), ExportImageDialog::filterOf(ExportImageDialog::Format(format)));
        const QByteArray content = fileContents(path(written));
        if (format == int(ExportImageDialog::Format::Svg)) {
            QVERIFY(content.contains("<title>gut sample</title>"));
            QVERIFY(content.contains("width=\"500\""));
            QVERIFY(content.contains("<title>Firmicutes: 80 (66.67 %)</title>"));
        } else if (format == int(ExportImageDialog::Format::Pdf)) {
            QVERIFY(content.startsWith("%PDF-"));
        } else {
            const QImage image = QImage::fromData(content);
            QCOMPARE(image.width(), 500);
            // 254 pixels to the inch are 10000 to the metre.
            QCOMPARE(image.dotsPerMeterX(), 10000);
        }
    }

    void imageFollowsTheCentre()
    {
        openChart();
        Sorvik::Viewer::Scene* scene = window->getView()->getScene();
        Sorvik::Test::sliceNamed(scene->getPieChart(), QStringLiteral("Bacteria"))->setSelected(true);
        window->slotNavigationStepInto();
        // Stepped into Bacteria: the image shows what the window shows, the page opens there.
        // A selected slice is drawn in its own colour, and stays selected.
        Sorvik::Viewer::PieChartItem* firmicutes = Sorvik::Test::sliceNamed(scene->getPieChart(), QStringLiteral("Firmicutes"));
        firmicutes->setSelected(true);
        const QString png = path(QStringLiteral("centre.png"));
        QVERIFY(window->getExports()->exportImage(png, 400, 0, false, QString()));
        QVERIFY(firmicutes->isSelected());
        const QImage image(png);
        for (int y = 0; y < image.height(); y += 4) {
            for (int x = 0; x < image.width(); x += 4)
                QVERIFY(image.pixelColor(x, y) != QColor(Qt::yellow));
        }
        const QString svg = path(QStringLiteral("centre.svg"));
        QVERIFY(window->getExports()->exportImage(svg, 400, 0, false, QString()));
        QVERIFY(fileContents(svg).contains("<title>Bacteria: 110 (100.00 %)</title>"));
        QVERIFY(!fileContents(svg).contains("<title>Life"));
        const QString page = path(QStringLiteral("centre.html"));
        QVERIFY(window->getExports()->exportHtml(page));
        QVERIFY(fileContents(page).contains("\"centre\":1"));
    }

    void tableAndPageHoldTheWholeTree()
    {
        openChart();
        prompter->saveNames = QStringList{path(QStringLiteral("counts.csv")), path(QStringLiteral("page"))};
        window->getExports()->slotExportTable();
        window->getExports()->slotExportHtml();
        QVERIFY2(prompter->shown.isEmpty(), qPrintable(prompter->lastTitle()));
        const QList<QByteArray> rows = fileContents(path(QStringLiteral("counts.csv"))).split('\n');
        QCOMPARE(rows.first(), QByteArray("id,taxid,name,rank,lineage,own_count,clade_count,percent"));
        QCOMPARE(rows.size(), 7 + 1);
        QVERIFY(rows.contains("f,f,Firmicutes,,Life; Bacteria; Firmicutes,60,80,66.666667"));
        const QByteArray page = fileContents(path(QStringLiteral("page.html")));
        QVERIFY(page.contains("<title>gut sample</title>"));
        QVERIFY(page.contains("\"maxLevels\":5"));
    }

    void failuresNameTheFile()
    {
        openChart();
        const QString gone = path(QStringLiteral("gone/counts.tsv"));
        QVERIFY(!window->getExports()->exportTable(gone));
        QCOMPARE(prompter->shown.size(), 1);
        QCOMPARE(prompter->shown.first().icon, QMessageBox::Warning);
        const QString said = prompter->shown.first().text;
        QVERIFY2(said.contains(QDir::toNativeSeparators(gone)) && said.contains(QStringLiteral("Check that its folder")),
                 qPrintable(said));
        QVERIFY(!QFileInfo::exists(gone));
        // A name that is no table: said so, nothing written.
        QVERIFY(!window->getExports()->exportTable(path(QStringLiteral("counts.xlsx"))));
        QVERIFY(prompter->shown.last().text.contains(QStringLiteral("must end in .tsv")));
        QVERIFY(!prompter->shown.last().text.contains(QStringLiteral("Check that its folder")));
    }

private:
    void openChart()
    {
        openTree(life, QStringLiteral("gut sample.piechart"));
        QVERIFY(prompter->shown.isEmpty());
    }
};

QTEST_MAIN(TestChartExports)
#include "tst_chartexports.moc"
