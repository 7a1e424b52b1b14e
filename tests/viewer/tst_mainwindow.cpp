#include "nu/prompter.h"
#include "ontology/ontology.h"
#include "resources/resources.h"
#include "tests/support/fixtures.h"
#include "tests/support/treeliteral.h"
#include "nu/multiprogresswidget.h"
#include "tests/support/httpserver.h"
#include "tests/support/scriptedprompter.h"
#include "viewer/browser.h"
#include "viewer/mainwindow.h"
#include "viewer/newpiechartwizard.h"
#include "viewer/piechartitem.h"
#include "viewer/scene.h"
#include "viewer/settings.h"
#include "viewer/view.h"
#include "viewer/viewpreferencesdialog.h"

#include <QAction>
#include <QActionGroup>
#include <QDir>
#include <QEventLoop>
#include <QTimer>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTreeView>
#include <QtTest>

#include <functional>

using Sorvik::Viewer::MainWindow;
using Sorvik::Viewer::NewPiechartWizard;
using Sorvik::Viewer::PieChartItem;
using Position = Zem::Ontology::Reader::Position;

namespace {

using Sorvik::Test::ScriptedPrompter;

// Fills the wizard as a user would have and accepts it.
std::function<int(QDialog&)> krona(const QString& file)
{
    return [file](QDialog& dialog) {
        auto& wizard = dynamic_cast<NewPiechartWizard&>(dialog);
        wizard.setField(QStringLiteral("input-type-krona"), true);
        wizard.setField(QStringLiteral("krona-source-filename"), file);
        return int(QDialog::Accepted);
    };
}

std::function<int(QDialog&)> qiime(const QString& file, int column)
{
    return [file, column](QDialog& dialog) {
        auto& wizard = dynamic_cast<NewPiechartWizard&>(dialog);
        wizard.setField(QStringLiteral("input-type-qiime"), true);
        wizard.setField(QStringLiteral("qiime-source-filename"), file);
        if (!wizard.page(NewPiechartWizard::QiimeFile)->validatePage())
            return int(QDialog::Rejected);
        wizard.setField(QStringLiteral("qiime-source-column"), column);
        return int(QDialog::Accepted);
    };
}

std::function<int(QDialog&)> taxids(const QString& file, bool counts)
{
    return [file, counts](QDialog& dialog) {
        auto& wizard = dynamic_cast<NewPiechartWizard&>(dialog);
        wizard.setField(QStringLiteral("input-type-taxids"), true);
        wizard.setField(QStringLiteral("taxids-source-filename"), file);
        wizard.setField(counts ? QStringLiteral("taxids-source-format-idcount") : QStringLiteral("taxids-source-format-id"),
                        true);
        return int(QDialog::Accepted);
    };
}

std::function<int(QDialog&)> mgtaxa(const QString& file)
{
    return [file](QDialog& dialog) {
        auto& wizard = dynamic_cast<NewPiechartWizard&>(dialog);
        wizard.setField(QStringLiteral("input-type-mgtaxa"), true);
        wizard.setField(QStringLiteral("mgtaxa-source-filename"), file);
        return int(QDialog::Accepted);
    };
}

// The progress dialog of a build: waits until the build closes it, or, with a cancelAt message,
// cancels it once the step under way shows that message ("*": at once).
std::function<int(QDialog&)> progress(const QString& cancelAt = QString())
{
    return [cancelAt](QDialog& dialog) {
        if (cancelAt == QLatin1String("*")) {
            dialog.reject();
            return dialog.result();
        }
        const auto* bars = dialog.findChild<nu::MultiProgressWidget*>();
        QEventLoop loop;
        QObject::connect(&dialog, &QDialog::finished, &loop, &QEventLoop::quit);
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &dialog, [&] {
            if (!cancelAt.isEmpty() && bars->getLevelCount() > 1 && bars->getBlock(1)->getMessage() == cancelAt)
                dialog.reject();
        });
        poll.start(5);
        QTimer::singleShot(60000, &loop, &QEventLoop::quit);
        loop.exec();
        return dialog.result();
    };
}

// Answers the wizard with one script and the next dialog with another.
std::function<int(QDialog&)> inTurn(std::function<int(QDialog&)> first, std::function<int(QDialog&)> then)
{
    return [first, then, calls = 0](QDialog& dialog) mutable { return (calls++ == 0 ? first : then)(dialog); };
}

