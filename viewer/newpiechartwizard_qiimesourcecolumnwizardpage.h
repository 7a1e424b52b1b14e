#pragma once

#include <QWizardPage>

#include <memory>

namespace Sorvik {
namespace Viewer {

namespace Ui {
class NewPieChartWizard_QiimeSourceColumnWizardPage;
}

// The wizard's last QIIME page: which sample column's values become the chart.
class NewPieChartWizard_QiimeSourceColumnWizardPage : public QWizardPage
{
    Q_OBJECT
public:
    explicit NewPieChartWizard_QiimeSourceColumnWizardPage(QWidget* parent = nullptr);
    ~NewPieChartWizard_QiimeSourceColumnWizardPage() override;

    int nextId() const override;
    QStringList getColumns() const;

public slots:
    void slotSourceColumnsRetrieved(const QStringList& columns);

private:
    std::unique_ptr<Ui::NewPieChartWizard_QiimeSourceColumnWizardPage> ui;
};

} // namespace Viewer
} // namespace Sorvik
