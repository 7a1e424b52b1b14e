#include "nu/edit/scene.h"
#include "nu/edit/undomanager.h"
#include "tests/support/editcharts.h"

#include <QGraphicsItem>
#include <QJsonObject>
#include <QtTest>

#include <map>

using namespace nu::edit;
using Sorvik::Test::EditorItemManager;
using Sorvik::Test::chartState;

namespace {

// Ids in the order addAnnotatedChart creates the items.
enum ChartItem : long { Root = 1, Bacteria, Archaea, SliceBracket, ArcText, FreeBracket, Figure, Line, Elbow, Note, SubSpace };

class Fixture
{
public:
    Fixture()
        : scene(manager)
        , undo(manager)
    {
        Sorvik::Test::addAnnotatedChart(manager);
    }

    // As the editor deletes: the item recorded first, then its children depth first, then the
    // item removed.
    void deleteWithChildren(long id)
    {
        QGraphicsItem* graphics = manager.getGraphicsItem(id);
        undo.deleteItem(*manager.getItem(id));
        for (QGraphicsItem* child : graphics->childItems()) {
            if (const long childId = manager.findId(child))
                deleteWithChildren(childId);
        }
        manager.deleteItem(id);
    }

    void set(long id, const char* name, const QVariant& value)
    {
        const auto item = manager.getItem(id);
        undo.changeItem(*item);
        item->setPropertyValue(QString::fromLatin1(name), value);
    }

    void act(const QString& action)
    {
        undo.changeBegin();
        if (action == QLatin1String("apply")) {
            // Only the oldest state of an item in a step is kept for undo.
            set(Figure, "text", QStringLiteral("first"));
            set(Figure, "text", QStringLiteral("Figure 2"));
            set(Figure, "anchor.vertical", 2);
            set(Figure, "font", QStringLiteral("Serif,20,-1,5,50,1,0,0,0,0"));
        } else if (action == QLatin1String("recount")) {
            set(Archaea, "count", 30);
        } else if (action == QLatin1String("delete a slice")) {
            deleteWithChildren(Bacteria);
        } else if (action == QLatin1String("delete twice")) {
            deleteWithChildren(Note);
            deleteWithChildren(SliceBracket);
        } else if (action == QLatin1String("create")) {
            const auto created = manager.createItem(6);
            undo.createItem(*created);
            created->setPropertyValue(QStringLiteral("text"), QStringLiteral("new text"));
            undo.changeItem(*created);
            created->setParent(manager.getItem(Elbow).get());
        } else if (action == QLatin1String("move under another item")) {
            undo.changeItem(*manager.getItem(Figure));
            manager.getItem(Figure)->setParent(manager.getItem(FreeBracket).get());
        } else if (action == QLatin1String("change then delete")) {
            set(Elbow, "end.x", 80.0);
            deleteWithChildren(Elbow);
        }
        undo.changeEnd();
    }

    EditorItemManager manager;
    Scene scene;
    UndoManager undo;
};

} // namespace

class TestUndoManager : public QObject
{
    Q_OBJECT
private slots:
    void undoRedoUndo_data();
    void undoRedoUndo();
    void changeWithoutEffectIsNoStep();
    void newChangeEndsRedo();
    void cleanMark_data();
    void cleanMark();
};

void TestUndoManager::undoRedoUndo_data()
{
    QTest::addColumn<QString>("action");

    QTest::newRow("property apply") << "apply";
    QTest::newRow("recount a slice") << "recount";
    QTest::newRow("delete a slice with its annotations") << "delete a slice";
    QTest::newRow("two deletions in one step") << "delete twice";
    QTest::newRow("create and place") << "create";
    QTest::newRow("move under another item") << "move under another item";
    QTest::newRow("change, then delete") << "change then delete";
}

