#include "ontology/taxonomybuilder.h"
#include "ontology/taxonomycache.h"
#include "ontology/taxonomydatabase.h"
#include "tests/support/charts.h"
#include "tests/support/fixtures.h"
#include "tests/support/httpserver.h"
#include "tests/support/sqlfile.h"
#include "tests/support/taxdump.h"
#include "tests/support/treeliteral.h"
#include "tests/support/treetext.h"
#include "tests/support/windowcase.h"
#include "viewer/apppreferencesdialog.h"
#include "viewer/buildreportdialog.h"
#include "viewer/mainwindow.h"
#include "viewer/newpiechartwizard.h"
#include "viewer/piechartitem.h"
#include "viewer/scene.h"
#include "viewer/settings.h"
#include "viewer/view.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QtTest>

using namespace Sorvik::Test;
using Sorvik::Viewer::AppPreferencesDialog;
using Sorvik::Viewer::BuildReportDialog;
using Sorvik::Viewer::MainWindow;

// The viewer and the NCBI taxonomy: what a build says of the reads the taxonomy could not
// place, the hint at an old cache, and the update from the preferences.
class TestViewerTaxonomy : public WindowCase
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(server.isListening());
        catchTemporaryFiles();
        QVERIFY(!serveSmallTaxdump(server, top.path()).isEmpty());
    }

    void init() { start(); }

    void cleanup()
    {
        stop();
        qunsetenv("SORVIK_TAXDUMP_URL");
    }

    void buildReportListsTheUnknownIds()
    {
        importSmallTaxonomy();
        const QString input = write(QStringLiteral("ids.txt"), "562\n12\n99\n4242\n4242\n");
        QString text;
        QString ids;
        prompter->onDialog = [&, calls = 0](QDialog& dialog) mutable {
            switch (calls++) {
            case 0:
                return wizard(QStringLiteral("taxids"), input, QStringLiteral("id"))(dialog);
            case 1:
                return waitForClose(dialog);
            default: {
                auto& report = dynamic_cast<BuildReportDialog&>(dialog);
                text = report.getText();
                ids = report.getIdList();
                report.findChild<QPushButton*>(QStringLiteral("copyIds"))->click();
                return int(QDialog::Rejected);
            }
            }
        };
        window->slotFileNew();
        QCOMPARE(prompter->dialogs.size(), 3);
        QCOMPARE(text, QStringLiteral("1 reads had 1 taxon ids that NCBI merged into others (counted under the new ids)\n"
                                      "3 reads had 2 unknown taxon ids (first: 4242, 99)"));
        QCOMPARE(ids, QStringLiteral("4242\t2 reads\n99\t1 reads\tdeleted by NCBI\n"));
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("4242\n99\n"));
        // The chart holds every read: the unknown ones in a slice of their own.
        const auto* unknown = sliceNamed(chart(), QStringLiteral("Unknown taxon ids"));
        QVERIFY(unknown);
        QVERIFY(std::abs(unknown->getPercentage() - 60.0) < 1e-9);
        QVERIFY(prompter->shown.isEmpty());
    }

    void oldTaxonomyHint_data()
    {
        QTest::addColumn<int>("days");
        QTest::addColumn<QString>("hint");
        QTest::newRow("fresh") << 2 << "";
        QTest::newRow("old") << 200
                             << "The NCBI taxonomy is 200 days old: File > Preferences > Update taxonomy now fetches the "
                                "current one.";
    }

    void oldTaxonomyHint()
    {
        QFETCH(int, days);
        QFETCH(QString, hint);
        writeTree(taxonomy(), QStringLiteral("1=root(562=\"Escherichia coli\")"), false);
        setCacheAge(taxonomy(), days);
        const QString input = write(QStringLiteral("ids.txt"), "562\n");
        prompter->onDialog = inTurn(wizard(QStringLiteral("taxids"), input, QStringLiteral("id")), waitForClose);
        window->slotFileNew();
        QVERIFY(chart());
        QCOMPARE(prompter->dialogs.size(), 2);
        QCOMPARE(window->statusBar()->currentMessage(), hint);
    }

    void preferencesShowTheTaxonomy_data()
    {
        QTest::addColumn<QString>("cache");
        QTest::addColumn<QString>("text");
        QTest::newRow("none yet") << "" << "Not downloaded yet: it is downloaded with the first chart of NCBI taxon ids.";
        QTest::newRow("made from an archive") << "imported" << "Made on %1 from %2.";
        QTest::newRow("old") << "old" << "Made on %1. It is 400 days old: NCBI has merged and deleted many taxa since.";
    }

    void preferencesShowTheTaxonomy()
    {
        QFETCH(QString, cache);
        QFETCH(QString, text);
        if (cache == QLatin1String("imported"))
            importSmallTaxonomy();
        if (cache == QLatin1String("old")) {
            writeTree(taxonomy(), QStringLiteral("1(2)"), false);
            setCacheAge(taxonomy(), 400);
        }
        const Zem::Ncbi::TaxonomyCache made(taxonomy());
        const QString date = QLocale().toString(made.getCreated().toLocalTime().date(), QLocale::LongFormat);
        if (cache == QLatin1String("imported"))
            text = text.arg(date, path(QStringLiteral("taxdmp.zip")));
        else if (cache == QLatin1String("old"))
            text = text.arg(date);
        const AppPreferencesDialog dialog(dir->path());
        QCOMPARE(dialog.getTaxonomyFile(), taxonomy());
        QCOMPARE(dialog.getTaxonomyText(), text);
    }

    void updateTaxonomyNow_data()
    {
        QTest::addColumn<QString>("urlPath");
        QTest::addColumn<bool>("cancel");
        QTest::addColumn<QString>("shown");
        QTest::newRow("updated") << "/pub/taxonomy/taxdmp.zip" << false << "";
        QTest::newRow("dead server") << "refused" << false
                                     << "Critical Problem updating taxonomy: NCBI data couldn't be downloaded: ";
        QTest::newRow("download cut short") << "/cut.zip" << false
                                            << "Critical Problem updating taxonomy: Pie chart couldn't be generated: "
                                               "the taxonomy archive is not a ZIP file";
        QTest::newRow("cancelled") << "/stall.zip" << true << "";
    }

    void updateTaxonomyNow()
    {
        QFETCH(QString, urlPath);
        QFETCH(bool, cancel);
        QFETCH(QString, shown);
        writeTree(taxonomy(), QStringLiteral("1=root(562=\"Old coli\")"), false);
        const QByteArray old = fileContents(taxonomy());
        const QUrl url = urlPath == QLatin1String("refused") ? HttpServer::refusingUrl(QStringLiteral("/taxdmp.zip"))
                                                             : server.url(urlPath);
        qputenv("SORVIK_TAXDUMP_URL", url.toEncoded());
        QString before;
        QString after;
        const int requests = server.getRequestCount(urlPath);
        prompter->onDialog = [&, calls = 0](QDialog& dialog) mutable {
            if (calls++ == 0) {
                auto& preferences = dynamic_cast<AppPreferencesDialog&>(dialog);
                before = preferences.getTaxonomyText();
                preferences.findChild<QPushButton*>(QStringLiteral("updateTaxonomy"))->click();
                after = preferences.getTaxonomyText();
                return int(QDialog::Rejected);
            }
            if (!cancel)
                return waitForClose(dialog);
            // Cancelled once the download has begun.
            QElapsedTimer clock;
            clock.start();
            while (server.getRequestCount(urlPath) == requests && clock.elapsed() < 60000)
                QTest::qWait(10);
            dialog.reject();
            return dialog.result();
        };
        window->slotAppPreferences();
        QCOMPARE(prompter->dialogs,
                 (QStringList{"Sorvik::Viewer::AppPreferencesDialog", "QDialog"}));
        const bool updated = shown.isEmpty() && !cancel;
        QCOMPARE(prompter->shown.size(), shown.isEmpty() ? 0 : 1);
        if (!shown.isEmpty()) {
            const ScriptedPrompter::Shown& box = prompter->shown.first();
            const QString said = QMetaEnum::fromType<QMessageBox::Icon>().valueToKey(box.icon) + (' ' + box.title) + ": " + box.text;
            QVERIFY2(said.startsWith(shown), qPrintable(said));
        }
        QCOMPARE(fileContents(taxonomy()) == old, !updated);
        QCOMPARE(after == before, !updated);
        if (updated) {
            QVERIFY2(after.endsWith(QStringLiteral(" from %1.").arg(url.toString())), qPrintable(after));
            QCOMPARE(describeOntology(taxonomy()),
                     QStringLiteral("root(\"cellular organisms\"(Bacteria(Escherichia(\"Escherichia coli\")) \"Homo sapiens\"))"));
        }
        QCOMPARE(QDir(dir->path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden),
                 QStringList{QStringLiteral("ncbi.ontology")});
    }

    void cancelKeepsTheEarlierChartAndTaxonomy()
    {
        writeTree(taxonomy(), QStringLiteral("1=root(562=\"Escherichia coli\" 9606=\"Homo sapiens\")"), false);
        const QString working = path(MainWindow::workingFileName);
        writeTree(working, QStringLiteral("1=root(562=\"Earlier chart\":4)"));
        const QByteArray earlier = fileContents(working);
        const QByteArray cache = fileContents(taxonomy());
        // Long enough to be still at work when the dialog is cancelled.
        const QString input = write(QStringLiteral("ids.txt"), QByteArray("562\n9606\n4242\n").repeated(100000));
        prompter->onDialog = [&, calls = 0](QDialog& dialog) mutable {
            if (calls++ == 0)
                return wizard(QStringLiteral("taxids"), input, QStringLiteral("id"))(dialog);
            dialog.reject();
            return dialog.result();
        };
        window->slotFileNew();
        QVERIFY(!chart());
        QVERIFY(prompter->shown.isEmpty());
        // The window waits for the cancelled task as it goes.
        window.reset();
        QCOMPARE(fileContents(working), earlier);
        QCOMPARE(fileContents(taxonomy()), cache);
        QCOMPARE(QDir(dir->path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden),
                 (QStringList{"ids.txt", "ncbi.ontology", "target.piechart"}));
    }

    void dataFolderDefaults_data()
    {
        QTest::addColumn<bool>("chosen");
        QTest::newRow("none chosen") << false;
        QTest::newRow("chosen") << true;
    }

    void dataFolderDefaults()
    {
        QFETCH(bool, chosen);
        Sorvik::App::Settings settings;
        settings.setPath(chosen ? dir->path() : QString());
        // The viewer keeps its files where it was started unless told otherwise; sorvik-cli
        // falls back on the application data folder, never on the folder it runs in.
        QCOMPARE(settings.getPathDir().absolutePath(), chosen ? dir->path() : QDir::currentPath());
        QCOMPARE(settings.getTaxonomyFile(), QDir(chosen ? dir->path() : QDir::currentPath()).absoluteFilePath("ncbi.ontology"));
        const QString appData = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
        QVERIFY(!appData.isEmpty() && appData != QDir::currentPath());
        QCOMPARE(settings.getDataFolder(), chosen ? dir->path() : appData);
    }

private:
    QString taxonomy() const { return path(Sorvik::App::Settings::taxonomyFileName); }

    // The small taxonomy with its merged (12 into 562) and deleted (99) ids, as the cache.
    void importSmallTaxonomy()
    {
        QVERIFY(writeSmallTaxdump(path(QStringLiteral("taxdmp.zip")), true));
        Zem::Ncbi::TaxonomyDatabase database(path(QStringLiteral("taxdmp.zip")));
        database.open();
        Zem::Ncbi::TaxonomyBuilder builder(taxonomy());
        builder.addDump(database, path(QStringLiteral("taxdmp.zip")));
        builder.load();
        builder.build();
    }

    HttpServer server;
};

QTEST_MAIN(TestViewerTaxonomy)
#include "tst_viewertaxonomy.moc"
