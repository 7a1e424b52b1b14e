#include "editor/scene.h"
#include "nu/edit/handler.h"
#include "nu/edit/handlergeometry.h"
#include "nu/graphics/arctextitem.h"
#include "nu/graphics/piechartitem.h"
#include "tests/support/editcharts.h"

#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>
#include <map>

using Sorvik::Edit::Scene;
using Sorvik::Test::chartState;
using nu::edit::HandlerPosition;
using nu::edit::handlergeometry::directionOf;
using nu::edit::handlergeometry::lengthOf;
using nu::edit::handlergeometry::polarPoint;
using Mode = Scene::CursorMode;

namespace {

// Ids in the order addAnnotatedChart creates the items.
const std::map<QString, long> chartIds{
    {"root", 1},   {"Bacteria", 2}, {"Archaea", 3}, {"slice bracket", 4}, {"arc text", 5}, {"free bracket", 6},
    {"figure", 7}, {"line", 8},     {"elbow", 9},   {"note", 10},         {"subspace", 11},
};

// The properties of an item that differ between two of its JSON forms, as "name=value" sorted.
QStringList changed(const QJsonObject& before, const QJsonObject& after)
{
    QStringList result;
    const QJsonObject a = before.value(QStringLiteral("data")).toObject();
    const QJsonObject b = after.value(QStringLiteral("data")).toObject();
    for (auto it = b.begin(); it != b.end(); ++it) {
        if (a.value(it.key()) == it.value())
            continue;
        const double value = it.value().toDouble();
        result << it.key() + QLatin1Char('=') + QString::number(std::round(value * 1000) / 1000);
    }
    result.sort();
    return result;
}

class Fixture
{
public:
    Fixture()
        : scene(manager)
    {
        Sorvik::Test::addAnnotatedChart(manager);
    }

    QGraphicsItem* item(const QString& name) { return manager.getGraphicsItem(chartIds.at(name)); }
    QJsonObject json(const QString& name) { return manager.getItem(chartIds.at(name))->getJsonValue().toObject(); }

    void mouse(QEvent::Type type, const QPointF& at)
    {
        QGraphicsSceneMouseEvent event(type);
        event.setScenePos(at);
        event.setLastScenePos(last);
        event.setButton(type == QEvent::GraphicsSceneMouseMove ? Qt::NoButton : Qt::LeftButton);
        event.setButtons(type == QEvent::GraphicsSceneMouseRelease ? Qt::NoButton : Qt::LeftButton);
        QApplication::sendEvent(&scene, &event);
        last = at;
    }
    void click(const QPointF& at)
    {
        mouse(QEvent::GraphicsSceneMousePress, at);
        mouse(QEvent::GraphicsSceneMouseRelease, at);
    }
    // Press at from, move there in steps, release.
    void drag(const QPointF& from, const QPointF& to)
    {
        mouse(QEvent::GraphicsSceneMousePress, from);
        for (int step = 1; step <= 4; ++step)
            mouse(QEvent::GraphicsSceneMouseMove, from + (to - from) * step / 4.0);
        mouse(QEvent::GraphicsSceneMouseRelease, to);
    }
    void key(int key)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&scene, &event);
    }

    HandlerPosition* knobs() const { return Sorvik::Test::positionKnob(scene); }
    // 0 the position knob, then the others in the order they were made.
    nu::edit::Handler* knob(int index) const
    {
        HandlerPosition* position = knobs();
        if (!position || index == 0)
            return position;
        return index <= int(position->getHandlers().size()) ? position->getHandlers()[index - 1] : nullptr;
    }

    // A point inside a slice, in the middle of its ring and span.
    QPointF inside(const QString& name)
    {
        auto slice = dynamic_cast<nu::graphics::PieChartItem*>(item(name));
        return slice->mapToScene(polarPoint(slice->getLabelRadius(), slice->getAngle() / 2));
    }
    // A point where a press picks the item.
    QPointF on(const QString& name)
    {
        QGraphicsItem* target = item(name);
        const QRectF bounds = target->sceneBoundingRect();
        for (int i = 0; i <= 40; ++i) {
            for (int j = 0; j <= 40; ++j) {
                const QPointF p = bounds.topLeft() + QPointF(bounds.width() * i / 40, bounds.height() * j / 40);
                if (scene.pickItem(p).second == target)
                    return p;
            }
        }
        return QPointF(1e6, 1e6);
    }

    Scene::ItemManager manager;
    Scene scene;
    QPointF last;
};

} // namespace

