#pragma once

#include "viewer/newpiechartwizard_sourcefilewizardpage.h"

#include <memory>

namespace Zem {
namespace Ontology {
class InputFormat;
}
} // namespace Zem

namespace Sorvik {
namespace Viewer {

namespace Ui {
class NewPieChartWizard_InputFileWizardPage;
}

// The file page of every input format that has no page of its own, and of "Detect from the
// file": then it tells the files' format as soon as they are named, says which it found (or why
// none, or that several files differ), and goes on to the column page for a table of samples.
// Formats that count unclassified reads offer to leave them out.
class NewPieChartWizard_InputFileWizardPage : public NewPieChartWizard_SourceFileWizardPage
{
    Q_OBJECT
public:
    explicit NewPieChartWizard_InputFileWizardPage(QWidget* parent = nullptr);
    ~NewPieChartWizard_InputFileWizardPage() override;

    void initializePage() override;
    bool isComplete() const override;
    bool validatePage() override;
    int nextId() const override;

    // The format found in the file while detecting, else null.
    const Zem::Ontology::InputFormat* getDetectedFormat() const { return detected; }

signals:
    void signalSourceColumnsRetrieved(const QStringList& columns);

private:
    bool isDetecting() const;
    // The format detected, or chosen on the first page.
    const Zem::Ontology::InputFormat* getFormat() const;
    void detect();
    // Shows the check box for unclassified reads where the format has them.
    void showOptions(const Zem::Ontology::InputFormat* format);

    std::unique_ptr<Ui::NewPieChartWizard_InputFileWizardPage> ui;
    const Zem::Ontology::InputFormat* detected = nullptr;
};

} // namespace Viewer
} // namespace Sorvik
