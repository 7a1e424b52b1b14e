// Writes a synthetic NCBI taxonomy dump of full size in the real format: nodes.dmp and
// names.dmp (sorted by taxon id, sparse ids, parents often larger than their children,
// heavy-tailed fan-out, depth up to 40, several name classes with exactly one scientific name per
// taxon), merged.dmp and delnodes.dmp (retired ids, none of them a taxon's id; merged ones point
// at taxa), zipped as taxdmp.zip.
//
//   sorvik-bench-taxdump OUTDIR [TAXA [NAMES [SEED [MERGED [DELETED]]]]]
//                                         (defaults 2700000, 5000000, 1, 80000, 500000)

#include <QCoreApplication>
#include <QDir>
#include <QStringList>

#include <quazip/JlCompress.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace {

const char* const ranks[] = {"superkingdom", "kingdom", "phylum", "class", "order", "family", "genus", "species",
                             "subspecies", "strain", "no rank", "clade", "subfamily", "tribe", "subgenus"};
const char* const otherClasses[] = {"synonym", "genbank common name", "common name", "authority", "includes",
                                    "equivalent name", "type material", "misspelling", "blast name", "in-part",
                                    "acronym", "genbank synonym", "misnomer", "unpublished name"};
const char* const syllables[] = {"ba", "cte", "ri", "um", "lo", "coc", "cus", "stre", "pto", "my", "ces", "la",
                                 "cto", "ba", "cil", "lus", "fir", "mi", "cu", "tes", "pro", "te", "o", "ar",
                                 "chae", "vi", "rus", "ne", "ma", "to", "da", "phy", "ta", "rho", "do", "spi"};

std::string word(std::mt19937_64& random, int syllableCount, bool capital)
{
    std::string text;
    std::uniform_int_distribution<int> pick(0, int(std::size(syllables)) - 1);
    for (int i = 0; i < syllableCount; ++i)
        text += syllables[pick(random)];
    if (capital && !text.empty())
        text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text;
}

std::string name(std::mt19937_64& random, bool binomial)
{
    std::uniform_int_distribution<int> length(2, 5);
    std::string text = word(random, length(random), true);
    if (binomial)
        text += ' ' + word(random, length(random), false);
    return text;
}

