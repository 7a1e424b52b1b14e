#include "nu/edit/graphicsitemmanager.h"
#include "nu/edit/idgenerator.h"
#include "nu/edit/loadjson.h"
#include "nu/edit/scene.h"
#include "nu/graphics/angularitem.h"
#include "tests/support/editcharts.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <set>

using namespace nu::edit;

using Manager = Sorvik::Test::EditorItemManager;

namespace {

// Records whose handles the manager asked to drop.
class RecordingScene : public Scene
{
public:
    using Scene::Scene;
    void deleteItemHandler(QGraphicsItem* item) override { dropped.insert(item); }
    std::set<QGraphicsItem*> dropped;
};

int depth(QGraphicsItem* item)
{
    int levels = 0;
    for (; item->parentItem(); item = item->parentItem())
        ++levels;
    return levels;
}

QJsonArray parseArray(const QString& json)
{
    return QJsonDocument::fromJson(json.toUtf8()).array();
}

} // namespace

class TestGraphicsItemManager : public QObject
{
    Q_OBJECT
private slots:
    void idGenerator_data();
    void idGenerator();
    void recreatedIdsDoNotCollide();
    void deleteItemTakesItsChildren();
    void loadSkipsBadElements_data();
    void loadSkipsBadElements();
    void longParentChainsAreCut();
    void sceneGoneFirst();
    void batchLaysChartsOutOnceAtTheEnd();
};

void TestGraphicsItemManager::idGenerator_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("ids");

    // "n" a new id, "rK" registers K, "0" resets.
    QTest::newRow("registering a smaller id lowers the counter") << "n n n n r2 n" << "1 2 3 4 2 3";
    QTest::newRow("registering a larger id never raises it") << "n r10 n" << "1 10 2";
    QTest::newRow("registering the counter itself") << "n n r2 n" << "1 2 2 3";
    QTest::newRow("reset") << "n n 0 n" << "1 2 1";
    QTest::newRow("register before any id") << "r5 n" << "5 1";
}

void TestGraphicsItemManager::idGenerator()
{
    QFETCH(QString, steps);
    QFETCH(QString, ids);

    IdGenerator generator;
    QStringList given;
    for (const QString& step : steps.split(QLatin1Char(' '))) {
        if (step == QLatin1String("n"))
            given << QString::number(generator.newId());
        else if (step == QLatin1String("0"))
            generator.reset();
        else
            given << QString::number(generator.registerId(step.mid(1).toLong()));
    }
    QCOMPARE(given.join(QLatin1Char(' ')), ids);
}

void TestGraphicsItemManager::recreatedIdsDoNotCollide()
{
    Manager manager;
    Scene scene(manager);
    for (int i = 0; i < 4; ++i)
        manager.createItem(7);
    manager.deleteItem(2);
    // Undo brings item 2 back under its id; the counter drops to 2, yet 3 and 4 are in use.
    QVERIFY(manager.createItem(2L, 7));
    QCOMPARE(manager.createItem(7)->getId(), 5L);
    std::set<long> ids;
    for (QGraphicsItem* item : scene.items())
        ids.insert(manager.getId(item));
    QCOMPARE(ids, (std::set<long>{1, 2, 3, 4, 5}));

    // An id in use, or no id at all, is refused.
    QVERIFY(!manager.createItem(1L, 6));
    QVERIFY(!manager.createItem(0L, 6));
    QCOMPARE(manager.getItem(1L)->getType(), 7);
}

void TestGraphicsItemManager::deleteItemTakesItsChildren()
{
    Manager manager;
    RecordingScene scene(manager);
    const auto line = manager.createItem(7);
    const auto elbow = manager.createItem(7);
    const auto text = manager.createItem(6);
    manager.createItem(8);
    elbow->setParent(line.get());
    text->setParent(manager.getItem(elbow->getId()).get());
    QGraphicsItem* graphics[3] = {manager.getGraphicsItem(line), manager.getGraphicsItem(elbow),
                                  manager.getGraphicsItem(text)};

    manager.deleteItem(line->getId());
    QVERIFY(!manager.getItem(text->getId()));
    QCOMPARE(scene.dropped, (std::set<QGraphicsItem*>(graphics, graphics + 3)));
    QCOMPARE(scene.items().size(), 1);
    QCOMPARE(manager.toJson().size(), 1);

    // Deleting an unknown or already deleted id does nothing.
    manager.deleteItem(2);
    manager.deleteItem(99);
    QCOMPARE(scene.items().size(), 1);
}

