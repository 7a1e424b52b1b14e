#include "ontology/builder.h"
#include "ontology/ontology.h"
#include "ontology/reader.h"
#include "tests/support/foldercase.h"
#include "tests/support/sqlfile.h"
#include "tests/support/eventrecorder.h"
#include "tests/support/treeliteral.h"

#include <QRegularExpression>
#include <QtTest>

using Zem::Ontology::Ontology;
using Zem::Ontology::Reader;
using namespace Sorvik::Test;

namespace {

Reader::Position parsePosition(const QString& event)
{
    const auto match = QRegularExpression(QStringLiteral("\\((\\d+),(\\d+)\\)")).match(event);
    return Reader::Position(match.captured(1).toInt(), match.captured(2).toInt());
}

// The events of one node's subtree within a full list of events.
QStringList subtreeEvents(const QStringList& all, int openIndex)
{
    const QString id = all.at(openIndex).section(QLatin1Char(' '), 1, 1);
    const int close = all.indexOf(QStringLiteral("close ") + id, openIndex);
    return all.mid(openIndex, close - openIndex + 1);
}

} // namespace

class TestReader : public Sorvik::Test::FolderCase
{
    Q_OBJECT
private slots:
    void init()
    {
        start();
        file = path(QStringLiteral("t.ontology"));
    }

    void eventsAndPositions_data()
    {
        QTest::addColumn<QString>("tree");
        QTest::addColumn<QStringList>("events");
        QTest::newRow("small tree") << "root(a(c) b)"
                                    << QStringList{"open root (0,1)", "open a (1,3)", "open c (3,4)", "close c",
                                                   "close a", "open b (2,4)", "close b", "close root"};
        QTest::newRow("root alone") << "1" << QStringList{"open 1 (0,1)", "close 1"};
    }

    void eventsAndPositions()
    {
        QFETCH(QString, tree);
        QFETCH(QStringList, events);
        writeTree(file, tree, false);
        EventRecorder reader{Ontology(file)};
        reader.read();
        QCOMPARE(reader.events, events);
    }

    void startingAtAnyNodeGivesItsSubtree_data()
    {
        QTest::addColumn<QString>("tree");
        QTest::newRow("bushy") << "r(a(c(f g) d) b(e(h(i j)) k) l)";
        QTest::newRow("shared node") << "r(a(s(t u)) b(s))";
    }

    void startingAtAnyNodeGivesItsSubtree()
    {
        QFETCH(QString, tree);
        writeTree(file, tree, false);
        const Ontology ontology(file);
        EventRecorder full{ontology};
        full.read();
        for (int i = 0; i < full.events.size(); ++i) {
            if (!full.events.at(i).startsWith(QLatin1String("open ")))
                continue;
            EventRecorder part(ontology, parsePosition(full.events.at(i)));
            part.read();
            QCOMPARE(part.events, subtreeEvents(full.events, i));
        }
    }

    void damagedRows_data()
    {
        QTest::addColumn<QStringList>("rows");
        QTest::addColumn<int>("startRow");
        QTest::addColumn<int>("startChildren");
        QTest::addColumn<QStringList>("eventsBeforeFailure");
        QTest::addColumn<bool>("fails");
        QTest::newRow("count larger than the rows left")
            << QStringList{"('r', 2, '{}')", "('a', 3, '{}')", "('b', 0, '{}')", "('c', 0, '{}')"} << 0 << 1
            << QStringList{"open r (0,1)", "open a (1,3)"} << true;
        QTest::newRow("start row past the end") << QStringList{"('r', 0, '{}')"} << 5 << 6 << QStringList() << true;
        QTest::newRow("data that is not JSON") << QStringList{"('r', 1, '{oops')", "('a', 0, NULL)"} << 0 << 1
                                               << QStringList{"open r (0,1)", "open a (1,2)", "close a", "close r"} << false;
        QTest::newRow("huge count") << QStringList{"('r', 2000000000, '{}')", "('a', 0, '{}')"} << 0 << 1
                                    << QStringList{"open r (0,1)"} << true;
    }

    void damagedRows()
    {
        QFETCH(QStringList, rows);
        QFETCH(int, startRow);
        QFETCH(int, startChildren);
        QFETCH(QStringList, eventsBeforeFailure);
        QFETCH(bool, fails);
        QStringList sql{"CREATE TABLE nodes( id TEXT, count INTEGER, data TEXT)",
                        "CREATE TABLE info( key TEXT PRIMARY KEY, value TEXT)",
                        "INSERT INTO info VALUES ('nodes', '1'), ('counted', '1')"};
        for (const QString& row : rows)
            sql << QStringLiteral("INSERT INTO nodes VALUES ") + row;
        execSql(file, sql);

        EventRecorder reader(Ontology(file), Reader::Position(startRow, startChildren));
        bool threw = false;
        try {
            reader.read();
        } catch (const Reader::InvalidEndException&) {
            threw = true;
        }
        QCOMPARE(threw, fails);
        QCOMPARE(reader.events, eventsBeforeFailure);
    }

private:
    QString file;
};

QTEST_GUILESS_MAIN(TestReader)
#include "tst_reader.moc"
