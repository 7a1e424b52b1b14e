#include "viewer/newpiechartwizard.h"

#include "ontology/chartsamples.h"
#include "ontology/source.h"
#include "viewer/newpiechartwizard_inputfilewizardpage.h"
#include "viewer/newpiechartwizard_inputtypewizardpage.h"
#include "viewer/newpiechartwizard_kronasourcefilewizardpage.h"
#include "viewer/newpiechartwizard_mgtaxasourcefilewizardpage.h"
#include "viewer/newpiechartwizard_qiimesourcecolumnwizardpage.h"
#include "viewer/newpiechartwizard_qiimesourcefilewizardpage.h"
#include "viewer/newpiechartwizard_taxidssourcefilewizardpage.h"

#include <QFileInfo>
#include <QIcon>
#include <QVariant>

namespace Sorvik {
namespace Viewer {

namespace {

// The formats with pages of their own, and the field of each page's file name.
struct FilePage
{
    const char* word;
    int page;
    const char* fileField;
};

const FilePage filePages[] = {
    {"taxids", NewPiechartWizard::TaxidsFile, "taxids-source-filename"},
    {"taxid-counts", NewPiechartWizard::TaxidsFile, "taxids-source-filename"},
    {"mgtaxa", NewPiechartWizard::MgTaxaFile, "mgtaxa-source-filename"},
    {"krona", NewPiechartWizard::KronaFile, "krona-source-filename"},
    {"qiime", NewPiechartWizard::QiimeFile, "qiime-source-filename"},
};

const FilePage* findFilePage(const QString& word)
{
    for (const FilePage& page : filePages) {
        if (word == QLatin1String(page.word))
            return &page;
    }
    return nullptr;
}

} // namespace

const QString NewPiechartWizard::detectWord = QStringLiteral("auto");

NewPiechartWizard::NewPiechartWizard(QWidget* parent)
    : QWizard(parent)
{
    setWindowTitle(tr("New pie chart"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/document-new.svg")));
    setPage(InputType, new NewPieChartWizard_InputTypeWizardPage(this));
    setPage(TaxidsFile, new NewPieChartWizard_TaxidsSourceFileWizardPage(this));
    setPage(MgTaxaFile, new NewPieChartWizard_MgTaxaSourceFileWizardPage(this));
    setPage(KronaFile, new NewPieChartWizard_KronaSourceFileWizardPage(this));
    auto* qiimeFile = new NewPieChartWizard_QiimeSourceFileWizardPage(this);
    setPage(QiimeFile, qiimeFile);
    auto* qiimeColumn = new NewPieChartWizard_QiimeSourceColumnWizardPage(this);
    setPage(QiimeColumn, qiimeColumn);
    auto* inputFile = new NewPieChartWizard_InputFileWizardPage(this);
    setPage(InputFile, inputFile);
    connect(qiimeFile, &NewPieChartWizard_QiimeSourceFileWizardPage::signalSourceColumnsRetrieved, qiimeColumn,
            &NewPieChartWizard_QiimeSourceColumnWizardPage::slotSourceColumnsRetrieved);
    connect(inputFile, &NewPieChartWizard_InputFileWizardPage::signalSourceColumnsRetrieved, qiimeColumn,
            &NewPieChartWizard_QiimeSourceColumnWizardPage::slotSourceColumnsRetrieved);
}

bool NewPiechartWizard::requiresNcbiTaxonomy() const
{
    const Zem::Ontology::InputFormat* format = getFormat();
    return format && format->needsTaxonomy;
}

int NewPiechartWizard::getFilePage(const QString& word)
{
    const FilePage* page = findFilePage(word);
    return page ? page->page : InputFile;
}

void NewPiechartWizard::setInput(const Zem::Ontology::InputFormat* format, const QString& fileName)
{
    if (!format)
        return;
    const bool counts = format->word == QLatin1String("taxid-counts");
    // The list with counts is chosen as a variant on the taxon-id list's page.
    setField(QLatin1String("input-type-") + (counts ? QStringLiteral("taxids") : format->word), true);
    if (format->word == QLatin1String("taxids") || counts)
        setField(counts ? QStringLiteral("taxids-source-format-idcount") : QStringLiteral("taxids-source-format-id"), true);
    const FilePage* page = findFilePage(format->word);
    setField(QLatin1String(page ? page->fileField : "input-source-filename"), fileName);
}

const Zem::Ontology::InputFormat* NewPiechartWizard::getFormat() const
{
    const auto* typePage = static_cast<const NewPieChartWizard_InputTypeWizardPage*>(page(InputType));
    QString word = typePage->getChosenWord();
    if (word == detectWord)
        return static_cast<const NewPieChartWizard_InputFileWizardPage*>(page(InputFile))->getDetectedFormat();
    // The taxon-id page offers the list with counts as a variant of the plain list.
    if (word == QLatin1String("taxids") && field(QStringLiteral("taxids-source-format-idcount")).toBool())
        word = QStringLiteral("taxid-counts");
    return Zem::Ontology::InputFormat::find(word);
}

QString NewPiechartWizard::getInputFileName() const
{
    return getInputFileNames().value(0);
}

QStringList NewPiechartWizard::getInputFileNames() const
{
    const Zem::Ontology::InputFormat* format = getFormat();
    if (!format)
        return QStringList();
    // Detection reads the files named on the input file page, whatever format it finds.
    const auto* typePage = static_cast<const NewPieChartWizard_InputTypeWizardPage*>(page(InputType));
    const FilePage* page = typePage->getChosenWord() == detectWord ? nullptr : findFilePage(format->word);
    return NewPieChartWizard_SourceFileWizardPage::splitFileNames(
        field(QLatin1String(page ? page->fileField : "input-source-filename")).toString());
}

Zem::Ontology::InputFormat::Options NewPiechartWizard::getOptions() const
{
    Zem::Ontology::InputFormat::Options options;
    const auto* columnPage = static_cast<const NewPieChartWizard_QiimeSourceColumnWizardPage*>(page(QiimeColumn));
    options.column = columnPage->getChosenColumns().value(0, 0);
    options.keepUnclassified = field(QStringLiteral("input-keep-unclassified")).toBool();
    return options;
}

std::vector<std::pair<QString, std::unique_ptr<Zem::Ontology::Source>>> NewPiechartWizard::makeSampleSources() const
{
    std::vector<std::pair<QString, std::unique_ptr<Zem::Ontology::Source>>> sources;
    const Zem::Ontology::InputFormat* format = getFormat();
    // All made before any is read: the columns of one table share one reading of it.
    for (const Sample& sample : getSamples())
        sources.emplace_back(sample.name, format->makeSource(sample.fileName, sample.options));
    return sources;
}

QList<QPair<int, QString>> NewPiechartWizard::getColumnsOf(const QString& fileName) const
{
    const auto* columnPage = static_cast<const NewPieChartWizard_QiimeSourceColumnWizardPage*>(page(QiimeColumn));
    // The page offers the first file's columns; with all of them, every file gives its own.
    const QStringList names = columnPage->isAllColumns() ? getFormat()->readColumns(fileName) : columnPage->getColumns();
    QList<QPair<int, QString>> columns;
    for (int i = 0; i < names.size(); ++i) {
        if (columnPage->isAllColumns() || columnPage->getChosenColumns().contains(i))
            columns.append({i, names.at(i)});
    }
    // A file without the columns stays a sample, for its reader to say what is wrong with it.
    if (names.isEmpty())
        columns.append({0, QString()});
    return columns;
}

std::vector<NewPiechartWizard::Sample> NewPiechartWizard::getSamples() const
{
    const Zem::Ontology::InputFormat* format = getFormat();
    std::vector<Sample> samples;
    if (!format)
        return samples;
    const QStringList fileNames = getInputFileNames();
    QStringList names;
    for (const QString& fileName : fileNames) {
        Zem::Ontology::InputFormat::Options options = getOptions();
        const QString fileSample = Zem::Ontology::ChartSamples::nameOfFile(fileName);
        if (!format->readColumns) {
            names << fileSample;
            samples.push_back(Sample{QString(), fileName, options});
            continue;
        }
        for (const auto& [column, name] : getColumnsOf(fileName)) {
            options.column = column;
            names << (name.isEmpty() ? fileSample : fileNames.size() > 1 ? fileSample + QLatin1Char(' ') + name : name);
            samples.push_back(Sample{QString(), fileName, options});
        }
    }
    // Two files of one name in different folders, or a column named twice.
    names = Zem::Ontology::ChartSamples::makeUnique(names);
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i].name = names.at(int(i));
    return samples;
}

} // namespace Viewer
} // namespace Sorvik
