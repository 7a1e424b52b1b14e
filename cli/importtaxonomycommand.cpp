#include "cli/importtaxonomycommand.h"

#include "cli/interruption.h"
#include "cli/progressbar.h"
#include "ontology/taxonomybuilder.h"
#include "ontology/ontology.h"
#include "ontology/taxonomydatabase.h"

#include <QFileInfo>
#include <QTextStream>

#include <unistd.h>

namespace Sorvik {
namespace Cli {

QString ImportTaxonomyCommand::getName() const
{
    return QStringLiteral("import-taxonomy");
}

QString ImportTaxonomyCommand::getSummary() const
{
    return QStringLiteral("Imports an NCBI taxdmp.zip as the taxonomy that NCBI-based charts are counted against.");
}

void ImportTaxonomyCommand::setUp(QCommandLineParser& parser)
{
    parser.addPositionalArgument(QStringLiteral("ARCHIVE"), QStringLiteral("The NCBI taxonomy dump (taxdmp.zip)."));
    parser.addOption({{QStringLiteral("o"), QStringLiteral("output")}, QStringLiteral("The taxonomy file to write."),
                      QStringLiteral("OUT")});
    parser.addOption({{QStringLiteral("q"), QStringLiteral("quiet")}, QStringLiteral("Shows no progress.")});
}

int ImportTaxonomyCommand::execute(const QCommandLineParser& parser)
{
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != 1)
        return usage(arguments.isEmpty() ? QStringLiteral("missing ARCHIVE") : QStringLiteral("too many arguments"));
    const QString output = parser.value(QStringLiteral("output"));
    if (output.isEmpty())
        return usage(QStringLiteral("missing -o OUT"));
    const QString archive = arguments.first();
    if (!QFileInfo(archive).isFile() || !QFileInfo(archive).isReadable())
        return fail(QStringLiteral("cannot read %1").arg(archive));

    Interruption interruption;
    ProgressBar bar(err, !parser.isSet(QStringLiteral("quiet")) && ::isatty(STDERR_FILENO));
    try {
        Zem::Ncbi::TaxonomyDatabase database(archive);
        bar.update(0, 0, 4, QStringLiteral("Unpacking ") + QFileInfo(archive).fileName());
        database.open();
        Zem::Ncbi::TaxonomyBuilder builder(output);
        builder.addDump(database, QFileInfo(archive).absoluteFilePath());
        builder.setCancelCheck(&Interruption::isRequested);
        bar.follow(builder, QStringLiteral("Building ontology..."), 3);
        builder.load();
        if (builder.getRoot() && builder.getRoot()->children.empty()) {
            bar.finish();
            return fail(QStringLiteral("Pie chart couldn't be generated: %1 gives no taxa below the root "
                                       "(no taxon in nodes.dmp has the root as its ancestor)")
                            .arg(archive));
        }
        builder.build();
        bar.finish();
        const int left = builder.getNodeNumber() - Zem::Ontology::Ontology(output).getNodeNumber();
        if (left > 0) {
            err << "sorvik-cli " << getName() << ": note: " << left
                << " ids are not linked to the root (their parents are missing) and are left out\n";
            err.flush();
        }
    } catch (const Zem::Ontology::Builder::CancelledException&) {
        bar.finish();
        return interrupted();
    } catch (const std::exception& e) {
        bar.finish();
        if (Interruption::isRequested())
            return interrupted();
        return fail(QStringLiteral("Pie chart couldn't be generated: %1").arg(QString::fromUtf8(e.what())));
    }
    return Success;
}

} // namespace Cli
} // namespace Sorvik