void TestUndoManager::undoRedoUndo()
{
    QFETCH(QString, action);

    Fixture f;
    const auto before = chartState(f.manager);
    f.act(action);
    const auto after = chartState(f.manager);
    QVERIFY(after != before);
    QCOMPARE(f.undo.getUndoCount(), 1);
    QVERIFY(f.undo.hasChanged());

    for (int round = 0; round < 3; ++round) {
        f.undo.undo();
        QCOMPARE(chartState(f.manager), before);
        QVERIFY(!f.undo.hasChanged());
        QVERIFY(f.undo.canRedo());
        f.undo.redo();
        QCOMPARE(chartState(f.manager), after);
        QCOMPARE(f.undo.getUndoCount(), 1);
        QCOMPARE(f.undo.getRedoCount(), 0);
    }
    // Redo with nothing to redo changes nothing.
    f.undo.redo();
    QCOMPARE(chartState(f.manager), after);
    f.undo.undo();
    Fixture untouched;
    QCOMPARE(chartState(f.manager, false), chartState(untouched.manager, false));
}

void TestUndoManager::changeWithoutEffectIsNoStep()
{
    Fixture f;
    f.undo.changeBegin();
    f.set(Figure, "text", QStringLiteral("Figure 1"));
    f.set(Line, "end.x", 40.0);
    f.undo.changeItem(*f.manager.getItem(Root));
    f.undo.changeEnd();
    QVERIFY(!f.undo.hasChanged());

    // Changed and changed back within the step.
    f.undo.changeBegin();
    f.set(Figure, "text", QStringLiteral("other"));
    f.set(Figure, "text", QStringLiteral("Figure 1"));
    f.undo.changeEnd();
    QVERIFY(!f.undo.canUndo());
}

void TestUndoManager::newChangeEndsRedo()
{
    Fixture f;
    f.act(QStringLiteral("apply"));
    f.undo.undo();
    QVERIFY(f.undo.canRedo());
    // An empty group keeps the redo step.
    f.undo.changeBegin();
    f.undo.changeEnd();
    QVERIFY(f.undo.canRedo());
    f.act(QStringLiteral("recount"));
    QVERIFY(!f.undo.canRedo());
    f.undo.redo();
    QCOMPARE(f.manager.getItem(Figure)->getPropertyValue(QStringLiteral("text")), QVariant("Figure 1"));
}

void TestUndoManager::cleanMark_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<bool>("clean");

    // The text the steps leave.
    QTest::addColumn<QString>("text");

    // c: a change (the text becomes "text N" for the Nth), u: undo, r: redo, s: mark clean
    // (saved), x: clear.
    QTest::newRow("changed and undone") << "c u" << true << "Figure 1";
    QTest::newRow("saved") << "c c s" << true << "text 2";
    QTest::newRow("saved, then undone") << "c c s u" << false << "text 1";
    QTest::newRow("and redone") << "c c s u r" << true << "text 2";
    QTest::newRow("undone past the save, then changed") << "c s u c" << false << "text 2";
    QTest::newRow("the saved state is out of reach") << "c s u c u" << false << "Figure 1";
    QTest::newRow("saved with nothing to undo") << "c u s r u" << true << "Figure 1";
    QTest::newRow("cleared") << "c s c x" << true << "text 2";
    QTest::newRow("redo after several undos takes the newest undone step")
        << "c c c u u r" << false << "text 2";
    QTest::newRow("every undone step redone in turn") << "c c c s u u u r r r" << true << "text 3";
}

void TestUndoManager::cleanMark()
{
    QFETCH(QString, steps);
    QFETCH(bool, clean);
    QFETCH(QString, text);

    Fixture f;
    int changes = 0;
    for (const QString& step : steps.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (step == QLatin1String("c")) {
            f.undo.changeBegin();
            f.set(Figure, "text", QStringLiteral("text %1").arg(++changes));
            f.undo.changeEnd();
        } else if (step == QLatin1String("u")) {
            f.undo.undo();
        } else if (step == QLatin1String("r")) {
            f.undo.redo();
        } else if (step == QLatin1String("s")) {
            f.undo.setClean();
        } else {
            f.undo.clear();
        }
    }
    QCOMPARE(f.undo.isClean(), clean);
    QCOMPARE(f.undo.hasChanged(), !clean);
    QCOMPARE(f.manager.getItem(Figure)->getPropertyValue(QStringLiteral("text")).toString(), text);
}

QTEST_MAIN(TestUndoManager)
#include "tst_undomanager.moc"
