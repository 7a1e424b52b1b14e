#pragma once

#include "viewer/newpiechartwizard_sourcefilewizardpage.h"

#include <memory>

namespace Sorvik {
namespace Viewer {

namespace Ui {
class NewPieChartWizard_KronaSourceFileWizardPage;
}

// The file page of Krona text files.
class NewPieChartWizard_KronaSourceFileWizardPage : public NewPieChartWizard_SourceFileWizardPage
{
    Q_OBJECT
public:
    explicit NewPieChartWizard_KronaSourceFileWizardPage(QWidget* parent = nullptr);
    ~NewPieChartWizard_KronaSourceFileWizardPage() override;

    int nextId() const override;
private:
    std::unique_ptr<Ui::NewPieChartWizard_KronaSourceFileWizardPage> ui;
};

} // namespace Viewer
} // namespace Sorvik
