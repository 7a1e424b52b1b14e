#pragma once

#include "nu/edit/property.h"

#include <QVariant>

#include <memory>

class QObject;
class QWidget;

namespace nu {
namespace edit {

// A property with one value of its own (not a group): it can make an editor widget for the
// property sheet and give its value as a variant for undo snapshots.
class PropertyBasic : public Property
{
public:
    using Property::Property;

    // A new editor showing the current value; the caller takes it (usually into a tree row).
    virtual std::unique_ptr<QWidget> createWidget() = 0;
    // The same, with the editor's change signal connected to receiver's slot (a SLOT() string).
    virtual std::unique_ptr<QWidget> createWidget(QObject* receiver, const char* slot);
    // Shows the current value in an editor made by createWidget, without firing its change
    // signal; an editor of another kind is left alone.
    virtual void updateWidget(QWidget* widget) = 0;
    // Takes the editor's value; an editor of another kind changes nothing.
    virtual void updateFromWidget(QWidget* widget) = 0;
    virtual QVariant getVariant() const = 0;
    virtual void setVariant(const QVariant& value) = 0;
    // False keeps the property out of the property sheet (it still saves and undoes).
    virtual bool isWidgetAccessible() const;
    // False keeps the property out of the chart file and of undo snapshots.
    virtual bool isSaveable() const;

protected:
    // The SIGNAL() of the editor that createWidget(receiver, slot) connects.
    virtual const char* getWidgetSignal() const = 0;

    // Whether the user has typed in or stepped the editor since it last showed the value. A
    // value outside the editor's range is shown as the bound: only an edit tells that the bound
    // is wanted.
    static void setUserEdited(QWidget* editor, bool edited);
    static bool isUserEdited(const QWidget* editor);
};

} // namespace edit
} // namespace nu
