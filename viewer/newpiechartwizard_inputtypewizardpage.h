#pragma once

#include <QWizardPage>

#include <memory>
#include <vector>

class QRadioButton;

namespace Sorvik {
namespace Viewer {

namespace Ui {
class NewPieChartWizard_InputTypeWizardPage;
}

// The wizard's first page: which kind of input the new chart is made from: detection from the
// file, then one choice per input format that the wizard lists. Each choice is the boolean field
// "input-type-" and the format's command-line word ("auto" for detection).
class NewPieChartWizard_InputTypeWizardPage : public QWizardPage
{
    Q_OBJECT
public:
    explicit NewPieChartWizard_InputTypeWizardPage(QWidget* parent = nullptr);
    ~NewPieChartWizard_InputTypeWizardPage() override;

    int nextId() const override;
    bool isComplete() const override;

    // The command-line word of the chosen format, empty while none is chosen.
    QString getChosenWord() const;

private:
    void addChoice(const QString& label, const QString& word);

    std::unique_ptr<Ui::NewPieChartWizard_InputTypeWizardPage> ui;
    // The choices with their formats' words, in the table's order.
    std::vector<std::pair<QRadioButton*, QString>> choices;
};

} // namespace Viewer
} // namespace Sorvik