class TestEditorScene : public QObject
{
    Q_OBJECT
private slots:
    void pressSelectsTheTopmostEditableItem_data();
    void pressSelectsTheTopmostEditableItem();
    void dragChangesOneValueInOneStep_data();
    void dragChangesOneValueInOneStep();
    void dragThroughAZoomedView();
    void deleteTakesTheChildrenInOneStep_data();
    void deleteTakesTheChildrenInOneStep();
    void creationInEachMode_data();
    void creationInEachMode();
};

void TestEditorScene::pressSelectsTheTopmostEditableItem_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<bool>("hideSubSpaces");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("selected");
    // The position knob's colour (yellow when it moves the item), then how many other knobs.
    QTest::addColumn<QString>("knobs");

    const QString bracket = QStringLiteral("free bracket");
    QTest::newRow("empty canvas") << "canvas" << false << bracket << "" << "";
    QTest::newRow("an outer slice") << "Bacteria" << false << bracket << "Bacteria" << "grey 1";
    QTest::newRow("a bent line's second line") << "elbow" << false << bracket << "elbow" << "grey 1";
    // The chart's centre slice stacks under every other top-level item.
    QTest::newRow("a subspace over the chart") << "subspace" << false << bracket << "subspace" << "yellow 1";
    // Nothing is picked at a hidden subspace's origin: the selection stays.
    QTest::newRow("a hidden subspace over the chart")
        << "subspace origin" << true << bracket << "free bracket" << "yellow 5";
    // An outer slice's grey position knob lies on the chart's centre.
    QTest::newRow("under a grey knob") << "centre" << true << "Archaea" << "root" << "yellow 2";
}

void TestEditorScene::pressSelectsTheTopmostEditableItem()
{
    QFETCH(QString, where);
    QFETCH(bool, hideSubSpaces);
    QFETCH(QString, before);
    QFETCH(QString, selected);
    QFETCH(QString, knobs);

    Fixture f;
    f.scene.slotEditSubSpacesVisible(!hideSubSpaces);
    f.scene.selectItem(f.item(before));
    const std::map<QString, QPointF> points{
        {"canvas", QPointF(300, 300)},
        {"Bacteria", f.inside(QStringLiteral("Bacteria"))},
        {"centre", f.item(QStringLiteral("root"))->scenePos()},
        {"elbow", f.item(QStringLiteral("elbow"))->mapToScene(QPointF(15, 0))},
        {"subspace", f.item(QStringLiteral("subspace"))->mapToScene(QPointF(7, -7))},
        {"subspace origin", f.item(QStringLiteral("subspace"))->scenePos()},
    };
    QSignalSpy selections(&f.scene, &Scene::signalItemSelected);
    f.click(points.at(where));

    const long expected = selected.isEmpty() ? 0 : chartIds.at(selected);
    QCOMPARE(f.manager.findId(f.scene.getHandledItem()), expected);
    if (where == QLatin1String("subspace origin")) {
        QCOMPARE(selections.count(), 0);
    } else {
        QCOMPARE(selections.count(), 1);
        QCOMPARE(selections.first().first().toLongLong(), qint64(expected));
    }
    HandlerPosition* position = f.knobs();
    QCOMPARE(position != nullptr, expected != 0);
    if (!position)
        return;
    const bool movable = position->flags() & QGraphicsItem::ItemIsMovable;
    QCOMPARE(movable, position->getColor() == QColor(Qt::yellow));
    QCOMPARE((movable ? "yellow " : "grey ") + QString::number(position->getHandlers().size()), knobs);
    for (auto* sub : position->getHandlers())
        QVERIFY(sub->getColor() == QColor(Qt::red) && (sub->flags() & QGraphicsItem::ItemIsMovable));
    QCOMPARE(position->scenePos(), f.manager.getGraphicsItem(expected)->scenePos());
}

