#include "cli/progressbar.h"

#include <QTextStream>
#include <QtTest>

using Sorvik::Cli::ProgressBar;
using Levels = QVector<ProgressBar::Level>;
Q_DECLARE_METATYPE(Levels)

class TestProgressBar : public QObject
{
    Q_OBJECT
private slots:
    void render_data();
    void render();
    void disabledBarPrintsNothing();
    void finishClearsTheLine();
};

void TestProgressBar::render_data()
{
    QTest::addColumn<Levels>("levels");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("line");
    QTest::newRow("nothing yet") << Levels() << 80 << "";
    QTest::newRow("overall only") << Levels{{2, 8, "Building ontology..."}} << 80 << "[#####---------------]  25% Building ontology...";
    QTest::newRow("step inside the overall bar")
        << Levels{{2, 4, "Building piechart..."}, {50, 100, "Counting nodes..."}} << 80
        << "[############--------]  62% Building piechart... | Counting nodes... 50%";
    QTest::newRow("step without a size") << Levels{{0, 8, "Retrieving data from NCBI..."}, {0, 0, "Downloading database..."}}
                                         << 100 << "[--------------------]   0% Retrieving data from NCBI... | Downloading database...";
    QTest::newRow("finished") << Levels{{1, 1, "Piechart builded"}} << 80 << "[####################] 100% Piechart builded";
    QTest::newRow("value past the maximum") << Levels{{9, 8, "x"}} << 80 << "[####################] 100% x";
    QTest::newRow("cut to the width") << Levels{{0, 4, "Building piechart..."}, {1, 2, "Reading file a-very-long-name.txt"}}
                                      << 40 << "[##------------------]  12% Building ...";
}

void TestProgressBar::render()
{
    QFETCH(Levels, levels);
    QFETCH(int, width);
    QFETCH(QString, line);
    QCOMPARE(ProgressBar::render(levels, width), line);
    QVERIFY(ProgressBar::render(levels, width).size() <= width);
}

void TestProgressBar::disabledBarPrintsNothing()
{
    QString text;
    {
        QTextStream stream(&text);
        ProgressBar bar(stream, false);
        bar.update(0, 1, 4, QStringLiteral("Building piechart..."));
        bar.finish();
    }
    QCOMPARE(text, QString());
}

void TestProgressBar::finishClearsTheLine()
{
    QString text;
    QTextStream stream(&text);
    ProgressBar bar(stream, true);
    bar.update(0, 1, 4, QStringLiteral("Building piechart..."));
    QVERIFY(text.startsWith(QLatin1Char('\r')));
    QVERIFY(text.contains(QLatin1String("Building piechart...")));
    text.clear();
    bar.finish();
    QCOMPARE(text, QStringLiteral("\r\x1b[K"));
    text.clear();
    bar.finish();
    QCOMPARE(text, QString());
}

QTEST_GUILESS_MAIN(TestProgressBar)
#include "tst_progressbar.moc"
