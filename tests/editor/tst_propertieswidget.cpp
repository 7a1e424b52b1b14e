#include "editor/scene.h"
#include "nu/edit/propertieswidget.h"
#include "nu/edit/undomanager.h"
#include "nu/graphics/arctextitem.h"
#include "nu/graphics/piecharttextitem.h"
#include "resources/resources.h"

#include <QDoubleSpinBox>
#include <QJsonObject>
#include <QLineEdit>
#include <QTreeWidgetItem>
#include <QtTest>

using nu::edit::PropertiesWidget;
using nu::edit::UndoManager;

class TestPropertiesWidget : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Sorvik::initResources(); }
    void init();
    void cleanup();

    void editingAValueChangesTheItemInOneUndoStep();
    void applyThatChangesNothingRecordsNothing();
    void hiddenPropertyHasNoRowButStillSaves();
    void unknownIdClearsAndDisablesTheSheet_data();
    void unknownIdClearsAndDisablesTheSheet();
    void reselectingKeepsEditorsAndShowsNewValues();
    void compoundRowsHoldTheirMembers();

private:
    std::unique_ptr<Sorvik::Edit::Scene::ItemManager> manager;
    std::unique_ptr<Sorvik::Edit::Scene> scene;
    std::unique_ptr<UndoManager> undo;
    std::unique_ptr<PropertiesWidget> sheet;
    long textId = 0;
};

void TestPropertiesWidget::init()
{
    manager = std::make_unique<Sorvik::Edit::Scene::ItemManager>();
    scene = std::make_unique<Sorvik::Edit::Scene>(*manager);
    undo = std::make_unique<UndoManager>(*manager);
    sheet = std::make_unique<PropertiesWidget>(*undo);
    auto text = manager->createItem(1);
    QVERIFY(text);
    text->setPropertyValue(QStringLiteral("text"), QStringLiteral("Firmicutes"));
    text->setPropertyValue(QStringLiteral("radius"), 80.0);
    textId = text->getId();
}

void TestPropertiesWidget::cleanup()
{
    sheet.reset();
    undo.reset();
    scene.reset();
    manager.reset();
}

void TestPropertiesWidget::editingAValueChangesTheItemInOneUndoStep()
{
    sheet->slotSetSelection(textId);
    QVERIFY(sheet->isEnabled());
    auto* radius = qobject_cast<QDoubleSpinBox*>(sheet->getEditor(QStringLiteral("radius")));
    QVERIFY(radius);
    QCOMPARE(radius->value(), 80.0);
    QSignalSpy applied(sheet.get(), &PropertiesWidget::signalChangeApplied);
    radius->setValue(55.5);
    emit radius->editingFinished();
    QCOMPARE(applied.count(), 1);
    QCOMPARE(manager->getItem(textId)->getPropertyValue(QStringLiteral("radius")).toDouble(), 55.5);
    QCOMPARE(undo->getUndoCount(), 1);
    undo->undo();
    QCOMPARE(manager->getItem(textId)->getPropertyValue(QStringLiteral("radius")).toDouble(), 80.0);
}

void TestPropertiesWidget::applyThatChangesNothingRecordsNothing()
{
    sheet->slotSetSelection(textId);
    auto* text = qobject_cast<QLineEdit*>(sheet->getEditor(QStringLiteral("text")));
    QVERIFY(text);
    QCOMPARE(text->text(), QStringLiteral("Firmicutes"));
    emit text->editingFinished();
    QCOMPARE(undo->getUndoCount(), 0);
}

void TestPropertiesWidget::hiddenPropertyHasNoRowButStillSaves()
{
    // a chart's centre slice has no siblings to be ordered among: its order is kept, not shown
    auto slice = manager->createItem(2);
    QVERIFY(slice);
    sheet->slotSetSelection(slice->getId());
    QVERIFY(!sheet->getRow(QStringLiteral("order")));
    QVERIFY(sheet->getRow(QStringLiteral("count")));
    QVERIFY(slice->getJsonValue().toObject().value(QStringLiteral("data")).toObject().contains(QStringLiteral("order")));
}

void TestPropertiesWidget::unknownIdClearsAndDisablesTheSheet_data()
{
    QTest::addColumn<long>("id");
    QTest::newRow("never made") << 4711L;
    QTest::newRow("nothing selected") << 0L;
}

void TestPropertiesWidget::unknownIdClearsAndDisablesTheSheet()
{
    QFETCH(long, id);
    sheet->slotSetSelection(textId);
    QVERIFY(sheet->getRow(QStringLiteral("text")));
    sheet->slotSetSelection(id);
    QVERIFY(!sheet->isEnabled());
    QVERIFY(!sheet->getRow(QStringLiteral("text")));
    // applying with nothing shown records nothing
    sheet->applyProperties();
    QCOMPARE(undo->getUndoCount(), 0);
}

void TestPropertiesWidget::reselectingKeepsEditorsAndShowsNewValues()
{
    sheet->slotSetSelection(textId);
    QWidget* before = sheet->getEditor(QStringLiteral("text"));
    manager->getItem(textId)->setPropertyValue(QStringLiteral("text"), QStringLiteral("Bacteroidetes"));
    sheet->slotUpdate();
    QCOMPARE(sheet->getEditor(QStringLiteral("text")), before);
    QCOMPARE(qobject_cast<QLineEdit*>(before)->text(), QStringLiteral("Bacteroidetes"));
    // refreshing must not count as an edit
    QCOMPARE(undo->getUndoCount(), 0);
}

void TestPropertiesWidget::compoundRowsHoldTheirMembers()
{
    sheet->slotSetSelection(textId);
    QTreeWidgetItem* border = sheet->getRow(QStringLiteral("border"));
    QVERIFY(border);
    QVERIFY(!sheet->getEditor(QStringLiteral("border")));
    QStringList members;
    for (int i = 0; i < border->childCount(); ++i)
        members << border->child(i)->text(2);
    QCOMPARE(members, (QStringList{"border.color", "border.width", "border.style"}));
    QVERIFY(sheet->getEditor(QStringLiteral("border.width")));
    QVERIFY(sheet->getRow(QStringLiteral("position"))->isExpanded());
}

QTEST_MAIN(TestPropertiesWidget)
#include "tst_propertieswidget.moc"
