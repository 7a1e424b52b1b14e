#pragma once

#include "nu/edit/propertyitem.h"

#include <QWidget>

#include <memory>

class QTreeWidgetItem;

namespace nu {
namespace edit {

class UndoManager;

namespace Ui {
class PropertiesWidget;
}

// The property sheet of the editor: the selected item's properties as a tree of rows, one editor
// per visible value. Every commit of an editor applies the whole sheet as one undo step.
class PropertiesWidget : public QWidget
{
    Q_OBJECT
public:
    PropertiesWidget(UndoManager& undoManager, QWidget* parent = nullptr);
    ~PropertiesWidget() override;

    PropertyItem::Id getSelectedId() const { return selectedId; }
    // The editor of the row of that property, or null when it has none.
    QWidget* getEditor(const QString& name) const;
    QTreeWidgetItem* getRow(const QString& name) const;

signals:
    void signalChangeApplied();

public slots:
    void slotSetSelection(nu::edit::PropertyItem::Id id);
    void slotUpdate();
    void applyProperties();

private:
    void deselect();
    void select(std::shared_ptr<PropertyItem> item);
    void updateData();
    template <typename Visit>
    void forEachLeafRow(Visit visit) const;

    UndoManager& undoManager;
    PropertyItem::Id selectedId = 0;
    std::shared_ptr<PropertyItem> selected;
    std::unique_ptr<Ui::PropertiesWidget> ui;
    bool applying = false;
};

} // namespace edit
} // namespace nu
