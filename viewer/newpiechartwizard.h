#pragma once

#include "ontology/inputformat.h"

#include <QWizard>

namespace Sorvik {
namespace Viewer {

// Asks for the input of a new chart: its format, its file and, for some formats, a format detail
// or a column. The viewer reads the answers (the chosen format, file and options) once the wizard
// is accepted; the wizard builds nothing. The four classic formats have pages of their own; every
// other format of the format table shares the input file page.
class NewPiechartWizard : public QWizard
{
    Q_OBJECT
public:
    enum PageId {
        InputType = 0,
        TaxidsFile = 1,
        MgTaxaFile = 2,
        KronaFile = 3,
        QiimeFile = 4,
        QiimeColumn = 5,
        InputFile = 6
    };

    // The first page's choice that tells the format from the file.
    static const QString detectWord;

    explicit NewPiechartWizard(QWidget* parent = nullptr);

    bool requiresNcbiTaxonomy() const;

    // The page that asks for the file of the format with this command-line word.
    static int getFilePage(const QString& word);

    // Chooses the format and its file as the user would: the wizard opens with them filled in.
    void setInput(const Zem::Ontology::InputFormat* format, const QString& fileName);

    // The chosen format, or the one found in the file; null while there is none.
    const Zem::Ontology::InputFormat* getFormat() const;
    QString getInputFileName() const;
    Zem::Ontology::InputFormat::Options getOptions() const;
};

} // namespace Viewer
} // namespace Sorvik
