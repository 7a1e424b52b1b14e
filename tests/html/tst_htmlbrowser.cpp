#include "tests/support/clirunner.h"
#include "tests/support/treeliteral.h"
#include "resources/resources.h"
#include "viewer/charthtml.h"
#include "viewer/charttree.h"
#include "viewer/colourmap.h"
#include "viewer/palette.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUrl>
#include <QtTest>

using namespace Sorvik::Test;

namespace {

// The browser to test in: $SORVIK_BROWSER, else Chromium or Chrome on the path.
QString findBrowser()
{
    const QString given = qEnvironmentVariable("SORVIK_BROWSER");
    if (!given.isEmpty())
        return given;
    for (const char* name : {"chromium", "chromium-browser", "google-chrome"}) {
        const QString found = QStandardPaths::findExecutable(QLatin1String(name));
        if (!found.isEmpty())
            return found;
    }
    return QString();
}

QStringList names(const QJsonValue& array)
{
    QStringList result;
    for (const QJsonValue& v : array.toArray())
        result << v.toString();
    return result;
}

} // namespace

// The exported page opened in headless Chromium: the page reports through its test hook what it
// drew, which --dump-dom hands back.
class TestHtmlBrowser : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        browser = findBrowser();
        if (browser.isEmpty())
            QSKIP("no Chromium to open the page in: scripts/install-deps installs Debian's chromium");
        QVERIFY(dir.isValid());
    }

    void pageDrawsStepsInAndOut()
    {
        const QString chart = dir.filePath(QStringLiteral("life.piechart"));
        writeTree(chart, QStringLiteral("root=Life(b=Bacteria(p=Proteobacteria:40(g=Gammaproteobacteria:30) "
                                        "f=Firmicutes:35(bc=Bacilli:20 cl=Clostridia:12) t=Tiny:1) "
                                        "ek=Eukaryota:60(m=Metazoa:12))"));
        const QString page = dir.filePath(QStringLiteral("life.html"));
        const CliResult written = runCli({QStringLiteral("html"), chart, QStringLiteral("-o"), page});
        QCOMPARE(written.exitCode, 0);

        const QJsonObject report = open(page, QStringLiteral("#sorvik-test&click=Firmicutes,Firmicutes&search=bacil"));
        QVERIFY(!report.isEmpty());
        const QJsonObject before = report["before"].toObject();
        QCOMPARE(before["centre"].toString(), QStringLiteral("Life"));
        // Tiny is below the viewer's 0.5 %: one grey "1 other" after its kept siblings.
        QCOMPARE(names(before["slices"]),
                 QStringList({"Life", "Bacteria", "Proteobacteria", "Gammaproteobacteria", "Firmicutes", "Bacilli",
                              "Clostridia", "1 other", "Eukaryota", "Metazoa"}));
        QCOMPARE(before["drawnPaths"].toInt(), 10);
        QVERIFY(before["labels"].toInt() >= 5);

        const QJsonArray steps = report["steps"].toArray();
        QCOMPARE(steps.size(), 2);
        // Clicking a slice steps into it; clicking the centre steps out.
        const QJsonObject in = steps[0].toObject();
        QCOMPARE(in["centre"].toString(), QStringLiteral("Firmicutes"));
        QCOMPARE(names(in["path"]), QStringList({"Life", "Bacteria", "Firmicutes"}));
        QCOMPARE(names(in["slices"]), QStringList({"Firmicutes", "Bacilli", "Clostridia"}));
        QCOMPARE(steps[1].toObject()["centre"].toString(), QStringLiteral("Bacteria"));

        const QJsonObject search = report["search"].toObject();
        QCOMPARE(search["matches"].toInt(), 1);
        QCOMPARE(search["status"].toString(), QStringLiteral("1 taxon matches, 1 drawn"));
        // One sample: no chooser.
        QVERIFY(!report["sampled"].toObject()["chooserShown"].toBool());
    }

    void samplesAreChosen()
    {
        using namespace Sorvik::Viewer;
        Sorvik::initResources();
        ChartTree tree;
        tree.add(ChartTree::none, QStringLiteral("Life"), 0, 10);
        tree.add(0, QStringLiteral("Bacteria"), 6, 6);
        tree.add(0, QStringLiteral("Archaea"), 4, 4);
        const ColourMap colours = ColourMap::assign(tree, Palette());
        ChartHtml html(tree, colours);
        html.setFirstSampleName(QStringLiteral("gut"));
        // The skin has no archaea: they are simply not drawn there.
        html.addSample({QStringLiteral("skin"), {1, 5, 0}, {6, 5, 0}});
        const QString page = dir.filePath(QStringLiteral("samples.html"));
        html.save(page);

        const QJsonObject report = open(page, QStringLiteral("#sorvik-test&sample=skin&click=Bacteria"));
        QCOMPARE(names(report["before"].toObject()["slices"]), QStringList({"Life", "Bacteria", "Archaea"}));
        const QJsonObject skin = report["sampled"].toObject();
        QVERIFY(skin["chooserShown"].toBool());
        QCOMPARE(skin["choices"].toInt(), 2);
        QCOMPARE(skin["sample"].toString(), QStringLiteral("skin"));
        QCOMPARE(names(skin["slices"]), QStringList({"Life", "Bacteria"}));
        QCOMPARE(report["steps"].toArray().first().toObject()["centre"].toString(), QStringLiteral("Bacteria"));
    }

private:
    // Opens the page at the fragment and returns its test report; fails the test when the
    // browser does not answer.
    QJsonObject open(const QString& page, const QString& fragment)
    {
        QTemporaryDir profile;
        QProcess process;
        process.setProgram(browser);
        process.setArguments({QStringLiteral("--headless"), QStringLiteral("--no-sandbox"), QStringLiteral("--disable-gpu"),
                              QStringLiteral("--disable-quic"), QStringLiteral("--no-first-run"),
                              QStringLiteral("--disable-background-networking"),
                              QStringLiteral("--disable-component-update"), QStringLiteral("--disable-sync"),
                              QStringLiteral("--user-data-dir=") + profile.path(), QStringLiteral("--dump-dom"),
                              QUrl::fromLocalFile(page).toString() + fragment});
        process.start();
        if (!process.waitForFinished(90000)) {
            process.kill();
            process.waitForFinished();
            qWarning("the browser did not finish");
            return QJsonObject();
        }
        const QString dom = QString::fromUtf8(process.readAllStandardOutput());
        const QRegularExpressionMatch match =
            QRegularExpression(QStringLiteral("<pre id=\"sorvik-test-report\"[^>]*>([^<]*)</pre>")).match(dom);
        if (!match.hasMatch()) {
            qWarning("no report in the page: %s", qPrintable(QString::fromUtf8(process.readAllStandardError()).right(2000)));
            return QJsonObject();
        }
        // The report as text, which the dump escapes as HTML.
        QString text = match.captured(1);
        text.replace(QLatin1String("&lt;"), QLatin1String("<"))
            .replace(QLatin1String("&gt;"), QLatin1String(">"))
            .replace(QLatin1String("&quot;"), QLatin1String("\""))
            .replace(QLatin1String("&nbsp;"), QString(QChar(0xa0)))
            .replace(QLatin1String("&amp;"), QLatin1String("&"));
        return QJsonDocument::fromJson(text.toUtf8()).object();
    }

    QString browser;
    QTemporaryDir dir;
};

QTEST_GUILESS_MAIN(TestHtmlBrowser)
#include "tst_htmlbrowser.moc"
