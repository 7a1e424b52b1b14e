#include "viewer/apppreferencesdialog.h"

#include "ontology/taxonomycache.h"
#include "viewer/settings.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
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
    layout->addWidget(createTaxonomyGroup());
    layout->addWidget(buttons);
    setMinimumWidth(480);
}

QWidget* AppPreferencesDialog::createTaxonomyGroup()
{
    auto* group = new QGroupBox(tr("NCBI taxonomy"), this);
    taxonomyLabel = new QLabel(group);
    taxonomyLabel->setObjectName(QStringLiteral("taxonomyLabel"));
    taxonomyLabel->setWordWrap(true);
    taxonomyLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* update = new QPushButton(tr("Update taxonomy now"), group);
    update->setObjectName(QStringLiteral("updateTaxonomy"));
    update->setToolTip(tr("Downloads the current NCBI taxonomy; the one in use stays until the new one is complete."));
    connect(update, &QPushButton::clicked, this, &AppPreferencesDialog::signalUpdateTaxonomy);
    connect(pathEdit, &QLineEdit::textChanged, this, &AppPreferencesDialog::slotRefreshTaxonomy);
    auto* layout = new QVBoxLayout(group);
    layout->addWidget(taxonomyLabel);
    layout->addWidget(update, 0, Qt::AlignLeft);
    slotRefreshTaxonomy();
    return group;
}

QString AppPreferencesDialog::getTaxonomyFile() const
{
    return QDir(getPath()).absoluteFilePath(App::Settings::taxonomyFileName);
}

QString AppPreferencesDialog::getTaxonomyText() const
{
    return taxonomyLabel->text();
}

void AppPreferencesDialog::slotRefreshTaxonomy()
{
    const Zem::Ncbi::TaxonomyCache cache(getTaxonomyFile());
    if (!cache.isUsable()) {
        taxonomyLabel->setText(tr("Not downloaded yet: it is downloaded with the first chart of NCBI taxon ids."));
        return;
    }
    QString text = tr("Made on %1").arg(QLocale().toString(cache.getCreated().toLocalTime().date(), QLocale::LongFormat));
    if (!cache.getOrigin().isEmpty())
        text += tr(" from %1").arg(cache.getOrigin());
    text += QLatin1Char('.');
    if (cache.isOld())
        text += tr(" It is %1 days old: NCBI has merged and deleted many taxa since.").arg(cache.getAgeDays());
    taxonomyLabel->setText(text);
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
