#pragma once

#include <QDialog>

class QPlainTextEdit;

namespace Zem {
namespace Ontology {
class BuildReport;
}
} // namespace Zem

namespace Sorvik {
namespace Viewer {

// Says, once a chart is built, what its input held that the chart shows apart: reads counted
// under the ids NCBI merged theirs into, and those under "Unknown taxon ids", with the list of
// the unknown ids to select and copy (to look them up, or to ask the classifier's makers).
class BuildReportDialog : public QDialog
{
    Q_OBJECT
public:
    explicit BuildReportDialog(const Zem::Ontology::BuildReport& report, QWidget* parent = nullptr);

    // The sentences shown, one a line.
    QString getText() const { return text; }
    // The unknown ids as listed; empty when there are none.
    QString getIdList() const;

private slots:
    void slotCopyIds();

private:
    QString text;
    QPlainTextEdit* ids = nullptr;
};

} // namespace Viewer
} // namespace Sorvik
