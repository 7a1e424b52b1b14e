#pragma once

#include <QWizard>

namespace Sorvik {
namespace Viewer {

// Asks for the input of a new chart: its kind, its file and, for some kinds, a format detail or
// a column. The viewer reads the answers from the wizard's fields; the wizard builds nothing.
class NewPiechartWizard : public QWizard
{
    Q_OBJECT
public:
    enum PageId { InputType = 0, TaxidsFile = 1, MgTaxaFile = 2, KronaFile = 3, QiimeFile = 4, QiimeColumn = 5 };

    explicit NewPiechartWizard(QWidget* parent = nullptr);

    bool requiresNcbiTaxonomy() const;
};

} // namespace Viewer
} // namespace Sorvik
