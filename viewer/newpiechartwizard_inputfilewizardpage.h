#pragma once

#include "viewer/newpiechartwizard_sourcefilewizardpage.h"

#include <memory>

namespace Sorvik {
namespace Viewer {

namespace Ui {
class NewPieChartWizard_InputFileWizardPage;
}

// The file page of every input format that has no page of its own; its title names the format
// chosen on the first page.
class NewPieChartWizard_InputFileWizardPage : public NewPieChartWizard_SourceFileWizardPage
{
    Q_OBJECT
public:
    explicit NewPieChartWizard_InputFileWizardPage(QWidget* parent = nullptr);
    ~NewPieChartWizard_InputFileWizardPage() override;

    void initializePage() override;
    int nextId() const override;

private:
    std::unique_ptr<Ui::NewPieChartWizard_InputFileWizardPage> ui;
};

} // namespace Viewer
} // namespace Sorvik