// Which of the window's actions are enabled, as a word of 0 and 1: Save as, Close, Step into,
// Go to root, Step out, View preferences.
QString enabled(const MainWindow& window)
{
    const MainWindow::Actions& a = window.getActions();
    QString word;
    for (const QAction* action : {a.fileSaveAs, a.fileClose, a.stepInto, a.goRoot, a.stepOut, a.viewPreferences})
        word += action->isEnabled() ? QLatin1Char('1') : QLatin1Char('0');
    return word;
}

PieChartItem* chart(const MainWindow& window)
{
    return window.getView()->getScene()->getPieChart();
}

QString centre(const MainWindow& window)
{
    const PieChartItem* root = chart(window);
    return root ? root->getText().text : QString();
}

PieChartItem* byName(PieChartItem* root, const QString& name)
{
    if (!root)
        return nullptr;
    if (root->getText().text == name)
        return root;
    for (QGraphicsItem* child : root->childItems()) {
        if (PieChartItem* found = byName(dynamic_cast<PieChartItem*>(child), name))
            return found;
    }
    return nullptr;
}

int depth(const PieChartItem* item)
{
    int deepest = 0;
    for (QGraphicsItem* child : item->childItems()) {
        if (auto* slice = dynamic_cast<PieChartItem*>(child))
            deepest = std::max(deepest, depth(slice));
    }
    return deepest + 1;
}

// Selects a slice as a click in the browser does.
void select(MainWindow& window, const QString& name)
{
    QTreeView* tree = window.getBrowser()->getTreeView();
    const QModelIndexList found = tree->model()->match(tree->model()->index(0, 0), Qt::DisplayRole, name, 1,
                                                       Qt::MatchExactly | Qt::MatchRecursive);
    QVERIFY2(!found.isEmpty(), qPrintable(name));
    tree->setCurrentIndex(found.first());
}

// An SQLite file with the two tables of a chart, the given info values and node rows.
void writeRawChart(const QString& fileName, int nodes, bool counted, const QList<QStringList>& rows)
{
    const QString name = QStringLiteral("raw-chart");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(fileName);
        QVERIFY(db.open());
        QSqlQuery query(db);
        QVERIFY(query.exec(QStringLiteral("CREATE TABLE nodes (id TEXT, count INTEGER, data TEXT)")));
        QVERIFY(query.exec(QStringLiteral("CREATE TABLE info (key TEXT, value TEXT)")));
        QVERIFY(query.exec(QStringLiteral("INSERT INTO info VALUES ('nodes', '%1')").arg(nodes)));
        QVERIFY(query.exec(QStringLiteral("INSERT INTO info VALUES ('counted', '%1')").arg(counted ? 1 : 0)));
        for (const QStringList& row : rows) {
            QVERIFY(query.prepare(QStringLiteral("INSERT INTO nodes VALUES (?, ?, ?)")));
            for (const QString& value : row)
                query.addBindValue(value);
            QVERIFY(query.exec());
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
}

QByteArray contents(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

const QString notValid = QStringLiteral(
    "The selected file is not a valid Sorvik pie chart. You must choose a file previously saved by Sorvik.");
const QString deepTree = QStringLiteral(
    "root(b=Bacteria:10(f=Firmicutes:10(c=Bacilli:30(l=Lactobacillales:20)) p=Proteobacteria:15) a=Archaea:15)");

} // namespace

class TestMainWindow : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void startsClosed();
    void openRefusals_data();
    void openRefusals();
    void openShowsTheChartSaved();
    void newChartFromKronaOrQiime_data();
    void newChartFromKronaOrQiime();
    void cancelledWizardChangesNothing();
    void unsetDataFolderMeansCurrentFolder();
    void closeAsksToSaveANewChart_data();
    void closeAsksToSaveANewChart();
    void saveAsKeepsWorkingOnTheWorkingFile();
    void saveAsTargets_data();
    void saveAsTargets();
    void navigationRegeneratesFromThePosition_data();
    void navigationRegeneratesFromThePosition();
    void enteringTheCentreChangesNothing();
    void viewSettingsRegenerate();
    void ncbiChartFromCachedTaxonomy_data();
    void ncbiChartFromCachedTaxonomy();
    void ncbiDownloadFailureIsShown();
    void cancellingTheBuildLeavesNothing_data();
    void cancellingTheBuildLeavesNothing();
    void realKronaAndQiimeFiles_data();
    void realKronaAndQiimeFiles();

private:
    std::unique_ptr<QTemporaryDir> dir;
    std::shared_ptr<ScriptedPrompter> prompter;
    std::unique_ptr<MainWindow> window;

    QString path(const QString& name) const { return dir->filePath(name); }
    QString working() const { return path(MainWindow::workingFileName); }
    QString ncbi() const { return path(MainWindow::ncbiFileName); }
    // A cached taxonomy of five named taxa.
    void writeTaxonomy() const;
    // A new chart from the small Krona fixture, unsaved.
    void newKronaChart();
};