void TestGraphicsItemManager::loadSkipsBadElements_data()
{
    QTest::addColumn<QString>("json");
    QTest::addColumn<int>("items");
    QTest::addColumn<int>("children");
    QTest::addColumn<int>("skipped");

    const QString line = QStringLiteral(R"({"id": %1, "parent-id": %2, "type": 7, "data": {}})");
    QTest::newRow("empty") << "[]" << 0 << 0 << 0;
    QTest::newRow("parent after child") << "[" + line.arg(1).arg(2) + "," + line.arg(2).arg(0) + "]" << 2 << 1 << 0;
    QTest::newRow("not objects") << "[5, \"x\", null, [], " + line.arg(1).arg(0) + "]" << 1 << 0 << 4;
    QTest::newRow("type as text") << R"([{"id": 1, "parent-id": 0, "type": "7", "data": {}}])" << 0 << 0 << 1;
    QTest::newRow("data not an object") << R"([{"id": 1, "parent-id": 0, "type": 7, "data": [1]}])" << 0 << 0 << 1;
    QTest::newRow("unregistered types")
        << R"([{"type": 3, "data": {}}, {"type": 99, "data": {}}, {"type": 7.5, "data": {}}])" << 0 << 0 << 3;
    QTest::newRow("child of a skipped element") << R"([{"id": 1, "type": 3, "data": {}}, )" + line.arg(2).arg(1) + "]"
                                                << 1 << 0 << 1;
    QTest::newRow("two in a cycle, one hanging on it")
        << "[" + line.arg(1).arg(2) + "," + line.arg(2).arg(1) + "," + line.arg(3).arg(1) + "]" << 1 << 0 << 2;
    QTest::newRow("missing parent") << "[" + line.arg(1).arg(42) + "]" << 1 << 0 << 0;
    QTest::newRow("huge ids") << "[" + line.arg("1e300").arg("-1e300") + "," + line.arg("4294967297").arg("1e300") + "]"
                              << 2 << 0 << 0;
    QTest::newRow("duplicate ids: the last one is the parent")
        << "[" + line.arg(1).arg(0) + "," + line.arg(1).arg(0) + "," + line.arg(3).arg(1) + "]" << 3 << 1 << 0;
}

void TestGraphicsItemManager::loadSkipsBadElements()
{
    QFETCH(QString, json);
    QFETCH(int, items);
    QFETCH(int, children);
    QFETCH(int, skipped);

    Manager manager;
    Scene scene(manager);
    const QJsonArray array = parseArray(json);
    QVERIFY(!array.isEmpty() || json == QLatin1String("[]"));
    QCOMPARE(manager.fromJson(array), skipped);
    QCOMPARE(scene.items().size(), items);
    int withParent = 0;
    for (QGraphicsItem* item : scene.items())
        withParent += item->parentItem() != nullptr;
    QCOMPARE(withParent, children);
    // Whatever was read saves again.
    QCOMPARE(manager.toJson().size(), items);
}

void TestGraphicsItemManager::longParentChainsAreCut()
{
    const int length = 2500;
    QJsonArray chain;
    for (int i = 1; i <= length; ++i) {
        chain.append(
            QJsonObject{{"id", i}, {"parent-id", i - 1}, {"type", 8}, {"data", QJsonObject{{"position.x", 1.0}}}});
    }
    Manager manager;
    Scene scene(manager);
    QCOMPARE(manager.fromJson(chain), 0);
    QCOMPARE(scene.items().size(), length);
    int deepest = 0;
    int topLevel = 0;
    for (QGraphicsItem* item : scene.items()) {
        deepest = std::max(deepest, depth(item));
        topLevel += item->parentItem() == nullptr;
    }
    QCOMPARE(deepest, MaxItemNesting);
    QCOMPARE(topLevel, 3);
}

void TestGraphicsItemManager::sceneGoneFirst()
{
    Manager manager;
    {
        Scene scene(manager);
        manager.createItem(7);
    }
    QVERIFY(!manager.getItem(1L));
    QVERIFY(!manager.createItem(7));
    QVERIFY(manager.toJson().isEmpty());
    manager.deleteItem(1);
    manager.reset();
}

void TestGraphicsItemManager::batchLaysChartsOutOnceAtTheEnd()
{
    Manager manager;
    Scene scene(manager);
    const auto root = manager.createItem(2);
    const auto first = manager.createItem(2);
    first->setParent(root.get());
    manager.getItem(first->getId())->setPropertyValue(QStringLiteral("count"), 1);
    auto angle = [&](long id) {
        return dynamic_cast<nu::graphics::AngularItem*>(manager.getGraphicsItem(id))->getAngle();
    };
    QCOMPARE(angle(first->getId()), 360.0);

    {
        const ItemManager::Batch outer(manager);
        const auto second = manager.createItem(2);
        second->setParent(manager.getItem(root->getId()).get());
        manager.getItem(second->getId())->setPropertyValue(QStringLiteral("count"), 3);
        {
            const ItemManager::Batch inner(manager);
            manager.getItem(first->getId())->setPropertyValue(QStringLiteral("count"), 1);
        }
        // Still the layout from before the batch.
        QCOMPARE(angle(first->getId()), 360.0);
        QCOMPARE(angle(second->getId()), 0.0);
    }
    QCOMPARE(angle(first->getId()), 90.0);
    QCOMPARE(angle(3), 270.0);

    // After the batch, changes lay the chart out at once again.
    manager.getItem(3)->setPropertyValue(QStringLiteral("count"), 1);
    QCOMPARE(angle(first->getId()), 180.0);
}

QTEST_MAIN(TestGraphicsItemManager)
#include "tst_graphicsitemmanager.moc"
