#include "editor/scene.h"
#include "nu/edit/propertieswidget.h"
#include "nu/edit/undomanager.h"
#include "resources/resources.h"

#include "nu/edit/coloreditwidget.h"

#include <QColorDialog>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QTimer>
#include <QToolButton>
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
    void outOfRangeValueCanBeSetToTheBound_data();
    void outOfRangeValueCanBeSetToTheBound();
    void colourDialogKeepsAndEditsAlpha_data();
    void colourDialogKeepsAndEditsAlpha();

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

void TestPropertiesWidget::outOfRangeValueCanBeSetToTheBound_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("loaded");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QVariant>("bound");
    QTest::addColumn<bool>("onSlice");

    QTest::newRow("tip length below 0") << 5 << "tip-length" << QVariant(-10.0) << "0" << QVariant(0.0) << true;
    QTest::newRow("bracket span beyond 180") << 5 << "angle" << QVariant(270.0) << "180" << QVariant(180.0) << false;
    QTest::newRow("bracket turned below -180")
        << 5 << "rotation" << QVariant(-200.0) << "-180" << QVariant(-180.0) << false;
    // A slice's order is a row of the sheet only on an outer slice.
    QTest::newRow("outer slice order 0") << 2 << "order" << QVariant(0) << "1" << QVariant(1) << true;
}

// The sheet shows a value outside its editor's range as the bound; typing that bound sets it,
// while edits of other rows leave the value alone.
void TestPropertiesWidget::outOfRangeValueCanBeSetToTheBound()
{
    QFETCH(int, type);
    QFETCH(QString, property);
    QFETCH(QVariant, loaded);
    QFETCH(QString, typed);
    QFETCH(QVariant, bound);
    QFETCH(bool, onSlice);

    auto item = manager->createItem(type);
    QVERIFY(item);
    if (onSlice)
        item->setParent(manager->createItem(2).get());
    const long id = item->getId();
    manager->getItem(id)->setPropertyValue(property, loaded);
    const auto value = [&] { return manager->getItem(id)->getPropertyValue(property); };
    QCOMPARE(value(), loaded);
    sheet->show();
    sheet->slotSetSelection(id);
    auto* box = qobject_cast<QAbstractSpinBox*>(sheet->getEditor(property));
    QVERIFY(box);
    QCOMPARE(box->text().toDouble(), bound.toDouble());

    // Another row's edit applies the whole sheet: the value shown as the bound is kept.
    sheet->applyProperties();
    QCOMPARE(value(), loaded);
    QCOMPARE(undo->getUndoCount(), 0);

    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, typed);
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(value().toDouble(), bound.toDouble());
    QCOMPARE(undo->getUndoCount(), 1);
    undo->undo();
    QCOMPARE(value(), loaded);
}

void TestPropertiesWidget::colourDialogKeepsAndEditsAlpha_data()
{
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("expected");

    QTest::newRow("accepted as it is") << "" << "#80336699";
    QTest::newRow("alpha changed") << "#40336699" << "#40336699";
    QTest::newRow("opaque chosen") << "#ff102030" << "#ff102030";
}

void TestPropertiesWidget::colourDialogKeepsAndEditsAlpha()
{
    QFETCH(QString, chosen);
    QFETCH(QString, expected);

    manager->getItem(textId)->setPropertyValue(QStringLiteral("fill.color"), QStringLiteral("#80336699"));
    sheet->show();
    sheet->slotSetSelection(textId);
    auto* editor = qobject_cast<nu::edit::ColorEditWidget*>(sheet->getEditor(QStringLiteral("fill.color")));
    QVERIFY(editor);
    bool alphaShown = false;
    QTimer::singleShot(0, this, [&] {
        auto* dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        alphaShown = dialog->testOption(QColorDialog::ShowAlphaChannel);
        if (!chosen.isEmpty())
            dialog->setCurrentColor(QColor(chosen));
        dialog->accept();
    });
    editor->findChild<QToolButton*>(QStringLiteral("editButton"))->click();
    QVERIFY(alphaShown);
    QCOMPARE(manager->getItem(textId)->getPropertyValue(QStringLiteral("fill.color")).toString(), expected);
}

QTEST_MAIN(TestPropertiesWidget)
#include "tst_propertieswidget.moc"
