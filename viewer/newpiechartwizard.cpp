#include "viewer/newpiechartwizard.h"

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
    connect(qiimeFile, &NewPieChartWizard_QiimeSourceFileWizardPage::signalSourceColumnsRetrieved, qiimeColumn,
            &NewPieChartWizard_QiimeSourceColumnWizardPage::slotSourceColumnsRetrieved);
}

bool NewPiechartWizard::requiresNcbiTaxonomy() const
{
    return field(QStringLiteral("input-type-taxids")).toBool() || field(QStringLiteral("input-type-mgtaxa")).toBool();
}

} // namespace Viewer
} // namespace Sorvik
