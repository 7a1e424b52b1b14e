#include "cli/infocommand.h"

#include "ontology/chartsamples.h"
#include "ontology/nodekeys.h"
#include "ontology/ontology.h"
#include "ontology/rootreader.h"
#include "ontology/taxonplacement.h"

#include <QTextStream>

namespace Sorvik {
namespace Cli {

QString InfoCommand::getName() const
{
    return QStringLiteral("info");
}

QString InfoCommand::getSummary() const
{
    return QStringLiteral("Prints the node number, counted flag, root and total of an ontology file, and of a "
                          "chart its unknown and unclassified reads (of its first sample) and its samples with "
                          "their totals.");
}

void InfoCommand::setUp(QCommandLineParser& parser)
{
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("An ontology or chart file."));
}

void InfoCommand::printPlacedReads(const Zem::Ontology::Ontology& ontology)
{
    // The reads the taxonomy could not place and those no classifier could: the root's
    // "unknown" and "unclassified" children, 0 when there are none.
    qint64 unknown = 0;
    qint64 unclassified = 0;
    for (const auto& child : Zem::Ontology::RootReader::readChildren(ontology)) {
        const qint64 reads = child.data.value(Zem::Ontology::NodeKey::accumCount).toString().toLongLong();
        if (child.id == Zem::Ncbi::TaxonPlacement::unknownId)
            unknown += reads;
        else if (child.id == Zem::Ncbi::TaxonPlacement::unclassifiedId)
            unclassified += reads;
    }
    out << "unknown: " << unknown << '\n' << "unclassified: " << unclassified << '\n';
}

QStringList InfoCommand::listSamples(const Zem::Ontology::Ontology& ontology)
{
    using Zem::Ontology::ChartSamples;
    QStringList lines;
    const std::vector<ChartSamples::Stored> samples = ChartSamples::read(ontology);
    if (samples.empty())
        return lines;
    lines << QStringLiteral("samples: %1").arg(samples.size());
    for (const ChartSamples::Stored& sample : samples) {
        const auto entries = ChartSamples::decode(sample.counts, ontology.getNodeNumber());
        const qint64 total = !entries.empty() && entries.front().row == 0 ? entries.front().total : 0;
        lines << QStringLiteral("sample: %1\t%2").arg(sample.name).arg(total);
    }
    return lines;
}

int InfoCommand::execute(const QCommandLineParser& parser)
{
    const QStringList files = parser.positionalArguments();
    if (files.size() != 1)
        return usage(files.isEmpty() ? QStringLiteral("missing FILE") : QStringLiteral("too many arguments"));
    const QString& file = files.first();

    try {
        const Zem::Ontology::Ontology ontology(file);
        const QStringList samples = listSamples(ontology);
        const auto node = Zem::Ontology::RootReader::read(ontology);
        const QString& root = node.id;
        const QString total = node.data.value(Zem::Ontology::NodeKey::accumCount).toString();
        out << "nodes: " << ontology.getNodeNumber() << '\n'
            << "counted: " << (ontology.isCounted() ? "true" : "false") << '\n'
            << "root: " << root << '\n'
            << "total: " << total << '\n';
        if (ontology.isCounted())
            printPlacedReads(ontology);
        for (const QString& line : samples)
            out << line << '\n';
        out.flush();
        return Success;
    } catch (const std::exception& e) {
        return fail(file + QLatin1String(": ") + QString::fromUtf8(e.what()));
    }
}

} // namespace Cli
} // namespace Sorvik