void TestEditorScene::dragChangesOneValueInOneStep_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<int>("knob");
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<QString>("changes");

    // Targets in the knob set's frame: the item's origin, turned as its parent is. The free
    // bracket is at (200, -20.5), turned 30, spanning 60, radius 100, tips 10.
    QTest::newRow("bracket position") << "free bracket" << 0 << QPointF(210, -10) << "position.x=210 position.y=-10";
    QTest::newRow("bracket rotation") << "free bracket" << 2 << polarPoint(100, 80) << "rotation=80";
    QTest::newRow("bracket span") << "free bracket" << 3 << polarPoint(120, 130) << "angle=100";
    QTest::newRow("bracket start tip") << "free bracket" << 4 << polarPoint(70, 35) << "tip-length=30";
    QTest::newRow("bracket end tip") << "free bracket" << 5 << polarPoint(95, 90) << "tip-length=5";
    // Bacteria's ring ends at 70; its bracket is 12 further out.
    QTest::newRow("bracket on a slice: radius") << "slice bracket" << 1 << polarPoint(100, 50) << "radius=30";
    QTest::newRow("bracket on a slice: grey position") << "slice bracket" << 0 << QPointF(30, 30) << "";
    // Bacteria spans 216 degrees; its bracket turns its text to 108, 82 out.
    QTest::newRow("arc text radius and rotation")
        << "arc text" << 1 << polarPoint(100, 128) << "radius=18 rotation=20";
    QTest::newRow("outer slice width") << "Archaea" << 1 << polarPoint(110, 300) << "radius=70";
    QTest::newRow("straight text rotation") << "figure" << 1 << polarPoint(30, 45) << "rotation=45";
    QTest::newRow("straight text on a line's end") << "note" << 0 << QPointF(40, 5) << "position.x=10 position.y=5";
    QTest::newRow("line end") << "line" << 1 << QPointF(50, 10) << "end.x=50 end.y=10";
}

void TestEditorScene::dragChangesOneValueInOneStep()
{
    QFETCH(QString, item);
    QFETCH(int, knob);
    QFETCH(QPointF, to);
    QFETCH(QString, changes);

    Fixture f;
    QVERIFY(f.scene.selectItem(f.item(item)));
    nu::edit::Handler* handle = f.knob(knob);
    QVERIFY(handle);
    const auto before = chartState(f.manager);
    const QJsonObject json = f.json(item);
    QSignalSpy sceneChanges(&f.scene, &Scene::signalSceneChanged);

    // A knob drawn beside its origin (a straight text's position) is taken where it is drawn and
    // dragged by the same vector; an arc text's knob keeps clear of the letters by as much as it
    // does now.
    const QPointF grip = handle->getKnobCentre();
    if (auto arc = dynamic_cast<nu::graphics::ArcTextItem*>(f.item(item)); arc && knob == 1)
        to = polarPoint(lengthOf(to) + lengthOf(handle->pos()) - arc->getRadius(), directionOf(to));
    QGraphicsItem* frame = handle->parentItem();
    f.drag(handle->mapToScene(grip), frame ? frame->mapToScene(to + grip) : to + grip);

    QCOMPARE(changed(json, f.json(item)).join(QLatin1Char(' ')), changes);
    QCOMPARE(f.scene.getUndoManager().getUndoCount(), changes.isEmpty() ? 0 : 1);
    if (changes.isEmpty())
        return;
    QVERIFY(sceneChanges.count() > 0);
    f.scene.slotUndo();
    QCOMPARE(chartState(f.manager), before);
    QCOMPARE(f.knobs()->getHandledItem(), f.item(item));
}

