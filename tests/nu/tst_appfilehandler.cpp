#include "nu/appfilehandler.h"

#include <QtTest>

using nu::AppFileHandler;

class TestAppFileHandler : public QObject
{
    Q_OBJECT
private slots:
    void statesAfterOperations_data();
    void statesAfterOperations();
};

void TestAppFileHandler::statesAfterOperations_data()
{
    // Operations: c close, n new, o open "a", s saved, S saved as "b", m modified. The state is
    // opened, shouldSave, shouldSaveAs as 0/1, then the file name.
    QTest::addColumn<QString>("operations");
    QTest::addColumn<QString>("state");
    QTest::newRow("fresh") << "" << "000 ";
    QTest::newRow("new document") << "n" << "111 ";
    QTest::newRow("opened") << "o" << "100 a";
    QTest::newRow("opened, changed") << "om" << "110 a";
    QTest::newRow("opened, changed, saved keeps its name") << "oms" << "100 a";
    QTest::newRow("new, saved as") << "nS" << "100 b";
    QTest::newRow("new, saved without a name still asks for none") << "ns" << "100 ";
    QTest::newRow("opened, then new drops the name") << "on" << "111 ";
    QTest::newRow("changed, then closed") << "omc" << "000 ";
    QTest::newRow("changed while closed is not to save") << "m" << "000 ";
}

void TestAppFileHandler::statesAfterOperations()
{
    QFETCH(QString, operations);
    QFETCH(QString, state);
    AppFileHandler file;
    for (const QChar op : operations) {
        switch (op.toLatin1()) {
        case 'c': file.setClosed(); break;
        case 'n': file.setNew(); break;
        case 'o': file.setOpened(QStringLiteral("a")); break;
        case 's': file.setSaved(); break;
        case 'S': file.setSaved(QStringLiteral("b")); break;
        case 'm': file.setModified(); break;
        default: QFAIL("unknown operation");
        }
    }
    const auto bit = [](bool b) { return b ? QLatin1Char('1') : QLatin1Char('0'); };
    const QString actual = QString(bit(file.isOpened())) + bit(file.shouldSave()) + bit(file.shouldSaveAs())
                         + QLatin1Char(' ') + file.getFileName();
    QCOMPARE(actual, state);
}

QTEST_APPLESS_MAIN(TestAppFileHandler)
#include "tst_appfilehandler.moc"
