#include "tests/support/scriptedprompter.h"

#include <QDialog>

namespace Sorvik {
namespace Test {

QMessageBox::StandardButton ScriptedPrompter::message(QWidget*, QMessageBox::Icon icon, const QString& title,
                                                      const QString& text, QMessageBox::StandardButtons)
{
    shown.append({icon, title, text});
    return answers.isEmpty() ? QMessageBox::No : answers.takeFirst();
}

QString ScriptedPrompter::getOpenFileName(QWidget*, const QString&, const QString& filter)
{
    filters << filter;
    return openNames.isEmpty() ? QString() : openNames.takeFirst();
}

QString ScriptedPrompter::getSaveFileName(QWidget*, const QString&, const QString& filter)
{
    filters << filter;
    ++saveDialogs;
    return saveNames.isEmpty() ? QString() : saveNames.takeFirst();
}

int ScriptedPrompter::exec(QDialog& dialog)
{
    dialogs << QString::fromLatin1(dialog.metaObject()->className());
    return onDialog ? onDialog(dialog) : QDialog::Rejected;
}

} // namespace Test
} // namespace Sorvik