void TestMainWindow::initTestCase()
{
    // The data folder setting goes to a test store, never to the user's own.
    QStandardPaths::setTestModeEnabled(true);
    Sorvik::initResources();
}

void TestMainWindow::init()
{
    dir = std::make_unique<QTemporaryDir>();
    QVERIFY(dir->isValid());
    Sorvik::App::Settings().setPath(dir->path());
    prompter = std::make_shared<ScriptedPrompter>();
    window = std::make_unique<MainWindow>();
    window->setPrompter(prompter);
}

void TestMainWindow::cleanup()
{
    // Nothing may be left to ask when the window goes.
    prompter->answers = {QMessageBox::No};
    window.reset();
    dir.reset();
}

void TestMainWindow::newKronaChart()
{
    prompter->onDialog = krona(Sorvik::Test::fixturePath(QStringLiteral("viewer/small.krona.txt")));
    window->slotFileNew();
    QVERIFY(chart(*window));
    prompter->onDialog = nullptr;
}

void TestMainWindow::writeTaxonomy() const
{
    Sorvik::Test::writeTree(ncbi(),
                            QStringLiteral("1=root(131567=\"cellular organisms\"(2=Bacteria(561=Escherichia("
                                           "562=\"Escherichia coli\")) 2759=Eukaryota(9606=\"Homo sapiens\")))"),
                            false);
}

void TestMainWindow::startsClosed()
{
    QVERIFY(!window->getFileHandler().isOpened());
    QCOMPARE(enabled(*window), QStringLiteral("000000"));
    const MainWindow::Actions& a = window->getActions();
    for (const QAction* always : {a.fileNew, a.fileOpen, a.appPreferences, a.exit, a.toolsEditor, a.helpAbout})
        QVERIFY2(always->isEnabled(), qPrintable(always->text()));
    QCOMPARE(window->windowTitle(), QStringLiteral("Sorvik Piechart Viewer"));
    QVERIFY(prompter->shown.isEmpty());
}

void TestMainWindow::openRefusals_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("icon");
    QTest::addColumn<QString>("text");
    const int warning = QMessageBox::Warning;
    QTest::newRow("missing file") << "missing" << warning << notValid;
    QTest::newRow("empty file") << "empty" << warning << notValid;
    QTest::newRow("text file") << "text" << warning << notValid;
    QTest::newRow("other database") << "other" << warning << notValid;
    QTest::newRow("uncounted taxonomy") << "uncounted" << warning << notValid;
    QTest::newRow("no nodes") << "nonodes" << warning << notValid;
    QTest::newRow("nothing counted") << "zero" << warning << notValid;
    QTest::newRow("rows missing") << "truncated" << int(QMessageBox::Critical)
                                  << QStringLiteral("Error while creating new pie chart");
}

