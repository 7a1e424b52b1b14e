#include "cli/updatetaxonomycommand.h"

#include "cli/buildcommand.h"
#include "cli/progressbar.h"
#include "cli/taskrunner.h"
#include "ontology/taxonomycache.h"
#include "ontology/taxonomychanges.h"
#include "viewer/buildncbipiechartasynctask.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <unistd.h>

namespace Sorvik {
namespace Cli {

QString UpdateTaxonomyCommand::getName() const
{
    return QStringLiteral("update-taxonomy");
}

QString UpdateTaxonomyCommand::getSummary() const
{
    return QStringLiteral("Replaces the NCBI taxonomy cache with the current NCBI taxonomy, or with a taxdmp.zip you have.");
}

void UpdateTaxonomyCommand::setUp(QCommandLineParser& parser)
{
    parser.addPositionalArgument(QStringLiteral("ARCHIVE"),
                                 QStringLiteral("An NCBI taxonomy dump (taxdmp.zip) to import; without it, the current "
                                                "one is downloaded from %1.")
                                     .arg(Viewer::BuildNcbiPiechartAsyncTask::getDefaultDownloadUrl().toString()),
                                 QStringLiteral("[ARCHIVE]"));
    parser.addOption({{QStringLiteral("t"), QStringLiteral("taxonomy")},
                      QStringLiteral("The taxonomy cache to replace (default: %1).").arg(BuildCommand::getDefaultTaxonomyFile()),
                      QStringLiteral("FILE")});
    parser.addOption({{QStringLiteral("q"), QStringLiteral("quiet")}, QStringLiteral("Shows no progress.")});
}

int UpdateTaxonomyCommand::execute(const QCommandLineParser& parser)
{
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() > 1)
        return usage(QStringLiteral("too many arguments"));
    const QString archive = arguments.value(0);
    if (!archive.isEmpty() && (!QFileInfo(archive).isFile() || !QFileInfo(archive).isReadable()))
        return fail(QStringLiteral("cannot read %1").arg(archive));
    const QString taxonomy = parser.isSet(QStringLiteral("taxonomy")) ? parser.value(QStringLiteral("taxonomy"))
                                                                      : BuildCommand::getDefaultTaxonomyFile();
    if (taxonomy.isEmpty())
        return fail(BuildCommand::noDataFolderMessage());
    // Replacing a chart with the taxonomy would lose the user's chart.
    const Zem::Ncbi::TaxonomyCache before(taxonomy);
    if (before.isCounted())
        return fail(QStringLiteral("%1 is a counted chart, not a taxonomy").arg(taxonomy));
    // A damaged cache is replaced; a file that is no database at all is someone else's.
    if (before.exists() && !before.isUsable() && QFileInfo(taxonomy).size() > 0) {
        QFile file(taxonomy);
        if (!file.open(QIODevice::ReadOnly) || !file.read(16).startsWith("SQLite format 3"))
            return fail(QStringLiteral("%1 is not a taxonomy cache; it is left as it is").arg(taxonomy));
    }

    Viewer::BuildNcbiPiechartAsyncTask task;
    task.setTaxonomyOnly(true);
    task.setNcbiOntologyFile(taxonomy);
    task.setTaxonomyArchive(archive);
    ProgressBar bar(err, !parser.isSet(QStringLiteral("quiet")) && ::isatty(STDERR_FILENO));
    switch (TaskRunner::run(task, bar)) {
    case nu::AsyncTask::Cancelled:
        return interrupted();
    case nu::AsyncTask::Failed: {
        const QString detail = task.getErrorDetail();
        return fail(task.getErrorMessage() + (detail.isEmpty() ? QString() : QStringLiteral(": ") + detail));
    }
    default:
        break;
    }
    const Zem::Ncbi::TaxonomyCache after(taxonomy);
    const auto retired = Zem::Ncbi::TaxonomyChanges::count(taxonomy);
    out << taxonomy << ": " << after.getCreated().toString(Qt::ISODate) << ", from " << after.getOrigin() << ", "
        << retired.first << " merged and " << retired.second << " deleted taxon ids\n";
    out.flush();
    return Success;
}

} // namespace Cli
} // namespace Sorvik
