#include "cli/infocommand.h"

#include "ontology/nodekeys.h"
#include "ontology/ontology.h"
#include "ontology/rootreader.h"

#include <QTextStream>

namespace Sorvik {
namespace Cli {

QString InfoCommand::getName() const
{
    return QStringLiteral("info");
}

QString InfoCommand::getSummary() const
{
    return QStringLiteral("Prints the node number, counted flag, root and total of an ontology file.");
}

void InfoCommand::setUp(QCommandLineParser& parser)
{
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("An ontology or chart file."));
}

int InfoCommand::execute(const QCommandLineParser& parser)
{
    const QStringList files = parser.positionalArguments();
    if (files.size() != 1)
        return usage(files.isEmpty() ? QStringLiteral("missing FILE") : QStringLiteral("too many arguments"));
    const QString& file = files.first();

    try {
        const Zem::Ontology::Ontology ontology(file);
        const auto node = Zem::Ontology::RootReader::read(ontology);
        const QString& root = node.id;
        const QString total = node.data.value(Zem::Ontology::NodeKey::accumCount).toString();
        out << "nodes: " << ontology.getNodeNumber() << '\n'
            << "counted: " << (ontology.isCounted() ? "true" : "false") << '\n'
            << "root: " << root << '\n'
            << "total: " << total << '\n';
        out.flush();
        return Success;
    } catch (const std::exception& e) {
        return fail(file + QLatin1String(": ") + QString::fromUtf8(e.what()));
    }
}

} // namespace Cli
} // namespace Sorvik
