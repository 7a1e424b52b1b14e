#pragma once

#include "viewer/newpiechartwizard_sourcefilewizardpage.h"

#include <memory>

namespace Sorvik {
namespace Viewer {

namespace Ui {
class NewPieChartWizard_MgTaxaSourceFileWizardPage;
}

// The file page of MG-Taxa prediction files.
class NewPieChartWizard_MgTaxaSourceFileWizardPage : public NewPieChartWizard_SourceFileWizardPage
{
    Q_OBJECT
public:
    explicit NewPieChartWizard_MgTaxaSourceFileWizardPage(QWidget* parent = nullptr);
    ~NewPieChartWizard_MgTaxaSourceFileWizardPage() override;

    int nextId() const override;
private:
    std::unique_ptr<Ui::NewPieChartWizard_MgTaxaSourceFileWizardPage> ui;
};

} // namespace Viewer
} // namespace Sorvik
