#include "classifieroutputs.h"

#include <algorithm>
#include <cstdio>
#include <unordered_map>

namespace {

class Output
{
public:
    explicit Output(const std::string& path)
        : file(std::fopen(path.c_str(), "wb"))
    {
    }
    ~Output()
    {
        if (file)
            std::fclose(file);
    }
    void add(const std::string& text)
    {
        buffer += text;
        if (buffer.size() > (1 << 20))
            flush();
    }
    bool close()
    {
        flush();
        const bool ok = file && !failed && std::fclose(file) == 0;
        file = nullptr;
        return ok;
    }

private:
    void flush()
    {
        if (file && std::fwrite(buffer.data(), 1, buffer.size(), file) != buffer.size())
            failed = true;
        buffer.clear();
    }
    FILE* file;
    std::string buffer;
    bool failed = false;
};

// One mate's k-mer hits: runs of the read's taxon (or of no taxon, 0) that cover its k-mers.
std::string kmerHits(int taxid, int length, std::mt19937_64& random)
{
    int kmers = std::max(1, length - 34);
    if (taxid == 0)
        return "0:" + std::to_string(kmers);
    std::string hits;
    std::uniform_int_distribution<int> runs(8, 16);
    const int n = runs(random);
    for (int i = 0; i < n && kmers > 0; ++i) {
        const int left = n - i;
        const int run = left == 1 ? kmers : std::uniform_int_distribution<int>(1, std::max(1, std::min(kmers, 2 * kmers / left - 1)))(random);
        kmers -= run;
        if (!hits.empty())
            hits += ' ';
        // Now and then a k-mer of the root, as k-mers shared across the tree give.
        const int hit = i % 2 == 0 ? 0 : (i % 6 == 5 ? 1 : taxid);
        hits += std::to_string(hit) + ':' + std::to_string(run);
    }
    return hits;
}

} // namespace

bool writeKrakenReads(const std::string& path, long long reads, const std::function<int()>& draw, std::mt19937_64& random)
{
    Output out(path);
    std::uniform_real_distribution<double> chance(0.0, 1.0);
    std::uniform_int_distribution<int> length(100, 250);
    std::uniform_int_distribution<int> spot(1, 99999999);
    std::string line;
    for (long long i = 0; i < reads; ++i) {
        const bool classified = chance(random) >= 0.2;
        const int taxid = classified ? draw() : 0;
        line = classified ? "C\tSRR1305" : "U\tSRR1305";
        line += std::to_string(9288 + i % 7) + '.' + std::to_string(spot(random)) + '\t' + std::to_string(taxid) + '\t';
        if (chance(random) < 0.5) {
            line += "151|151\t" + kmerHits(taxid, 151, random) + " |:| " + kmerHits(taxid, 151, random);
        } else {
            const int n = length(random);
            line += std::to_string(n) + '\t' + kmerHits(taxid, n, random);
        }
        line += '\n';
        out.add(line);
    }
    return out.close();
}

