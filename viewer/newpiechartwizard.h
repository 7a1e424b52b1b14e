#pragma once

#include "ontology/inputformat.h"

#include <QList>
#include <QPair>
#include <QWizard>

#include <memory>
#include <utility>
#include <vector>

namespace Sorvik {
namespace Viewer {

// Asks for the input of a new chart: its format, its files and, for some formats, a format detail
// or columns. Each file, or each chosen column of a table of samples, is one sample of the chart.
// The viewer reads the answers (the format and the samples) once the wizard is accepted; the
// wizard builds nothing. The four classic formats have pages of their own; every
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

    // One sample of the new chart: its name, unique among the samples, and what to read.
    struct Sample
    {
        QString name;
        QString fileName;
        Zem::Ontology::InputFormat::Options options;
    };

    // The chosen format, or the one found in the file; null while there is none.
    const Zem::Ontology::InputFormat* getFormat() const;
    // The first sample's file and options, for a chart of one sample.
    QString getInputFileName() const;
    Zem::Ontology::InputFormat::Options getOptions() const;
    QStringList getInputFileNames() const;
    // Every sample, in the order of the files and of their columns: one per file, or, for a
    // table of samples, one per chosen column of each file, named after the column (after the
    // file and the column when there are several files). Reads the tables' headers for "All
    // columns"; empty while no format or file is chosen.
    std::vector<Sample> getSamples() const;
    // Each sample's name and source, as a build of several samples takes them
    // (BuilderSource::addSample, BuildNcbiPiechartAsyncTask::addSample).
    std::vector<std::pair<QString, std::unique_ptr<Zem::Ontology::Source>>> makeSampleSources() const;

private:
    // The chosen columns' places and names; all of the file's with "All columns".
    QList<QPair<int, QString>> getColumnsOf(const QString& fileName) const;
};

} // namespace Viewer
} // namespace Sorvik
