#include "viewer/newpiechartwizard.h"

#include "viewer/newpiechartwizard_inputfilewizardpage.h"
#include "viewer/newpiechartwizard_inputtypewizardpage.h"
#include "viewer/newpiechartwizard_kronasourcefilewizardpage.h"
#include "viewer/newpiechartwizard_mgtaxasourcefilewizardpage.h"
#include "viewer/newpiechartwizard_qiimesourcecolumnwizardpage.h"
#include "viewer/newpiechartwizard_qiimesourcefilewizardpage.h"
#include "viewer/newpiechartwizard_taxidssourcefilewizardpage.h"

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
    const Zem::Ontology::InputFormat* format = getFormat();
    if (!format)
        return QString();
    // Detection reads the file named on the input file page, whatever format it finds.
    const auto* typePage = static_cast<const NewPieChartWizard_InputTypeWizardPage*>(page(InputType));
    const FilePage* page = typePage->getChosenWord() == detectWord ? nullptr : findFilePage(format->word);
    return field(QLatin1String(page ? page->fileField : "input-source-filename")).toString();
}

Zem::Ontology::InputFormat::Options NewPiechartWizard::getOptions() const
{
    Zem::Ontology::InputFormat::Options options;
    options.column = field(QStringLiteral("qiime-source-column")).toInt();
    options.keepUnclassified = field(QStringLiteral("input-keep-unclassified")).toBool();
    return options;
}

} // namespace Viewer
} // namespace Sorvik