void TestMainWindow::openRefusals()
{
    QFETCH(QString, kind);
    QFETCH(int, icon);
    QFETCH(QString, text);
    const QString file = path(QStringLiteral("chart.piechart"));
    QFile out(file);
    if (kind == QLatin1String("empty")) {
        QVERIFY(out.open(QIODevice::WriteOnly));
    } else if (kind == QLatin1String("text")) {
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write("120\tBacteria\tFirmicutes\n");
    } else if (kind == QLatin1String("other")) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
        db.setDatabaseName(file);
        QVERIFY(db.open());
        QVERIFY(QSqlQuery(db).exec(QStringLiteral("CREATE TABLE nodes (id TEXT)")));
        db.close();
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(QStringLiteral("other"));
    } else if (kind == QLatin1String("uncounted")) {
        Sorvik::Test::writeTree(file, deepTree, false);
    } else if (kind == QLatin1String("nonodes")) {
        writeRawChart(file, 0, true, {});
    } else if (kind == QLatin1String("zero")) {
        Sorvik::Test::writeTree(file, QStringLiteral("root(a b(c))"));
    } else if (kind == QLatin1String("truncated")) {
        writeRawChart(file, 3, true, {{QStringLiteral("root"), QStringLiteral("2"), QStringLiteral("{\"accumCount\":\"5\"}")}});
    }
    out.close();

    // A chart is open before, so that its closing is seen.
    newKronaChart();
    prompter->answers = {QMessageBox::No};
    prompter->openNames = QStringList{file};
    window->slotFileOpen();

    QCOMPARE(prompter->shown.size(), 2);
    QCOMPARE(prompter->shown.last().title, QStringLiteral("Problem opening file"));
    QCOMPARE(prompter->shown.last().text, text);
    QCOMPARE(int(prompter->shown.last().icon), icon);
    QVERIFY(!window->getFileHandler().isOpened());
    QCOMPARE(enabled(*window), QStringLiteral("000000"));
    QCOMPARE(chart(*window), nullptr);
    QCOMPARE(window->getBrowser()->getPieChart(), nullptr);
    if (kind == QLatin1String("missing"))
        QVERIFY(!QFile::exists(file));
}

void TestMainWindow::openShowsTheChartSaved()
{
    const QString file = path(QStringLiteral("saved.piechart"));
    Sorvik::Test::writeTree(file, deepTree);
    window->openFile(file);
    QVERIFY(prompter->shown.isEmpty());
    QVERIFY(window->getFileHandler().isOpened());
    QVERIFY(!window->getFileHandler().shouldSave());
    QCOMPARE(window->getFileHandler().getFileName(), file);
    QCOMPARE(enabled(*window), QStringLiteral("110001"));
    QCOMPARE(centre(*window), QStringLiteral("root"));
    QCOMPARE(window->getBrowser()->getPieChart(), chart(*window));
    // Closing a saved chart asks nothing.
    QVERIFY(window->slotFileClose());
    QVERIFY(prompter->shown.isEmpty());
}

void TestMainWindow::newChartFromKronaOrQiime_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("column");
    QTest::addColumn<qint64>("total");
    QTest::addColumn<QString>("slice");
    QTest::addColumn<double>("share");
    const QString krona = Sorvik::Test::fixturePath(QStringLiteral("viewer/small.krona.txt"));
    const QString qiime = Sorvik::Test::fixturePath(QStringLiteral("viewer/small.qiime.txt"));
    QTest::newRow("krona") << "krona" << krona << 0 << qint64(350) << "Firmicutes" << 180 * 100.0 / 350;
    QTest::newRow("qiime first column") << "qiime" << qiime << 0 << qint64(10000) << "p  Proteobacteria" << 35.0;
    QTest::newRow("qiime second column") << "qiime" << qiime << 1 << qint64(10000) << "p  Proteobacteria" << 60.0;
    // Nothing counted: refused, and the window stays closed.
    QTest::newRow("krona of zeros") << "krona" << Sorvik::Test::fixturePath(QStringLiteral("viewer/zero.krona.txt")) << 0
                                    << qint64(0) << QString() << 0.0;
    QTest::newRow("missing krona file") << "krona" << QStringLiteral("/nonexistent/nothing.krona.txt") << 0 << qint64(0) << QString()
                                        << 0.0;
}

