#pragma once

#include <QWizardPage>

#include <memory>

namespace Sorvik {
namespace Viewer {

namespace Ui {
class NewPieChartWizard_InputTypeWizardPage;
}

// The wizard's first page: which kind of input the new chart is made from.
class NewPieChartWizard_InputTypeWizardPage : public QWizardPage
{
    Q_OBJECT
public:
    explicit NewPieChartWizard_InputTypeWizardPage(QWidget* parent = nullptr);
    ~NewPieChartWizard_InputTypeWizardPage() override;

    int nextId() const override;
    bool isComplete() const override;

private:
    std::unique_ptr<Ui::NewPieChartWizard_InputTypeWizardPage> ui;
};

} // namespace Viewer
} // namespace Sorvik
