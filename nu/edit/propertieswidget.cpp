#include "nu/edit/propertieswidget.h"

#include "nu/edit/itemmanager.h"
#include "nu/edit/propertybasic.h"
#include "nu/edit/propertyset.h"
#include "nu/edit/undomanager.h"

#include "ui_propertieswidget.h"

#include <QTreeWidgetItemIterator>

namespace nu {
namespace edit {

namespace {
// Column 2, never shown, holds the full name that matches a row to its property.
constexpr int labelColumn = 0;
constexpr int editorColumn = 1;
constexpr int nameColumn = 2;
} // namespace

PropertiesWidget::PropertiesWidget(UndoManager& manager, QWidget* parent)
    : QWidget(parent)
    , undoManager(manager)
    , ui(std::make_unique<Ui::PropertiesWidget>())
{
    ui->setupUi(this);
    ui->treeWidget->setColumnHidden(nameColumn, true);
}

PropertiesWidget::~PropertiesWidget() = default;

template <typename Visit>
void PropertiesWidget::forEachLeafRow(Visit visit) const
{
    for (QTreeWidgetItemIterator it(ui->treeWidget); *it; ++it) {
        QTreeWidgetItem* row = *it;
        if (row->childCount() == 0)
            visit(row);
    }
}

QTreeWidgetItem* PropertiesWidget::getRow(const QString& name) const
{
    for (QTreeWidgetItemIterator it(ui->treeWidget); *it; ++it) {
        if ((*it)->text(nameColumn) == name)
            return *it;
    }
    return nullptr;
}

QWidget* PropertiesWidget::getEditor(const QString& name) const
{
    QTreeWidgetItem* row = getRow(name);
    return row ? ui->treeWidget->itemWidget(row, editorColumn) : nullptr;
}

void PropertiesWidget::slotSetSelection(PropertyItem::Id id)
{
    std::shared_ptr<PropertyItem> item = id != 0 ? undoManager.getItemManager().getItem(id) : nullptr;
    if (!item) {
        deselect();
        return;
    }
    selectedId = id;
    if (selected && *selected == *item) {
        // The same item: keep the editors, show its current values. A fresh wrapper is kept
        // because the former one may stand for an item that was deleted and re-created.
        selected = std::move(item);
        updateData();
        return;
    }
    select(std::move(item));
}

void PropertiesWidget::slotUpdate()
{
    slotSetSelection(selectedId);
}

void PropertiesWidget::deselect()
{
    ui->treeWidget->clear();
    selected.reset();
    selectedId = 0;
    setEnabled(false);
}

void PropertiesWidget::select(std::shared_ptr<PropertyItem> item)
{
    selected = std::move(item);
    ui->treeWidget->clear();
    setEnabled(true);

    QTreeWidgetItem* parentRow = nullptr;
    auto addRow = [&](const Property& property) {
        auto* row = parentRow ? new QTreeWidgetItem(parentRow) : new QTreeWidgetItem(ui->treeWidget);
        row->setText(labelColumn, property.getLabel());
        row->setText(nameColumn, property.getName());
        return row;
    };
    for (PropertySet::Iterator it = selected->getProperties(); !it.atEnd(); ++it) {
        if (it.atSetEnd()) {
            if (parentRow)
                parentRow = parentRow->parent();
            continue;
        }
        if (it.atSetStart()) {
            parentRow = addRow(*it);
            continue;
        }
        auto basic = std::dynamic_pointer_cast<PropertyBasic>(it.get());
        if (!basic || !basic->isWidgetAccessible())
            continue;
        QTreeWidgetItem* row = addRow(*basic);
        std::unique_ptr<QWidget> editor = basic->createWidget(this, SLOT(applyProperties()));
        ui->treeWidget->setItemWidget(row, editorColumn, editor.release()); // the tree owns it
    }
    ui->treeWidget->expandAll();
    ui->treeWidget->resizeColumnToContents(labelColumn);
}

void PropertiesWidget::updateData()
{
    forEachLeafRow([this](QTreeWidgetItem* row) {
        QWidget* editor = ui->treeWidget->itemWidget(row, editorColumn);
        auto property = selected->findBasicProperty(row->text(nameColumn));
        if (editor && property)
            property->updateWidget(editor);
    });
}

void PropertiesWidget::applyProperties()
{
    // An editor that loses the focus while the sheet is rebuilt must not apply into it.
    if (!selected || applying)
        return;
    applying = true;
    undoManager.changeBegin();
    undoManager.changeItem(*selected);
    forEachLeafRow([this](QTreeWidgetItem* row) {
        QWidget* editor = ui->treeWidget->itemWidget(row, editorColumn);
        auto property = selected->findBasicProperty(row->text(nameColumn));
        if (editor && property)
            property->updateFromWidget(editor);
    });
    undoManager.changeEnd();
    applying = false;
    emit signalChangeApplied();
}

} // namespace edit
} // namespace nu