void TestMainWindow::newChartFromKronaOrQiime()
{
    QFETCH(QString, format);
    QFETCH(QString, file);
    QFETCH(int, column);
    QFETCH(qint64, total);
    QFETCH(QString, slice);
    QFETCH(double, share);
    prompter->onDialog = format == QLatin1String("krona") ? krona(file) : qiime(file, column);
    window->slotFileNew();

    QCOMPARE(prompter->dialogs, QStringList{QStringLiteral("Sorvik::Viewer::NewPiechartWizard")});
    if (total == 0) {
        QCOMPARE(prompter->shown.size(), 1);
        QCOMPARE(prompter->shown.first().title, QStringLiteral("Problem opening piechart"));
        QCOMPARE(prompter->shown.first().text, QStringLiteral("Piechart couldn't be generated"));
        QCOMPARE(int(prompter->shown.first().icon), int(QMessageBox::Critical));
        QVERIFY(!window->getFileHandler().isOpened());
        QCOMPARE(enabled(*window), QStringLiteral("000000"));
        QCOMPARE(chart(*window), nullptr);
        return;
    }
    QVERIFY(prompter->shown.isEmpty());
    QCOMPARE(window->getFileHandler().getFileName(), working());
    QVERIFY(window->getFileHandler().shouldSave());
    QCOMPARE(enabled(*window), QStringLiteral("110001"));
    QVERIFY(chart(*window));
    QCOMPARE(chart(*window)->getTotal(), total);
    const PieChartItem* found = byName(chart(*window), slice);
    QVERIFY2(found, qPrintable(slice));
    QVERIFY(std::abs(found->getPercentage() - share) < 1e-9);
    QVERIFY(Zem::Ontology::Ontology(working()).isCounted());
}

void TestMainWindow::cancelledWizardChangesNothing()
{
    const QString file = path(QStringLiteral("saved.piechart"));
    Sorvik::Test::writeTree(file, deepTree);
    window->openFile(file);
    window->slotFileNew();
    // The saved chart was closed first, as for any new chart; the wizard was then cancelled.
    QCOMPARE(prompter->dialogs.size(), 1);
    QVERIFY(!window->getFileHandler().isOpened());
    QVERIFY(!QFile::exists(working()));
    QVERIFY(prompter->shown.isEmpty());
}

void TestMainWindow::unsetDataFolderMeansCurrentFolder()
{
    const QString previous = QDir::currentPath();
    Sorvik::App::Settings().setPath(QString());
    QVERIFY(QDir::setCurrent(dir->path()));
    newKronaChart();
    QDir::setCurrent(previous);
    QCOMPARE(QFileInfo(window->getFileHandler().getFileName()).absoluteFilePath(), QFileInfo(working()).absoluteFilePath());
    QVERIFY(QFile::exists(working()));
}

void TestMainWindow::closeAsksToSaveANewChart_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("saveAs");
    QTest::addColumn<bool>("closed");
    QTest::newRow("save") << int(QMessageBox::Save) << "kept.piechart" << true;
    QTest::newRow("save, then cancel the file dialog") << int(QMessageBox::Save) << QString() << true;
    QTest::newRow("don't save") << int(QMessageBox::No) << QString() << true;
    QTest::newRow("cancel") << int(QMessageBox::Cancel) << QString() << false;
}

void TestMainWindow::closeAsksToSaveANewChart()
{
    QFETCH(int, answer);
    QFETCH(QString, saveAs);
    QFETCH(bool, closed);
    newKronaChart();
    prompter->answers = {QMessageBox::StandardButton(answer)};
    if (!saveAs.isEmpty())
        prompter->saveNames = QStringList{path(saveAs)};

    QCloseEvent event;
    QApplication::sendEvent(window.get(), &event);

    QCOMPARE(event.isAccepted(), closed);
    QCOMPARE(prompter->shown.size(), 1);
    QCOMPARE(prompter->shown.first().title, QStringLiteral("Save piechart"));
    QCOMPARE(prompter->shown.first().text, QStringLiteral("Do you want to save the current pie chart?"));
    QCOMPARE(int(prompter->shown.first().icon), int(QMessageBox::Question));
    QCOMPARE(prompter->saveDialogs, answer == QMessageBox::Save ? 1 : 0);
    QCOMPARE(window->getFileHandler().isOpened(), !closed);
    QCOMPARE(chart(*window) != nullptr, !closed);
    if (!saveAs.isEmpty())
        QCOMPARE(contents(path(saveAs)), contents(working()));
}

void TestMainWindow::saveAsKeepsWorkingOnTheWorkingFile()
{
    newKronaChart();
    const QString copy = path(QStringLiteral("copy.piechart"));
    prompter->saveNames = QStringList{copy};
    window->slotFileSaveAs();
    QVERIFY(!window->getFileHandler().shouldSave());
    QCOMPARE(window->getFileHandler().getFileName(), working());
    QCOMPARE(contents(copy), contents(working()));

    // The copy goes away; new view settings still draw from the working file.
    QVERIFY(QFile::remove(copy));
    prompter->onDialog = [](QDialog& dialog) {
        auto& preferences = dynamic_cast<Sorvik::Viewer::ViewPreferencesDialog&>(dialog);
        preferences.setMaxLevels(2);
        return int(QDialog::Accepted);
    };
    window->slotViewPreferences();
    QVERIFY(prompter->shown.isEmpty());
    QVERIFY(chart(*window));
    QCOMPARE(depth(chart(*window)), 2);
    QVERIFY(!window->getFileHandler().shouldSave());
}

