#include "nu/frequencies.h"
#include "nu/frequenciesloader.h"
#include "nu/linereader.h"

#include <QBuffer>
#include <QtTest>

#include <limits>

namespace {

// "key=tally" sorted, then "total=n" and "skipped=n".
QStringList load(const QString& text, int columns)
{
    QBuffer input;
    input.setData(text.toUtf8());
    input.open(QIODevice::ReadOnly);
    nu::LineReader lines(input);
    nu::Frequencies frequencies;
    nu::FrequenciesLoader loader(lines, frequencies);
    loader.setNumberColumns(columns);
    loader.load();
    QStringList result;
    QStringList keys = frequencies.keys();
    keys.sort();
    for (const QString& key : keys)
        result << QStringLiteral("%1=%2").arg(key).arg(frequencies.get(key));
    result << QStringLiteral("total=%1").arg(frequencies.getTotal());
    result << QStringLiteral("skipped=%1").arg(loader.getSkipped());
    return result;
}

} // namespace

class TestFrequencies : public QObject
{
    Q_OBJECT
private slots:
    void loading_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("any blank separates")
            << " 9606 \t562\r\n\n9606" << 1 << QStringList{"562=1", "9606=2", "total=3", "skipped=0"};
        QTest::newRow("empty") << "" << 1 << QStringList{"total=0", "skipped=0"};
        QTest::newRow("columns below one mean one") << "7 7" << 0 << QStringList{"7=2", "total=2", "skipped=0"};
        QTest::newRow("id and count")
            << "9606\t5\n562 3\n9606\t1" << 2 << QStringList{"562=3", "9606=6", "total=9", "skipped=0"};
        QTest::newRow("count that is no number") << "9606\tx\n562\t3\n" << 2 << QStringList{"562=3", "total=3", "skipped=1"};
        QTest::newRow("negative count") << "9606\t-4\n562\t3\n" << 2 << QStringList{"562=3", "total=3", "skipped=1"};
        QTest::newRow("lone id at the end") << "9606\t2\n562" << 2 << QStringList{"9606=2", "total=2", "skipped=1"};
        QTest::newRow("word too long is passed over")
            << QStringLiteral("1 %1 2").arg(QString(100000, QLatin1Char('x'))) << 1
            << QStringList{"1=1", "2=1", "total=2", "skipped=1"};
        QTest::newRow("pair with an overlong id")
            << QStringLiteral("%1 5\n2 1").arg(QString(5000, QLatin1Char('7'))) << 2
            << QStringList{"2=1", "total=1", "skipped=1"};
        QTest::newRow("word at the length limit is kept")
            << QString(nu::FrequenciesLoader::maxWordLength, QLatin1Char('9')) << 1
            << QStringList{QString(nu::FrequenciesLoader::maxWordLength, QLatin1Char('9')) + "=1", "total=1", "skipped=0"};
    }

    void loading()
    {
        QFETCH(QString, text);
        QFETCH(int, columns);
        QFETCH(QStringList, expected);
        QCOMPARE(load(text, columns), expected);
    }

    void talliesSaturate()
    {
        nu::Frequencies frequencies;
        const qint64 max = std::numeric_limits<qint64>::max();
        frequencies.add(QStringLiteral("a"), max - 1);
        frequencies.add(QStringLiteral("a"), 5);
        frequencies.add(QStringLiteral("b"), 3);
        QCOMPARE(frequencies.get(QStringLiteral("a")), max);
        QCOMPARE(frequencies.getTotal(), max);
        QCOMPARE(frequencies.get(QStringLiteral("unknown")), qint64(0));
    }

    void stepCallbackCanStopLoading()
    {
        QString input;
        for (int i = 0; i < 100; ++i)
            input += QStringLiteral("%1\n").arg(i);
        QBuffer buffer;
        buffer.setData(input.toUtf8());
        buffer.open(QIODevice::ReadOnly);
        nu::LineReader lines(buffer);
        nu::Frequencies frequencies;
        nu::FrequenciesLoader loader(lines, frequencies);
        loader.setStepCallback([](qint64 words) {
            if (words == 10)
                throw std::runtime_error("stop");
        });
        QVERIFY_EXCEPTION_THROWN(loader.load(), std::runtime_error);
        QCOMPARE(frequencies.getTotal(), qint64(10));
    }
};

QTEST_GUILESS_MAIN(TestFrequencies)
#include "tst_frequencies.moc"
