#include "viewer/newpiechartwizard_inputfilewizardpage.h"

#include "ui_newpiechartwizard_inputfilewizardpage.h"

#include "ontology/inputformat.h"
#include "viewer/newpiechartwizard.h"

namespace Sorvik {
namespace Viewer {

NewPieChartWizard_InputFileWizardPage::NewPieChartWizard_InputFileWizardPage(QWidget* parent)
    : NewPieChartWizard_SourceFileWizardPage(parent)
    , ui(std::make_unique<Ui::NewPieChartWizard_InputFileWizardPage>())
{
    ui->setupUi(this);
    setFileNameEdit(ui->fileNameLineEdit);
    registerField(QStringLiteral("input-source-filename"), ui->fileNameLineEdit);
}

NewPieChartWizard_InputFileWizardPage::~NewPieChartWizard_InputFileWizardPage() = default;

void NewPieChartWizard_InputFileWizardPage::initializePage()
{
    const auto* wizard = qobject_cast<const NewPiechartWizard*>(this->wizard());
    const Zem::Ontology::InputFormat* format = wizard ? wizard->getFormat() : nullptr;
    setTitle(format ? format->label : QString());
}

int NewPieChartWizard_InputFileWizardPage::nextId() const
{
    return -1;
}

} // namespace Viewer
} // namespace Sorvik
