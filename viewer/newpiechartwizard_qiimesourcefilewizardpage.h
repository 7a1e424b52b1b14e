#pragma once

#include "viewer/newpiechartwizard_sourcefilewizardpage.h"

#include <memory>

namespace Sorvik {
namespace Viewer {

namespace Ui {
class NewPieChartWizard_QiimeSourceFileWizardPage;
}

// The file page of QIIME summary tables; moving on reads the table's value columns for the next page.
class NewPieChartWizard_QiimeSourceFileWizardPage : public NewPieChartWizard_SourceFileWizardPage
{
    Q_OBJECT
public:
    explicit NewPieChartWizard_QiimeSourceFileWizardPage(QWidget* parent = nullptr);
    ~NewPieChartWizard_QiimeSourceFileWizardPage() override;

    int nextId() const override;
    bool validatePage() override;

signals:
    void signalSourceColumnsRetrieved(const QStringList& columns);

private:
    std::unique_ptr<Ui::NewPieChartWizard_QiimeSourceFileWizardPage> ui;
};

} // namespace Viewer
} // namespace Sorvik
