#include "viewer/newpiechartwizard_qiimesourcefilewizardpage.h"

#include "ui_newpiechartwizard_qiimesourcefilewizardpage.h"

#include "ontology/sourceqiimetext.h"

namespace Sorvik {
namespace Viewer {

NewPieChartWizard_QiimeSourceFileWizardPage::NewPieChartWizard_QiimeSourceFileWizardPage(QWidget* parent)
    : NewPieChartWizard_SourceFileWizardPage(parent)
    , ui(std::make_unique<Ui::NewPieChartWizard_QiimeSourceFileWizardPage>())
{
    ui->setupUi(this);
    setFileNameEdit(ui->fileNameLineEdit);
    registerField(QStringLiteral("qiime-source-filename"), ui->fileNameLineEdit);
}

NewPieChartWizard_QiimeSourceFileWizardPage::~NewPieChartWizard_QiimeSourceFileWizardPage() = default;

int NewPieChartWizard_QiimeSourceFileWizardPage::nextId() const
{
    return 5;
}

bool NewPieChartWizard_QiimeSourceFileWizardPage::validatePage()
{
    const QStringList columns = Zem::Ontology::SourceQiimeText::readColumnNames(getFileName());
    if (columns.isEmpty())
        return false;
    emit signalSourceColumnsRetrieved(columns);
    return true;
}

} // namespace Viewer
} // namespace Sorvik