// The mouse moves 30 pixels right and 20 down on a view zoomed twice; a line that ignores
// transformations is measured in pixels, not in the scene's units.
void TestEditorScene::dragThroughAZoomedView()
{
    const QString item = QStringLiteral("elbow");
    Fixture f;
    QGraphicsView view(&f.scene);
    view.scale(2, 2);
    view.resize(600, 600);
    view.show();
    QVERIFY(f.scene.selectItem(f.item(item)));
    const QTransform toViewport = view.viewportTransform();
    const QPoint from = f.knob(1)->deviceTransform(toViewport).map(QPointF()).toPoint();
    const QJsonObject json = f.json(item);
    const auto send = [&](QEvent::Type type, const QPoint& at) {
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        const Qt::MouseButtons buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, view.viewport()->mapToGlobal(at), button, buttons, Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &event);
    };
    send(QEvent::MouseButtonPress, from);
    for (const QPoint& way : {QPoint(10, 7), QPoint(21, 12), QPoint(30, 20)})
        send(QEvent::MouseMove, from + way);
    send(QEvent::MouseButtonRelease, from + QPoint(30, 20));
    QCOMPARE(changed(json, f.json(item)).join(QLatin1Char(' ')), QStringLiteral("end.x=60 end.y=20"));
}

void TestEditorScene::deleteTakesTheChildrenInOneStep_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<QStringList>("gone");

    QTest::newRow("a slice with its bracket and text")
        << "Bacteria" << QStringList{"Bacteria", "slice bracket", "arc text"};
    QTest::newRow("a bent line with its text") << "line" << QStringList{"line", "elbow", "note"};
    QTest::newRow("a lone bracket") << "free bracket" << QStringList{"free bracket"};
}

void TestEditorScene::deleteTakesTheChildrenInOneStep()
{
    QFETCH(QString, item);
    QFETCH(QStringList, gone);

    Fixture f;
    const auto before = chartState(f.manager);
    QVERIFY(f.scene.selectItem(f.item(item)));
    f.key(Qt::Key_Delete);
    QVERIFY(!f.knobs());
    const auto after = chartState(f.manager);
    QCOMPARE(after.size(), before.size() - gone.size());
    for (const QString& name : gone)
        QVERIFY2(!f.manager.getItem(chartIds.at(name)), qPrintable(name));
    QCOMPARE(f.scene.getUndoManager().getUndoCount(), 1);

    // The chart keeps its angles: a deleted slice leaves a gap, and undo fills it exactly.
    for (int round = 0; round < 2; ++round) {
        f.scene.slotUndo();
        QCOMPARE(chartState(f.manager), before);
        f.scene.slotRedo();
        QCOMPARE(chartState(f.manager), after);
    }
    // Nothing selected: Delete does nothing.
    f.key(Qt::Key_Delete);
    QCOMPARE(f.scene.getUndoManager().getUndoCount(), 1);
}

void TestEditorScene::creationInEachMode_data()
{
    QTest::addColumn<Mode>("mode");
    QTest::addColumn<QString>("on");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("items");
    QTest::addColumn<QString>("value");

    QTest::newRow("arc text") << Mode::ArcText << "" << 1 << 1 << "radius=100;text=new text";
    QTest::newRow("arc text on a slice: its label")
        << Mode::ArcText << "Bacteria" << 1 << 1 << "text=Bacteria";
    QTest::newRow("arc bracket") << Mode::ArcBracket << "" << 5 << 1 << "angle=45;tip-length=10";
    QTest::newRow("arc bracket on a slice spans it")
        << Mode::ArcBracket << "Bacteria" << 5 << 1 << "radius=100;angles=";
    QTest::newRow("straight text") << Mode::RectText << "" << 6 << 1 << "text=new text";
    QTest::newRow("straight text on a bracket") << Mode::RectText << "free bracket" << 6 << 1 << "position.x=0";
    QTest::newRow("elbow text") << Mode::ElbowText << "" << 6 << 3 << "text=new text";
    QTest::newRow("elbow text on a slice") << Mode::ElbowText << "Archaea" << 6 << 3 << "position.x=6";
    // Outwards, over the slice's outer rings rather than under its inner ones.
    QTest::newRow("elbow text on a slice left of the centre")
        << Mode::ElbowText << "Bacteria" << 6 << 3 << "position.x=-6;anchor.horizontal=2";
    QTest::newRow("line") << Mode::Line << "" << 7 << 1 << "end.x=40;end.y=-20";
    QTest::newRow("line on a line's end") << Mode::Line << "line" << 7 << 1 << "position=";
    QTest::newRow("subspace") << Mode::SubSpace << "" << 8 << 1 << "rotation=0";
    QTest::newRow("subspace on a straight text") << Mode::SubSpace << "figure" << 8 << 1 << "position.y=0";
}

