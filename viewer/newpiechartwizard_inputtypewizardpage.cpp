#include "viewer/newpiechartwizard_inputtypewizardpage.h"

#include "ui_newpiechartwizard_inputtypewizardpage.h"

#include "ontology/inputformat.h"
#include "viewer/newpiechartwizard.h"

#include <QRadioButton>

namespace Sorvik {
namespace Viewer {

NewPieChartWizard_InputTypeWizardPage::NewPieChartWizard_InputTypeWizardPage(QWidget* parent)
    : QWizardPage(parent)
    , ui(std::make_unique<Ui::NewPieChartWizard_InputTypeWizardPage>())
{
    ui->setupUi(this);
    addChoice(tr("Detect from the file"), NewPiechartWizard::detectWord);
    for (const Zem::Ontology::InputFormat& format : Zem::Ontology::InputFormat::all()) {
        if (!format.label.isEmpty())
            addChoice(format.label, format.word);
    }
}

void NewPieChartWizard_InputTypeWizardPage::addChoice(const QString& label, const QString& word)
{
    auto* button = new QRadioButton(label, this);
    button->setObjectName(word + QLatin1String("RadioButton"));
    // Above the spacer that keeps the choices together at the top.
    ui->verticalLayout->insertWidget(int(choices.size()), button);
    registerField(QLatin1String("input-type-") + word, button);
    connect(button, &QRadioButton::toggled, this, &QWizardPage::completeChanged);
    choices.emplace_back(button, word);
}

NewPieChartWizard_InputTypeWizardPage::~NewPieChartWizard_InputTypeWizardPage() = default;

QString NewPieChartWizard_InputTypeWizardPage::getChosenWord() const
{
    for (const auto& [button, word] : choices) {
        if (button->isChecked())
            return word;
    }
    return QString();
}

int NewPieChartWizard_InputTypeWizardPage::nextId() const
{
    const QString word = getChosenWord();
    return word.isEmpty() ? NewPiechartWizard::InputType : NewPiechartWizard::getFilePage(word);
}

bool NewPieChartWizard_InputTypeWizardPage::isComplete() const
{
    // Nothing chosen yet: Next stays disabled rather than leading back to this page.
    return !getChosenWord().isEmpty();
}

} // namespace Viewer
} // namespace Sorvik
