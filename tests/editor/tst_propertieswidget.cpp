#include "editor/scene.h"
#include "nu/edit/propertieswidget.h"
#include "nu/edit/undomanager.h"
#include "resources/resources.h"

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

void TestPropertiesWidget::unknownIdClearsAndDisablesTheSheet()
{
    sheet->slotSetSelection(textId);
    QVERIFY(sheet->getRow(QStringLiteral("text")));
    sheet->slotSetSelection(4711);
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