namespace {

// The taxa a report shows and their clade reads.
struct ReportTree
{
    std::vector<int> nodes;                      // in the order they were chosen
    std::unordered_map<int, std::vector<int>> children;
    std::unordered_map<int, long long> own;
    std::unordered_map<int, long long> clade;
    std::unordered_map<int, int> depth;
    int root = -1;
};

ReportTree chooseTaxa(const BenchTaxonomy& taxonomy, const std::map<int, long long>& counts, int rows)
{
    std::unordered_map<int, int> indexOf;
    for (size_t i = 0; i < taxonomy.ids.size(); ++i)
        indexOf[taxonomy.ids[i]] = int(i);
    std::vector<std::pair<long long, int>> byReads;
    for (const auto& [taxid, reads] : counts) {
        const auto at = indexOf.find(taxid);
        if (at != indexOf.end())
            byReads.emplace_back(reads, at->second);
    }
    std::sort(byReads.rbegin(), byReads.rend());
    ReportTree tree;
    for (const auto& [reads, leaf] : byReads) {
        if (int(tree.nodes.size()) >= rows)
            break;
        tree.own[leaf] += reads;
        for (int node = leaf; node >= 0 && !tree.clade.count(node); node = taxonomy.parent[size_t(node)]) {
            tree.clade[node] = 0;
            tree.nodes.push_back(node);
            const int up = taxonomy.parent[size_t(node)];
            if (up >= 0)
                tree.children[up].push_back(node);
            else
                tree.root = node;
        }
        for (int node = leaf; node >= 0; node = taxonomy.parent[size_t(node)])
            tree.clade[node] += reads;
    }
    return tree;
}

const char* const rankCodes[] = {"R", "D", "K", "P", "C", "O", "F", "G", "S"};
const char* const prefixes[] = {"k__", "p__", "c__", "o__", "f__", "g__", "s__", "t__"};

std::string underscored(std::string name)
{
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

} // namespace

bool writeReports(const std::string& kreportPath, const std::string& metaphlanPath, const BenchTaxonomy& taxonomy,
                  const std::map<int, long long>& counts, int rows)
{
    ReportTree tree = chooseTaxa(taxonomy, counts, rows);
    if (tree.root < 0)
        return false;
    const auto unclassified = counts.find(0);
    const long long unclassifiedReads = unclassified == counts.end() ? 0 : unclassified->second;
    const double total = double(tree.clade[tree.root] + unclassifiedReads);
    char line[512];

    // Depth first, the larger clades first, as Kraken writes it.
    Output kreport(kreportPath);
    std::snprintf(line, sizeof line, "%6.2f\t%lld\t%lld\tU\t0\tunclassified\n", 100.0 * double(unclassifiedReads) / total,
                  unclassifiedReads, unclassifiedReads);
    kreport.add(line);
    std::vector<std::pair<int, int>> stack{{tree.root, 0}};
    while (!stack.empty()) {
        const auto [node, depth] = stack.back();
        stack.pop_back();
        tree.depth[node] = depth;
        const std::string rank = depth < 9 ? rankCodes[depth] : "S" + std::to_string(depth - 8);
        std::snprintf(line, sizeof line, "%6.2f\t%lld\t%lld\t%s\t%d\t%s%s\n", 100.0 * double(tree.clade[node]) / total,
                      tree.clade[node], tree.own[node], rank.c_str(), taxonomy.ids[size_t(node)],
                      std::string(size_t(depth) * 2, ' ').c_str(), taxonomy.names[size_t(node)].c_str());
        kreport.add(line);
        auto& below = tree.children[node];
        std::sort(below.begin(), below.end(), [&tree](int a, int b) { return tree.clade[a] < tree.clade[b]; });
        for (const int child : below)
            stack.emplace_back(child, depth + 1);
    }

    // One row per clade, level by level as MetaPhlAn writes them, each holding its whole share.
    Output metaphlan(metaphlanPath);
    metaphlan.add("#mpa_vBench\n#SampleID\tMetaphlan_Analysis\n#clade_name\tNCBI_tax_id\trelative_abundance\tadditional_species\n");
    std::vector<int> byDepth(tree.nodes);
    std::stable_sort(byDepth.begin(), byDepth.end(), [&tree](int a, int b) { return tree.depth[a] < tree.depth[b]; });
    const double classified = double(tree.clade[tree.root]);
    for (const int node : byDepth) {
        if (node == tree.root)
            continue;
        std::vector<int> path;
        for (int up = node; up != tree.root; up = taxonomy.parent[size_t(up)])
            path.push_back(up);
        std::string names;
        std::string ids;
        for (auto it = path.rbegin(); it != path.rend(); ++it) {
            const size_t level = std::min<size_t>(size_t(it - path.rbegin()), 7);
            names += (names.empty() ? "" : "|") + std::string(prefixes[level]) + underscored(taxonomy.names[size_t(*it)]);
            ids += (ids.empty() ? "" : "|") + std::to_string(taxonomy.ids[size_t(*it)]);
        }
        std::snprintf(line, sizeof line, "\t%.5f\t\n", 100.0 * double(tree.clade[node]) / classified);
        metaphlan.add(names + '\t' + ids + line);
    }
    return kreport.close() && metaphlan.close();
}
