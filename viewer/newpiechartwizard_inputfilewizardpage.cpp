#include "viewer/newpiechartwizard_inputfilewizardpage.h"

#include "ui_newpiechartwizard_inputfilewizardpage.h"

#include "ontology/inputformat.h"
#include "ontology/inputsample.h"
#include "viewer/newpiechartwizard.h"
#include "viewer/newpiechartwizard_inputtypewizardpage.h"

namespace Sorvik {
namespace Viewer {

using Zem::Ontology::InputFormat;

NewPieChartWizard_InputFileWizardPage::NewPieChartWizard_InputFileWizardPage(QWidget* parent)
    : NewPieChartWizard_SourceFileWizardPage(parent)
    , ui(std::make_unique<Ui::NewPieChartWizard_InputFileWizardPage>())
{
    ui->setupUi(this);
    setFileNameEdit(ui->fileNameLineEdit);
    registerField(QStringLiteral("input-source-filename"), ui->fileNameLineEdit);
    registerField(QStringLiteral("input-keep-unclassified"), ui->keepUnclassifiedCheckBox);
    connect(ui->fileNameLineEdit, &QLineEdit::textChanged, this, [this] {
        if (isDetecting())
            detect();
    });
}

NewPieChartWizard_InputFileWizardPage::~NewPieChartWizard_InputFileWizardPage() = default;

bool NewPieChartWizard_InputFileWizardPage::isDetecting() const
{
    const auto* typePage = wizard() ? qobject_cast<const NewPieChartWizard_InputTypeWizardPage*>(
                                          wizard()->page(NewPiechartWizard::InputType))
                                    : nullptr;
    return typePage && typePage->getChosenWord() == NewPiechartWizard::detectWord;
}

void NewPieChartWizard_InputFileWizardPage::initializePage()
{
    if (isDetecting()) {
        setTitle(tr("Detect from the file"));
        ui->detectionLabel->show();
        detect();
        return;
    }
    detected = nullptr;
    ui->detectionLabel->hide();
    const auto* wizard = qobject_cast<const NewPiechartWizard*>(this->wizard());
    const InputFormat* format = wizard ? wizard->getFormat() : nullptr;
    setTitle(format ? format->label : QString());
    showOptions(format);
}

void NewPieChartWizard_InputFileWizardPage::detect()
{
    const QString fileName = getFileName();
    QStringList whyNot;
    detected = nullptr;
    if (fileName.isEmpty()) {
        ui->detectionLabel->setText(tr("Name the file, and its format is told from its first lines."));
    } else {
        detected = InputFormat::detect(Zem::Ontology::InputSample(fileName), &whyNot);
        ui->detectionLabel->setText(detected ? tr("Read as %1.").arg(detected->description)
                                             : tr("Cannot tell the format of this file:\n%1.").arg(whyNot.join(QStringLiteral(",\n"))));
    }
    showOptions(detected);
    emit completeChanged();
}

void NewPieChartWizard_InputFileWizardPage::showOptions(const InputFormat* format)
{
    ui->keepUnclassifiedCheckBox->setVisible(format && format->hasUnclassified);
}

bool NewPieChartWizard_InputFileWizardPage::isComplete() const
{
    return isDetecting() ? detected != nullptr : NewPieChartWizard_SourceFileWizardPage::isComplete();
}

bool NewPieChartWizard_InputFileWizardPage::validatePage()
{
    if (!isDetecting() || !detected || !detected->readColumns)
        return true;
    // A table of samples goes on to its column page.
    const QStringList columns = detected->readColumns(getFileName());
    if (columns.isEmpty())
        return false;
    emit signalSourceColumnsRetrieved(columns);
    return true;
}

int NewPieChartWizard_InputFileWizardPage::nextId() const
{
    return isDetecting() && detected && detected->readColumns ? NewPiechartWizard::QiimeColumn : -1;
}

} // namespace Viewer
} // namespace Sorvik
