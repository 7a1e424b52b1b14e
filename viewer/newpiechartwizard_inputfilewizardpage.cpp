#include "viewer/newpiechartwizard_inputfilewizardpage.h"

#include "ui_newpiechartwizard_inputfilewizardpage.h"

#include "ontology/inputformat.h"
#include "ontology/inputsample.h"
#include "viewer/newpiechartwizard.h"
#include "viewer/newpiechartwizard_inputtypewizardpage.h"

#include <QFileInfo>

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
        else
            ui->detectionLabel->hide();
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
    const QStringList fileNames = getFileNames();
    detected = nullptr;
    if (fileNames.isEmpty()) {
        ui->detectionLabel->setText(tr("Name the file, and its format is told from its first lines."));
        showOptions(nullptr);
        emit completeChanged();
        return;
    }
    QString said;
    // Several files are samples of one format: each must be told as the first is.
    for (const QString& fileName : fileNames) {
        QStringList whyNot;
        const InputFormat* format = InputFormat::detect(Zem::Ontology::InputSample(fileName), &whyNot);
        const QString shown = fileNames.size() > 1 ? QFileInfo(fileName).fileName() : QString();
        if (!format) {
            said = shown.isEmpty() ? tr("Cannot tell the format of this file:\n%1.").arg(whyNot.join(QStringLiteral(",\n")))
                                   : tr("Cannot tell the format of %1:\n%2.").arg(shown, whyNot.join(QStringLiteral(",\n")));
            detected = nullptr;
            break;
        }
        if (detected && format != detected) {
            said = tr("The files are of different formats: %1 is %2, but %3 is %4.")
                       .arg(QFileInfo(fileNames.front()).fileName(), detected->description, shown, format->description);
            detected = nullptr;
            break;
        }
        detected = format;
    }
    if (detected)
        said = fileNames.size() > 1 ? tr("Read as %1, %2 files.").arg(detected->description).arg(fileNames.size())
                                    : tr("Read as %1.").arg(detected->description);
    ui->detectionLabel->setText(said);
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

const InputFormat* NewPieChartWizard_InputFileWizardPage::getFormat() const
{
    if (isDetecting())
        return detected;
    const auto* wizard = qobject_cast<const NewPiechartWizard*>(this->wizard());
    return wizard ? wizard->getFormat() : nullptr;
}

bool NewPieChartWizard_InputFileWizardPage::validatePage()
{
    const InputFormat* format = getFormat();
    if (!format || !format->readColumns)
        return true;
    // A table of samples goes on to its column page.
    const QStringList columns = format->readColumns(getFileName());
    if (columns.isEmpty()) {
        ui->detectionLabel->setText(tr("%1 has no header that names sample columns of %2.")
                                        .arg(QFileInfo(getFileName()).fileName(), format->description));
        ui->detectionLabel->show();
        return false;
    }
    emit signalSourceColumnsRetrieved(columns);
    return true;
}

int NewPieChartWizard_InputFileWizardPage::nextId() const
{
    const InputFormat* format = getFormat();
    return format && format->readColumns ? NewPiechartWizard::QiimeColumn : -1;
}

} // namespace Viewer
} // namespace Sorvik
