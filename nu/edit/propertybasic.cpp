#include "nu/edit/propertybasic.h"

#include <QWidget>

namespace nu {
namespace edit {

std::unique_ptr<QWidget> PropertyBasic::createWidget(QObject* receiver, const char* slot)
{
    std::unique_ptr<QWidget> widget = createWidget();
    if (widget && receiver && slot)
        QObject::connect(widget.get(), getWidgetSignal(), receiver, slot);
    return widget;
}

namespace {
const char* const userEdited = "userEdited";
} // namespace

void PropertyBasic::setUserEdited(QWidget* editor, bool edited)
{
    editor->setProperty(userEdited, edited);
}

bool PropertyBasic::isUserEdited(const QWidget* editor)
{
    return editor->property(userEdited).toBool();
}

bool PropertyBasic::isWidgetAccessible() const
{
    return true;
}

bool PropertyBasic::isSaveable() const
{
    return true;
}

} // namespace edit
} // namespace nu
