#include "cli/infocommand.h"

#include "ontology/ontology.h"
#include "ontology/reader.h"

#include <QTextStream>

namespace Sorvik {
namespace Cli {

namespace {

// Reads only the first row of the file: the root.
class RootReader : public Zem::Ontology::Reader
{
public:
    using Reader::Reader;

    Node readRoot() { return readNode(); }
    void openNode(const QString&, const QVariantMap&, const Position&) override {}
    void closeNode(const QString&, const QVariantMap&) override {}
};

} // namespace

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
        QString root;
        QString total;
        if (ontology.getNodeNumber() > 0) {
            RootReader reader(ontology);
            const auto node = reader.readRoot();
            root = node.id;
            total = node.data.value(QStringLiteral("accumCount")).toString();
        }
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
