#include "nu/prompter.h"

#include <QDialog>
#include <QFileDialog>

namespace nu {

Prompter::~Prompter() = default;

QMessageBox::StandardButton Prompter::message(QWidget* parent, QMessageBox::Icon icon, const QString& title,
                                              const QString& text, QMessageBox::StandardButtons buttons)
{
    QMessageBox box(icon, title, text, buttons, parent);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

QString Prompter::getOpenFileName(QWidget* parent, const QString& folder, const QString& filter)
{
    return QFileDialog::getOpenFileName(parent, QString(), folder, filter);
}

QString Prompter::getSaveFileName(QWidget* parent, const QString& folder, const QString& filter)
{
    return QFileDialog::getSaveFileName(parent, QString(), folder, filter);
}

int Prompter::exec(QDialog& dialog)
{
    return dialog.exec();
}

} // namespace nu