void TestEditorScene::creationInEachMode()
{
    QFETCH(Mode, mode);
    QFETCH(QString, on);
    QFETCH(int, type);
    QFETCH(int, items);
    QFETCH(QString, value);

    Fixture f;
    const auto before = chartState(f.manager);
    const QPointF at = on.isEmpty()                                                       ? QPointF(300, 300)
                       : on == QLatin1String("Bacteria") || on == QLatin1String("Archaea") ? f.inside(on)
                                                                                           : f.on(on);
    if (!on.isEmpty())
        QCOMPARE(f.scene.pickItem(at).second, f.item(on));
    QSignalSpy created(&f.scene, &Scene::signalItemCreated);
    QSignalSpy modes(&f.scene, &Scene::signalCursorModeChanged);
    f.scene.setCursorMode(mode);
    f.click(at);

    QCOMPARE(f.scene.getCursorMode(), Mode::Select);
    QCOMPARE(modes.count(), 2);
    QCOMPARE(created.count(), 1);
    const long id = created.first().first().toLongLong();
    const auto item = f.manager.getItem(id);
    QVERIFY(item);
    QCOMPARE(item->getType(), type);
    QCOMPARE(f.scene.getHandledItem(), f.manager.getGraphicsItem(id));
    QCOMPARE(int(chartState(f.manager).size()), int(before.size()) + items);
    QCOMPARE(f.scene.getUndoManager().getUndoCount(), 1);

    // The first item made hangs on what was under the press, or stands at the press point.
    QGraphicsItem* first = f.manager.getGraphicsItem(id);
    for (int i = 1; i < items; ++i)
        first = first->parentItem();
    QCOMPARE(first->parentItem(), on.isEmpty() ? nullptr : f.item(on));
    // An arc's middle comes where it was asked for, its centre below.
    const bool arc = mode == Mode::ArcText || mode == Mode::ArcBracket;
    if (on.isEmpty())
        QCOMPARE(first->scenePos(), arc ? at + QPointF(0, Scene::arcRadius) : at);
    if (on.isEmpty() && arc)
        QVERIFY(first->sceneBoundingRect().adjusted(-2, -2, 2, 2).contains(at));

    for (const QString& expected : value.split(QLatin1Char(';'))) {
        const QString name = expected.section(QLatin1Char('='), 0, 0);
        const QString text = expected.section(QLatin1Char('='), 1);
        if (text.isEmpty()) {
            QVERIFY2(!item->findProperty(name), qPrintable(name));
            continue;
        }
        const QVariant property = item->getPropertyValue(name);
        QCOMPARE(property.toString(), text);
    }
    if (mode == Mode::ArcBracket && !on.isEmpty()) {
        auto bracket = dynamic_cast<nu::graphics::AngularItem*>(first);
        QCOMPARE(bracket->getAngle(), dynamic_cast<nu::graphics::AngularItem*>(f.item(on))->getAngle());
    }

    f.scene.slotUndo();
    QCOMPARE(chartState(f.manager), before);
    QVERIFY(!f.scene.getHandledItem());
}

QTEST_MAIN(TestEditorScene)
#include "tst_editorscene.moc"
