#pragma once

#include <QList>
#include <QWizardPage>

#include <memory>

namespace Sorvik {
namespace Viewer {

namespace Ui {
class NewPieChartWizard_QiimeSourceColumnWizardPage;
}

// The wizard's last page for a table of samples (a QIIME table, a merged table): which sample
// columns become the chart's samples, one or several of them, or all. The field
// "qiime-source-column" is the current column, "qiime-source-all-columns" the choice of all.
class NewPieChartWizard_QiimeSourceColumnWizardPage : public QWizardPage
{
    Q_OBJECT
public:
    explicit NewPieChartWizard_QiimeSourceColumnWizardPage(QWidget* parent = nullptr);
    ~NewPieChartWizard_QiimeSourceColumnWizardPage() override;

    int nextId() const override;
    bool isComplete() const override;
    QStringList getColumns() const;
    // The chosen columns' places, in the table's order; every column when all are chosen.
    QList<int> getChosenColumns() const;
    bool isAllColumns() const;

public slots:
    void slotSourceColumnsRetrieved(const QStringList& columns);

private:
    std::unique_ptr<Ui::NewPieChartWizard_QiimeSourceColumnWizardPage> ui;
};

} // namespace Viewer
} // namespace Sorvik
