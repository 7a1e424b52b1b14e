#pragma once

#include <QMessageBox>
#include <QString>

class QDialog;
class QWidget;

namespace nu {

// Every question and message a window puts to the user goes through one of these, so that tests
// can answer in place of the user and read what was shown.
class Prompter
{
public:
    virtual ~Prompter();

    virtual QMessageBox::StandardButton message(QWidget* parent, QMessageBox::Icon icon, const QString& title,
                                                const QString& text, QMessageBox::StandardButtons buttons);
    // Empty when the user cancelled.
    virtual QString getOpenFileName(QWidget* parent, const QString& folder, const QString& filter = QString());
    virtual QString getSaveFileName(QWidget* parent, const QString& folder, const QString& filter = QString());
    // Runs a modal dialog (a wizard, a preferences or progress dialog) and returns its result.
    virtual int exec(QDialog& dialog);
};

} // namespace nu
