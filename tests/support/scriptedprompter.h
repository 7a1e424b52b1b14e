#pragma once

#include "nu/prompter.h"

#include <QList>
#include <QStringList>

#include <functional>

namespace Sorvik {
namespace Test {

// Answers in place of the user and keeps what was shown: message boxes answer from answers (No
// when it runs out), file dialogs from openNames and saveNames (cancelled when they run out),
// modal dialogs through onDialog (rejected when unset).
class ScriptedPrompter : public nu::Prompter
{
public:
    struct Shown
    {
        QMessageBox::Icon icon;
        QString title;
        QString text;
    };

    QMessageBox::StandardButton message(QWidget* parent, QMessageBox::Icon icon, const QString& title,
                                        const QString& text, QMessageBox::StandardButtons buttons) override;
    QString getOpenFileName(QWidget* parent, const QString& folder, const QString& filter) override;
    QString getSaveFileName(QWidget* parent, const QString& folder, const QString& filter) override;
    int exec(QDialog& dialog) override;

    QString lastTitle() const { return shown.isEmpty() ? QString() : shown.last().title; }

    QList<Shown> shown;
    QList<QMessageBox::StandardButton> answers;
    QStringList openNames;
    QStringList saveNames;
    int saveDialogs = 0;
    // The filters the file dialogs were given, in turn.
    QStringList filters;
    QStringList dialogs;
    std::function<int(QDialog&)> onDialog;
};

} // namespace Test
} // namespace Sorvik