void TestMainWindow::saveAsTargets_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("saved");
    QTest::newRow("new file") << "new.piechart" << true;
    QTest::newRow("over an older file") << "old.piechart" << true;
    QTest::newRow("over the working file itself") << MainWindow::workingFileName << true;
    QTest::newRow("into a missing folder") << "missing/folder/chart.piechart" << false;
}

void TestMainWindow::saveAsTargets()
{
    QFETCH(QString, target);
    QFETCH(bool, saved);
    newKronaChart();
    const QByteArray chartBytes = contents(working());
    QFile old(path(QStringLiteral("old.piechart")));
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("an older chart");
    old.close();

    prompter->saveNames = QStringList{path(target)};
    window->slotFileSaveAs();
    QCOMPARE(!window->getFileHandler().shouldSave(), saved);
    QCOMPARE(contents(working()), chartBytes);
    if (saved) {
        QVERIFY(prompter->shown.isEmpty());
        QCOMPARE(contents(path(target)), chartBytes);
    } else {
        QCOMPARE(prompter->lastTitle(), QStringLiteral("Problem saving file"));
        QVERIFY(!QFile::exists(path(target)));
    }
    QVERIFY(chart(*window));
}

void TestMainWindow::navigationRegeneratesFromThePosition_data()
{
    QTest::addColumn<QString>("entered");
    QTest::addColumn<QStringList>("stepsOut");
    QTest::newRow("child") << "Bacteria" << QStringList{QStringLiteral("root")};
    QTest::newRow("grandchild, out through its parent")
        << "Firmicutes" << QStringList{QStringLiteral("Bacteria"), QStringLiteral("root")};
    QTest::newRow("three levels down") << "Lactobacillales"
                                       << QStringList{QStringLiteral("Bacilli"), QStringLiteral("Firmicutes"),
                                                      QStringLiteral("Bacteria"), QStringLiteral("root")};
}

void TestMainWindow::navigationRegeneratesFromThePosition()
{
    QFETCH(QString, entered);
    QFETCH(QStringList, stepsOut);
    const QString file = path(QStringLiteral("saved.piechart"));
    Sorvik::Test::writeTree(file, deepTree);
    window->openFile(file);
    QCOMPARE(enabled(*window), QStringLiteral("110001"));

    select(*window, entered);
    QCOMPARE(window->getView()->getScene()->getSelectedItem(), byName(chart(*window), entered));
    QCOMPARE(enabled(*window), QStringLiteral("111001"));
    const Position position = byName(chart(*window), entered)->getPosition();
    window->getActions().stepInto->trigger();

    QCOMPARE(centre(*window), entered);
    QCOMPARE(window->getNavigator().getCurrentPosition(), position);
    QCOMPARE(chart(*window)->getPercentage(), 100.0);
    QCOMPARE(enabled(*window), QStringLiteral("110111"));
    QCOMPARE(window->getBrowser()->getPieChart(), chart(*window));

    for (const QString& expected : stepsOut) {
        window->getActions().stepOut->trigger();
        QCOMPARE(centre(*window), expected);
    }
    QVERIFY(window->getNavigator().isAtRoot());
    QCOMPARE(enabled(*window), QStringLiteral("110001"));

    // Go to root from deep down.
    select(*window, entered);
    window->getActions().stepInto->trigger();
    window->getActions().goRoot->trigger();
    QCOMPARE(centre(*window), QStringLiteral("root"));
    QVERIFY(window->getNavigator().isAtRoot());
    QVERIFY(prompter->shown.isEmpty());
}

void TestMainWindow::enteringTheCentreChangesNothing()
{
    const QString file = path(QStringLiteral("saved.piechart"));
    Sorvik::Test::writeTree(file, deepTree);
    window->openFile(file);
    PieChartItem* before = chart(*window);
    select(*window, QStringLiteral("root"));
    window->slotNavigationStepInto();
    QCOMPARE(chart(*window), before);
    QVERIFY(window->getNavigator().isAtRoot());
}

