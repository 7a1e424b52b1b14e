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
    void render_data()
    {
        QTest::addColumn<Levels>("levels");
        QTest::addColumn<int>("width");
        QTest::addColumn<QString>("line");
        QTest::newRow("nothing yet") << Levels() << 80 << "";
        QTest::newRow("step inside the overall bar")
            << Levels{{2, 4, "Building piechart..."}, {50, 100, "Counting nodes..."}} << 80
            << "[############--------]  62% Building piechart... | Counting nodes... 50%";
        QTest::newRow("step without a size")
            << Levels{{0, 8, "Retrieving data from NCBI..."}, {0, 0, "Downloading database..."}} << 100
            << "[--------------------]   0% Retrieving data from NCBI... | Downloading database...";
        QTest::newRow("value past the maximum") << Levels{{9, 8, "x"}} << 80 << "[####################] 100% x";
        QTest::newRow("cut to the width") << Levels{{0, 4, "Building piechart..."}, {1, 2, "Reading file a-very-long-name.txt"}}
                                          << 40 << "[##------------------]  12% Building ...";
    }

    void render()
    {
        QFETCH(Levels, levels);
        QFETCH(int, width);
        QFETCH(QString, line);
        QCOMPARE(ProgressBar::render(levels, width), line);
    }

    void finishClearsTheLineOnce_data()
    {
        QTest::addColumn<bool>("enabled");
        QTest::newRow("on a terminal") << true;
        QTest::newRow("quiet") << false;
    }

    void finishClearsTheLineOnce()
    {
        QFETCH(bool, enabled);
        QString text;
        QTextStream stream(&text);
        ProgressBar bar(stream, enabled);
        bar.update(0, 1, 4, QStringLiteral("Building piechart..."));
        QCOMPARE(text.startsWith(QLatin1Char('\r')) && text.contains(QLatin1String("Building piechart...")), enabled);
        text.clear();
        bar.finish();
        QCOMPARE(text, enabled ? QStringLiteral("\r\x1b[K") : QString());
        text.clear();
        bar.finish();
        QCOMPARE(text, QString());
    }
};

QTEST_GUILESS_MAIN(TestProgressBar)
#include "tst_progressbar.moc"
