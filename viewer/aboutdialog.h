#pragma once

#include <QDialog>

namespace Sorvik {
namespace App {

// The program's About box: title, icon, logo, version and credits.
class AboutDialog : public QDialog
{
    Q_OBJECT
public:
    explicit AboutDialog(QWidget* parent = nullptr);
};

} // namespace App
} // namespace Sorvik