void TestMainWindow::viewSettingsRegenerate()
{
    const QString file = path(QStringLiteral("saved.piechart"));
    Sorvik::Test::writeTree(file, deepTree);
    window->openFile(file);
    QCOMPARE(depth(chart(*window)), 5);
    QVERIFY(byName(chart(*window), QStringLiteral("Archaea")));

    prompter->onDialog = [](QDialog& dialog) {
        auto& preferences = dynamic_cast<Sorvik::Viewer::ViewPreferencesDialog&>(dialog);
        preferences.setMaxLevels(3);
        preferences.setMinPercentage(20);
        return int(QDialog::Accepted);
    };
    window->slotViewPreferences();
    QCOMPARE(window->getMaxLevels(), 3);
    QCOMPARE(window->getMinPercentage(), 20.0);
    QCOMPARE(depth(chart(*window)), 3);
    // 15 % of the whole is below the new cutoff.
    QVERIFY(!byName(chart(*window), QStringLiteral("Archaea")));
    QVERIFY(byName(chart(*window), QStringLiteral("Firmicutes")));

    // Cancelled: nothing changes.
    PieChartItem* before = chart(*window);
    prompter->onDialog = nullptr;
    window->slotViewPreferences();
    QCOMPARE(chart(*window), before);
    QCOMPARE(window->getMaxLevels(), 3);
}

void TestMainWindow::ncbiChartFromCachedTaxonomy_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("file");
    QTest::addColumn<qint64>("total");
    QTest::addColumn<double>("coli");
    QTest::newRow("one id per line") << "ids" << "viewer/taxids.txt" << qint64(3) << 100.0 / 3;
    QTest::newRow("ids with counts") << "counts" << "viewer/taxid-counts.txt" << qint64(7) << 200.0 / 7;
    QTest::newRow("mg-taxa") << "mgtaxa" << "viewer/mgtaxa.txt" << qint64(4) << 75.0;
    // Nothing counted: refused with the build's box, and closed.
    QTest::newRow("no known id") << "ids" << "viewer/unknown-taxids.txt" << qint64(0) << 0.0;
}

void TestMainWindow::ncbiChartFromCachedTaxonomy()
{
    QFETCH(QString, format);
    QFETCH(QString, file);
    QFETCH(qint64, total);
    QFETCH(double, coli);
    writeTaxonomy();
    const QString input = Sorvik::Test::fixturePath(file);
    const auto wizard = format == QLatin1String("mgtaxa") ? mgtaxa(input) : taxids(input, format == QLatin1String("counts"));
    prompter->onDialog = inTurn(wizard, progress());
    window->slotFileNew();

    QCOMPARE(prompter->dialogs, (QStringList{QStringLiteral("Sorvik::Viewer::NewPiechartWizard"), QStringLiteral("QDialog")}));
    QVERIFY(!window->isBuilding());
    if (total == 0) {
        QCOMPARE(prompter->shown.size(), 1);
        QCOMPARE(prompter->shown.first().title, QStringLiteral("Problem creating new pie chart"));
        QCOMPARE(prompter->shown.first().text, QStringLiteral("Pie chart couldn't be generated"));
        QVERIFY(!window->getFileHandler().isOpened());
        QCOMPARE(enabled(*window), QStringLiteral("000000"));
        return;
    }
    QVERIFY(prompter->shown.isEmpty());
    QVERIFY(window->getFileHandler().shouldSave());
    QCOMPARE(window->getFileHandler().getFileName(), working());
    QCOMPARE(chart(*window)->getTotal(), total);
    QCOMPARE(centre(*window), QStringLiteral("root"));
    const PieChartItem* found = byName(chart(*window), QStringLiteral("Escherichia coli"));
    QVERIFY(found);
    QVERIFY(std::abs(found->getPercentage() - coli) < 1e-9);
    // The cache is the taxonomy still, uncounted.
    QVERIFY(!Zem::Ontology::Ontology(ncbi()).isCounted());
}