bool writeFile(const QString& path, const std::string& text)
{
    FILE* file = std::fopen(QFile::encodeName(path).constData(), "wb");
    if (!file)
        return false;
    const bool ok = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    return std::fclose(file) == 0 && ok;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: sorvik-bench-taxdump OUTDIR [TAXA [NAMES [SEED]]]\n");
        return 2;
    }
    const QDir out(args.at(1));
    QDir().mkpath(out.absolutePath());
    const int taxa = args.size() > 2 ? args.at(2).toInt() : 2700000;
    const long long namesWanted = args.size() > 3 ? args.at(3).toLongLong() : 5000000;
    const unsigned long long seed = args.size() > 4 ? args.at(4).toULongLong() : 1;
    const int mergedWanted = args.size() > 5 ? args.at(5).toInt() : 80000;
    const int deletedWanted = args.size() > 6 ? args.at(6).toInt() : 500000;
    std::mt19937_64 random(seed);

    // The tree, built node by node in creation order: preferential attachment gives a few
    // parents with very many children, uniform picks spread the rest, and now and then a
    // chain grows deep.
    std::vector<int> parent(taxa, 0);
    std::vector<unsigned char> depth(taxa, 0);
    std::vector<int> targets;
    targets.reserve(size_t(taxa) * 2);
    targets.push_back(0);
    std::uniform_real_distribution<double> chance(0.0, 1.0);
    // A few thousand early taxa are hubs, picked Zipf-like: the largest get tens of thousands of
    // children, as NCBI's biggest genera and "environmental samples" do.
    const int hubs = std::min(2000, std::max(1, taxa / 100));
    std::vector<double> hubWeights(size_t(hubs), 0.0);
    for (int i = 0; i < hubs; ++i)
        hubWeights[size_t(i)] = (i > 0 ? hubWeights[size_t(i) - 1] : 0.0) + 1.0 / (i + 1);
    for (int node = 1; node < taxa; ++node) {
        const double c = chance(random);
        int p;
        if (c < 0.12 && node > hubs) {
            const double at = std::uniform_real_distribution<double>(0.0, hubWeights.back())(random);
            p = 1 + int(std::lower_bound(hubWeights.begin(), hubWeights.end(), at) - hubWeights.begin()) % (hubs - 1);
        } else if (c < 0.55)
            p = targets[std::uniform_int_distribution<size_t>(0, targets.size() - 1)(random)];
        else if (c < 0.74)
            p = std::uniform_int_distribution<int>(0, node - 1)(random);
        else
            p = node - 1;
        while (depth[p] >= 40)
            p = parent[p];
        parent[node] = p;
        depth[node] = static_cast<unsigned char>(depth[p] + 1);
        targets.push_back(p);
        targets.push_back(node);
    }
    std::vector<int>().swap(targets);

    // Sparse ids, dealt out at random so parents are as often larger as smaller than children.
    std::vector<int> ids(taxa);
    ids[0] = 1;
    // The numbers the gaps leave out: retired ids are taken from them.
    std::vector<int> unused;
    {
        std::vector<int> pool(taxa - 1);
        int id = 1;
        std::geometric_distribution<int> gap(0.8);
        for (int& value : pool) {
            const int skip = gap(random);
            for (int k = 1; k <= skip; ++k)
                unused.push_back(id + k);
            id += 1 + skip;
            value = id;
        }
        for (int extra = 1; int(unused.size()) < mergedWanted + deletedWanted; ++extra)
            unused.push_back(id + extra);
        std::shuffle(pool.begin(), pool.end(), random);
        std::copy(pool.begin(), pool.end(), ids.begin() + 1);
    }
    std::vector<int> order(taxa);
    for (int i = 0; i < taxa; ++i)
        order[i] = i;
    std::sort(order.begin(), order.end(), [&ids](int a, int b) { return ids[a] < ids[b]; });

    // Names: one scientific name per taxon plus other classes, heavy on some taxa.
    std::vector<int> extra(taxa, 0);
    const long long others = std::max(0LL, namesWanted - taxa);
    for (long long i = 0; i < others; ++i) {
        const int node = std::uniform_real_distribution<double>(0, 1)(random) < 0.5
            ? std::uniform_int_distribution<int>(0, taxa - 1)(random)
            : std::uniform_int_distribution<int>(0, std::max(0, taxa / 20))(random);
        ++extra[node];
    }

    std::string nodes;
    std::string names;
    nodes.reserve(size_t(taxa) * 80);
    names.reserve(size_t(namesWanted) * 60);
    char line[512];
    for (int node : order) {
        const int id = ids[node];
        const int parentId = node == 0 ? 1 : ids[parent[node]];
        const char* rank = node == 0 ? "no rank" : ranks[std::min<int>(depth[node] / 3, int(std::size(ranks)) - 1)];
        std::snprintf(line, sizeof line, "%d\t|\t%d\t|\t%s\t|\t%s\t|\t%d\t|\t1\t|\t11\t|\t1\t|\t0\t|\t1\t|\t%d\t|\t0\t|\t\t|\n",
                      id, parentId, rank, depth[node] > 6 ? "XX" : "", depth[node] % 12, depth[node] > 8 ? 1 : 0);
        nodes += line;

        // The scientific name is not always the first row of its taxon.
        const int rows = 1 + extra[node];
        const int scientificAt = std::uniform_int_distribution<int>(0, rows - 1)(random);
        const bool binomial = depth[node] > 6;
        for (int row = 0; row < rows; ++row) {
            const std::string text = node == 0 ? std::string("root") : name(random, binomial);
            const bool scientific = row == scientificAt;
            const char* nameClass = scientific ? "scientific name"
                                               : otherClasses[std::uniform_int_distribution<int>(0, int(std::size(otherClasses)) - 1)(random)];
            const std::string unique = scientific && chance(random) < 0.01 ? text + " <" + word(random, 2, false) + ">" : std::string();
            std::snprintf(line, sizeof line, "%d\t|\t%s\t|\t%s\t|\t%s\t|\n", id, text.c_str(), unique.c_str(), nameClass);
            names += line;
        }
    }

    // Retired ids, from a generator of their own so the tree stays that of the seed. Each file
    // is sorted by id, as NCBI's are.
    std::mt19937_64 retiring(seed + 1);
    std::shuffle(unused.begin(), unused.end(), retiring);
    std::vector<int> mergedIds(unused.begin(), unused.begin() + mergedWanted);
    std::vector<int> deletedIds(unused.begin() + mergedWanted, unused.begin() + mergedWanted + deletedWanted);
    std::vector<int>().swap(unused);
    std::sort(mergedIds.begin(), mergedIds.end());
    std::sort(deletedIds.begin(), deletedIds.end());
    std::string merged;
    std::string deleted;
    merged.reserve(size_t(mergedWanted) * 20);
    deleted.reserve(size_t(deletedWanted) * 12);
    for (int old : mergedIds) {
        const int target = ids[std::uniform_int_distribution<int>(1, taxa - 1)(retiring)];
        std::snprintf(line, sizeof line, "%d\t|\t%d\t|\n", old, target);
        merged += line;
    }
    for (int id : deletedIds) {
        std::snprintf(line, sizeof line, "%d\t|\n", id);
        deleted += line;
    }

    const QString nodesFile = out.absoluteFilePath(QStringLiteral("nodes.dmp"));
    const QString namesFile = out.absoluteFilePath(QStringLiteral("names.dmp"));
    const QString mergedFile = out.absoluteFilePath(QStringLiteral("merged.dmp"));
    const QString deletedFile = out.absoluteFilePath(QStringLiteral("delnodes.dmp"));
    if (!writeFile(nodesFile, nodes) || !writeFile(namesFile, names) || !writeFile(mergedFile, merged)
        || !writeFile(deletedFile, deleted)) {
        std::fprintf(stderr, "cannot write the dump files into %s\n", qPrintable(out.absolutePath()));
        return 1;
    }
    std::string().swap(nodes);
    std::string().swap(names);
    const QString zip = out.absoluteFilePath(QStringLiteral("taxdmp.zip"));
    QFile::remove(zip);
    if (!JlCompress::compressFiles(zip, {nodesFile, namesFile, mergedFile, deletedFile})) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(zip));
        return 1;
    }
    int maxDepth = 0;
    for (unsigned char d : depth)
        maxDepth = std::max<int>(maxDepth, d);
    std::printf("%s: %d taxa, %lld names rows, %d merged and %d deleted ids, depth up to %d\n", qPrintable(zip), taxa,
                taxa + others, mergedWanted, deletedWanted, maxDepth);
    return 0;
}
