// Times the ontology store on a taxonomy of NCBI's size and shape.
//   bench_ontology_store write FILE [NODES]   build the tree in memory, then write it
//   bench_ontology_store read FILE            read the file back with a reader
// Each phase prints its wall time and the process's peak resident memory so far.
#include "ontology/builder.h"
#include "ontology/ontology.h"
#include "ontology/reader.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>

#include <random>
#include <sys/resource.h>
#include <vector>

namespace {

double peakMegabytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024.0;
}

void report(const char* phase, const QElapsedTimer& timer, const QString& extra = QString())
{
    QTextStream(stdout) << QStringLiteral("%1: %2 s, peak RSS %3 MB %4\n")
                               .arg(QLatin1String(phase))
                               .arg(timer.elapsed() / 1000.0, 0, 'f', 2)
                               .arg(peakMegabytes(), 0, 'f', 0)
                               .arg(extra);
}

// A tree shaped like the NCBI taxonomy: every new taxon walks down from the root, at each level
// following an existing child (the first children far more often: heavy-tailed fan-out) or
// stopping to attach there; depth is capped at 40.
void generate(Zem::Ontology::Builder& builder, int total)
{
    std::mt19937_64 random(20261121);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    struct Taxon
    {
        std::vector<int> children;
        int depth;
    };
    std::vector<Taxon> taxa;
    taxa.reserve(static_cast<size_t>(total));
    taxa.push_back({{}, 0});
    builder.addChild(QStringLiteral("1"), QStringLiteral("1"));
    builder.addData(QStringLiteral("1"), QStringLiteral("scientific name"), QStringLiteral("root"));
    auto idOf = [](int index) { return QString::number(index == 0 ? 1 : index * 3 + 7); };

    for (int i = 1; i < total; ++i) {
        int at = 0;
        while (taxa[at].depth < 39 && !taxa[at].children.empty() && uniform(random) < 0.93) {
            const auto& children = taxa[at].children;
            const double u = uniform(random);
            at = children[static_cast<size_t>(u * u * u * children.size())];
        }
        taxa[at].children.push_back(i);
        taxa.push_back({{}, taxa[at].depth + 1});
        const QString id = idOf(i);
        builder.addChild(idOf(at), id);
        builder.addData(id, QStringLiteral("scientific name"),
                        QStringLiteral("Taxon %1 sp. strain %2").arg(i).arg(i % 977));
    }
}

class NullReader : public Zem::Ontology::Reader
{
public:
    using Reader::Reader;
    void openNode(const QString&, const QVariantMap& data, const Position&) override
    {
        ++opened;
        bytes += data.size();
    }
    void closeNode(const QString&, const QVariantMap&) override {}
    qint64 opened = 0;
    qint64 bytes = 0;
};

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 3) {
        QTextStream(stderr) << "usage: bench_ontology_store write FILE [NODES] | read FILE\n";
        return 2;
    }
    const QString file = args.at(2);
    if (args.at(1) == QLatin1String("write")) {
        const int nodes = args.size() > 3 ? args.at(3).toInt() : 2700000;
        Zem::Ontology::Builder builder(file);
        QElapsedTimer timer;
        timer.start();
        generate(builder, nodes);
        report("build in memory", timer, QStringLiteral("(%1 nodes)").arg(builder.getNodeNumber()));
        timer.restart();
        builder.build();
        report("write", timer);
        return 0;
    }
    if (args.at(1) == QLatin1String("read")) {
        QElapsedTimer timer;
        timer.start();
        const Zem::Ontology::Ontology ontology(file);
        NullReader reader(ontology);
        reader.read();
        report("read back", timer, QStringLiteral("(%1 nodes)").arg(reader.opened));
        return 0;
    }
    return 2;
}