void TestMainWindow::ncbiDownloadFailureIsShown()
{
    qputenv("SORVIK_TAXDUMP_URL", Sorvik::Test::HttpServer::refusingUrl(QStringLiteral("/taxdmp.zip")).toEncoded());
    prompter->onDialog = inTurn(taxids(Sorvik::Test::fixturePath(QStringLiteral("viewer/taxids.txt")), false), progress());
    window->slotFileNew();
    qunsetenv("SORVIK_TAXDUMP_URL");
    QCOMPARE(prompter->shown.size(), 1);
    QCOMPARE(prompter->shown.first().title, QStringLiteral("Problem creating new pie chart"));
    QCOMPARE(prompter->shown.first().text, QStringLiteral("NCBI data couldn't be downloaded"));
    QCOMPARE(int(prompter->shown.first().icon), int(QMessageBox::Critical));
    QVERIFY(!window->getFileHandler().isOpened());
    QCOMPARE(enabled(*window), QStringLiteral("000000"));
    QTRY_VERIFY(!QFile::exists(ncbi()) && !QFile::exists(working()));
}

void TestMainWindow::cancellingTheBuildLeavesNothing_data()
{
    QTest::addColumn<bool>("cached");
    QTest::addColumn<QString>("cancelAt");
    QTest::newRow("while downloading") << false << "Downloading database...";
    QTest::newRow("at once, with the taxonomy cached") << true << "*";
}

void TestMainWindow::cancellingTheBuildLeavesNothing()
{
    QFETCH(bool, cached);
    QFETCH(QString, cancelAt);
    Sorvik::Test::HttpServer server;
    Sorvik::Test::HttpServer::Route stall;
    stall.body = QByteArray(100000, 'x');
    stall.behaviour = Sorvik::Test::HttpServer::Behaviour::Stall;
    stall.stallAfter = 10;
    server.setRoute(QStringLiteral("/taxdmp.zip"), stall);
    qputenv("SORVIK_TAXDUMP_URL", server.url(QStringLiteral("/taxdmp.zip")).toEncoded());
    if (cached)
        writeTaxonomy();
    // A long input, so that counting lasts long enough to be cancelled.
    const QString input = path(QStringLiteral("many.txt"));
    QFile ids(input);
    QVERIFY(ids.open(QIODevice::WriteOnly));
    for (int i = 0; i < 200000; ++i)
        ids.write(i % 2 ? "562\n" : "9606\n");
    ids.close();

    prompter->onDialog = inTurn(taxids(input, false), progress(cancelAt));
    window->slotFileNew();
    qunsetenv("SORVIK_TAXDUMP_URL");

    QVERIFY(prompter->shown.isEmpty());
    QVERIFY(!window->getFileHandler().isOpened());
    QCOMPARE(enabled(*window), QStringLiteral("000000"));
    QCOMPARE(chart(*window), nullptr);
    // The task ends on its own and takes its partial files with it; a cache it did not make stays.
    QTRY_VERIFY(!QFile::exists(working()));
    QTRY_COMPARE(QFile::exists(ncbi()), cached);
    // A new chart right after is not disturbed by the ending task.
    prompter->onDialog = krona(Sorvik::Test::fixturePath(QStringLiteral("viewer/small.krona.txt")));
    window->slotFileNew();
    QVERIFY(chart(*window));
    QTest::qWait(50);
    QVERIFY(QFile::exists(working()));
}

void TestMainWindow::realKronaAndQiimeFiles_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("file");
    const QString real = Sorvik::Test::realDataPath();
    if (real.isEmpty())
        return;
    for (const QString& kind : {QStringLiteral("krona"), QStringLiteral("qiime")}) {
        const QDir folder(QDir(real).filePath(kind));
        for (const QString& name : folder.entryList(QDir::Files, QDir::Name))
            QTest::newRow(qPrintable(kind + QLatin1Char('/') + name)) << kind << folder.filePath(name);
    }
}

void TestMainWindow::realKronaAndQiimeFiles()
{
    if (Sorvik::Test::realDataPath().isEmpty())
        QSKIP("no real data beside the checkout");
    QFETCH(QString, format);
    QFETCH(QString, file);
    prompter->onDialog = format == QLatin1String("krona") ? krona(file) : qiime(file, 0);
    window->slotFileNew();
    // A chart, or the refusal of an input that counts nothing.
    if (chart(*window)) {
        QVERIFY(prompter->shown.isEmpty());
        QVERIFY(chart(*window)->getTotal() > 0);
        select(*window, chart(*window)->getText().text);
    } else {
        QCOMPARE(prompter->lastTitle(), QStringLiteral("Problem opening piechart"));
    }
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
