#include "viewer/apppreferencesdialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QToolButton>
#include <QVBoxLayout>

namespace Sorvik {
namespace Viewer {

AppPreferencesDialog::AppPreferencesDialog(const QString& path, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Preferences"));
    pathEdit = new QLineEdit(path, this);
    pathEdit->setObjectName(QStringLiteral("pathEdit"));
    pathEdit->setPlaceholderText(tr("the folder Sorvik was started in"));
    auto* choose = new QToolButton(this);
    choose->setText(tr("..."));
    choose->setToolTip(tr("Choose the data folder"));
    connect(choose, &QToolButton::clicked, this, &AppPreferencesDialog::slotChooseFolder);

    auto* row = new QHBoxLayout;
    row->addWidget(pathEdit, 1);
    row->addWidget(choose);
    auto* form = new QFormLayout;
    form->addRow(tr("Data folder"), row);

    auto* note = new QLabel(tr("New charts and the downloaded NCBI taxonomy are kept in this folder."), this);
    note->setWordWrap(true);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &AppPreferencesDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &AppPreferencesDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(note);
    layout->addWidget(buttons);
    setMinimumWidth(480);
}

QString AppPreferencesDialog::getPath() const
{
    return pathEdit->text().trimmed();
}

void AppPreferencesDialog::setPath(const QString& path)
{
    pathEdit->setText(path);
}

void AppPreferencesDialog::slotChooseFolder()
{
    const QString folder = QFileDialog::getExistingDirectory(this, tr("Data folder"), getPath());
    if (!folder.isEmpty())
        setPath(QDir::toNativeSeparators(folder));
}

void AppPreferencesDialog::accept()
{
    const QString path = getPath();
    if (!path.isEmpty() && !QDir().mkpath(path)) {
        QMessageBox::warning(this, tr("Preferences"), tr("The folder \"%1\" could not be created.").arg(path));
        return;
    }
    QDialog::accept();
}

} // namespace Viewer
} // namespace Sorvik
