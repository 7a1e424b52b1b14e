#include "viewer/aboutdialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#ifndef SORVIK_VERSION
#define SORVIK_VERSION "0.1.0"
#endif

namespace Sorvik {
namespace App {

AboutDialog::AboutDialog(QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("About Sorvik Piechart"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/sorvik-piechart.svg")));

    auto* icon = new QLabel(this);
    icon->setPixmap(QIcon(QStringLiteral(":/icons/sorvik-piechart.svg")).pixmap(64, 64));
    auto* title = new QLabel(QStringLiteral("<h2>Sorvik Piechart</h2>"), this);
    auto* version = new QLabel(tr("Version %1").arg(QStringLiteral(SORVIK_VERSION)), this);
    version->setObjectName(QStringLiteral("versionLabel"));
    auto* credits = new QLabel(
        tr("Multi-ring pie charts of taxonomic classifications: NCBI taxon-id lists, Krona text, QIIME "
           "summary tables and MG-Taxa files.<br><br>Taxonomy data: NCBI Taxonomy database, National "
           "Center for Biotechnology Information.<br>Built with Qt, SQLite, QuaZip and Boost."),
        this);
    credits->setWordWrap(true);
    auto* logo = new QLabel(this);
    logo->setPixmap(QPixmap(QStringLiteral(":/images/zem.png")).scaled(64, 64, Qt::KeepAspectRatio, Qt::SmoothTransformation));

    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(tr("Close"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* heading = new QHBoxLayout;
    heading->addWidget(icon);
    auto* titles = new QVBoxLayout;
    titles->addWidget(title);
    titles->addWidget(version);
    heading->addLayout(titles, 1);
    heading->addWidget(logo);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(heading);
    layout->addWidget(credits);
    layout->addWidget(buttons);
    setMinimumWidth(420);
}

} // namespace App
} // namespace Sorvik
