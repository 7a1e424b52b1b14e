#pragma once

#include <QWizardPage>

class QLineEdit;

namespace Sorvik {
namespace Viewer {

// What the wizard's file pages share: a line edit with the input file's name and a button that
// picks the file, starting in the folder of the last file picked.
class NewPieChartWizard_SourceFileWizardPage : public QWizardPage
{
    Q_OBJECT
public:
    using QWizardPage::QWizardPage;

    QString getFileName() const;
    void setFileName(const QString& fileName);

protected slots:
    void on_selectFileNameButton_clicked();

protected:
    // Called by each page once its form is set up.
    void setFileNameEdit(QLineEdit* edit);

private:
    QLineEdit* fileNameEdit = nullptr;
};

} // namespace Viewer
} // namespace Sorvik
