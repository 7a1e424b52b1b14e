#pragma once

#include "viewer/newpiechartwizard_sourcefilewizardpage.h"

#include <memory>

namespace Sorvik {
namespace Viewer {

namespace Ui {
class NewPieChartWizard_TaxidsSourceFileWizardPage;
}

// The file page of taxon-id lists: the file and whether it holds ids alone or ids with counts.
class NewPieChartWizard_TaxidsSourceFileWizardPage : public NewPieChartWizard_SourceFileWizardPage
{
    Q_OBJECT
public:
    explicit NewPieChartWizard_TaxidsSourceFileWizardPage(QWidget* parent = nullptr);
    ~NewPieChartWizard_TaxidsSourceFileWizardPage() override;

    int nextId() const override;
private:
    std::unique_ptr<Ui::NewPieChartWizard_TaxidsSourceFileWizardPage> ui;
};

} // namespace Viewer
} // namespace Sorvik
