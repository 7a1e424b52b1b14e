#include "nu/parser/bcp.h"

#include <QTextStream>
#include <QtTest>

using nu::parser::BCP;

namespace {

const QString dmpSeparator = QStringLiteral("\t|\t");
const QString dmpRow = QStringLiteral("\t|\n");
const QString dmpFinal = QStringLiteral("\t|");

// Every row of text as its fields joined by "," (a row per list entry).
QStringList readRows(const QString& text, const QString& rowTerminator, const QString& separator,
                     const QString& finalTerminator, int readSize)
{
    QString input = text;
    QTextStream stream(&input, QIODevice::ReadOnly);
    BCP rows(stream);
    rows.setRowTerminator(rowTerminator);
    rows.setFieldSeparator(separator);
    rows.setFinalTerminator(finalTerminator);
    rows.setBufferSize(readSize);
    QStringList result;
    while (rows.next()) {
        QStringList fields;
        for (int i = 0; i < rows.getFieldCount(); ++i)
            fields << rows.get(i);
        result << fields.join(QLatin1Char(','));
        if (result.size() > 1000)
            break;
    }
    return result;
}

} // namespace

class TestBcp : public QObject
{
    Q_OBJECT
private slots:
    void rows_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("dmp");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("no final line feed") << "a\tb\nc\td" << false << QStringList{"a,b", "c,d"};
        QTest::newRow("empty input") << "" << false << QStringList();
        QTest::newRow("only a line feed") << "\n" << false << QStringList();
        QTest::newRow("three line feeds at the end") << "a\n\n\n" << false << QStringList{"a", ""};
        QTest::newRow("empty fields kept") << "\ta\t\t\n" << false << QStringList{",a,,"};
        QTest::newRow("long first row") << QString(100, QLatin1Char('x')) + "\ty\nz\n" << false
                                        << QStringList{QString(100, QLatin1Char('x')) + ",y", "z"};
        QTest::newRow("dmp rows") << "1\t|\t1\t|\tno rank\t|\n2\t|\t131567\t|\tsuperkingdom\t|\n" << true
                                  << QStringList{"1,1,no rank", "2,131567,superkingdom"};
        QTest::newRow("dmp last row cut") << "1\t|\t1\t|\n2\t|\t131567\t|" << true << QStringList{"1,1", "2,131567"};
        QTest::newRow("dmp bar inside a field") << "9\t|\ta|b\t|\n" << true << QStringList{"9,a|b"};
        QTest::newRow("dmp final terminator alone") << "\t|" << true << QStringList();
        QTest::newRow("dmp separator at row end") << "1\t|\t\t|\n" << true << QStringList{"1,"};
        QTest::newRow("dmp without terminators") << "just text" << true << QStringList{"just text"};
    }

    void rows()
    {
        QFETCH(QString, text);
        QFETCH(bool, dmp);
        QFETCH(QStringList, expected);
        // Terminators split over two reads must make no difference; sizes below 1 mean the default.
        for (int readSize : {1, 2, 3, 7, 30, 4096, 0, -5}) {
            const QStringList rows = dmp ? readRows(text, dmpRow, dmpSeparator, dmpFinal, readSize)
                                         : readRows(text, QStringLiteral("\n"), QStringLiteral("\t"), QStringLiteral("\n"),
                                                    readSize);
            QVERIFY2(rows == expected, qPrintable(QString::number(readSize) + QLatin1Char(' ') + rows.join(QLatin1Char('|'))));
        }
    }

    void rawLineAndMissingFields()
    {
        QString input = QStringLiteral("2\t|\t131567\t|\tsuperkingdom\t|\n");
        QTextStream stream(&input, QIODevice::ReadOnly);
        BCP rows(stream);
        rows.setRowTerminator(dmpRow);
        rows.setFieldSeparator(dmpSeparator);
        rows.setFinalTerminator(dmpFinal);
        QVERIFY(rows.next());
        QCOMPARE(rows.getLine(), QStringLiteral("2\t|\t131567\t|\tsuperkingdom"));
        QCOMPARE(rows.get(2), QStringLiteral("superkingdom"));
        QCOMPARE(rows.get(3), QString());
        QCOMPARE(rows.get(-1), QString());
        QVERIFY(!rows.next());
    }

    void overlongRowIsRefused()
    {
        QString input(5000, QLatin1Char('a'));
        input += QStringLiteral("\nshort\n");
        QTextStream stream(&input, QIODevice::ReadOnly);
        BCP rows(stream);
        rows.setMaxRowLength(1000);
        QVERIFY_EXCEPTION_THROWN(rows.next(), BCP::RowTooLongException);

        QString fits = QString(1000, QLatin1Char('a')) + QLatin1Char('\n');
        QTextStream fitting(&fits, QIODevice::ReadOnly);
        BCP exact(fitting);
        exact.setMaxRowLength(1000);
        QVERIFY(exact.next());
        QCOMPARE(exact.getLineRef().size(), 1000);
    }
};

QTEST_GUILESS_MAIN(TestBcp)
#include "tst_bcp.moc"
