#pragma once

#include <QWizardPage>

class QLineEdit;

namespace Sorvik {
namespace Viewer {

// What the wizard's file pages share: a line edit with the input files' names and a button that
// picks them, starting in the folder of the last file picked. One file is its name as typed;
// several, each a sample, are each in double quotes ("a.kreport" "b.kreport"), as file dialogs
// show a selection. The page is complete once it names a file.
class NewPieChartWizard_SourceFileWizardPage : public QWizardPage
{
    Q_OBJECT
public:
    using QWizardPage::QWizardPage;

    // The first file named.
    QString getFileName() const;
    QStringList getFileNames() const;
    void setFileName(const QString& fileName);
    void setFileNames(const QStringList& fileNames);
    bool isComplete() const override;

    // The files a line edit's text names, and the text that names files.
    static QStringList splitFileNames(const QString& text);
    static QString joinFileNames(const QStringList& fileNames);

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
