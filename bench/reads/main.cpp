// Writes the read inputs that go with a dump from sorvik-bench-taxdump: READS taxon ids drawn
// Zipf-like over the leaves of the taxonomy (1 % of them ids the taxonomy does not know), as
//   reads.taxids         one id per line
//   reads.taxid-counts   id, TAB, count per line
//   reads.mgtaxa         an MG-Taxa prediction table
//   reads.krona.txt      one line per counted taxon: its count and scientific-name path
//   reads.kreport        a Kraken-style report of the 2 000 most read taxa and their lineages
//   reads.metaphlan      the same taxa as a MetaPhlAn profile
//   reads.kraken         Kraken 2 per-read output of KRAKEN_READS reads (1.3 GB for 10 million)
//
//   sorvik-bench-reads DUMPDIR OUTDIR [READS [EXPONENT [SEED [KRAKEN_READS]]]]
//                                             (defaults 1000000, 1.02, 7, 10000000; 0 writes none)

#include "classifieroutputs.h"

#include <QCoreApplication>
#include <QDir>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

bool readFile(const QString& path, std::string& text)
{
    FILE* file = std::fopen(QFile::encodeName(path).constData(), "rb");
    if (!file)
        return false;
    std::fseek(file, 0, SEEK_END);
    text.resize(static_cast<size_t>(std::ftell(file)));
    std::fseek(file, 0, SEEK_SET);
    const bool ok = std::fread(&text[0], 1, text.size(), file) == text.size();
    std::fclose(file);
    return ok;
}

bool writeFile(const QString& path, const std::string& text)
{
    FILE* file = std::fopen(QFile::encodeName(path).constData(), "wb");
    if (!file)
        return false;
    const bool ok = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    return std::fclose(file) == 0 && ok;
}

// The fields of a dump row, split at TAB, bar, TAB.
std::vector<std::string> fields(const char* begin, const char* end)
{
    std::vector<std::string> result;
    const char* start = begin;
    for (const char* p = begin; p + 2 < end; ++p) {
        if (p[0] == '\t' && p[1] == '|' && p[2] == '\t') {
            result.emplace_back(start, p);
            start = p + 3;
            p += 2;
        }
    }
    const char* last = end;
    if (last - start >= 2 && last[-2] == '\t' && last[-1] == '|')
        last -= 2;
    result.emplace_back(start, last);
    return result;
}

template <typename Row>
void eachRow(const std::string& text, Row row)
{
    const char* p = text.data();
    const char* end = p + text.size();
    while (p < end) {
        const char* newline = static_cast<const char*>(std::memchr(p, '\n', size_t(end - p)));
        const char* lineEnd = newline ? newline : end;
        row(p, lineEnd);
        p = lineEnd + 1;
    }
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 3) {
        std::fprintf(stderr, "usage: sorvik-bench-reads DUMPDIR OUTDIR [READS [EXPONENT [SEED]]]\n");
        return 2;
    }
    const QDir dump(args.at(1));
    const QDir out(args.at(2));
    QDir().mkpath(out.absolutePath());
    const int reads = args.size() > 3 ? args.at(3).toInt() : 1000000;
    const double exponent = args.size() > 4 ? args.at(4).toDouble() : 1.02;
    std::mt19937_64 random(args.size() > 5 ? args.at(5).toULongLong() : 7);
    const long long krakenReads = args.size() > 6 ? args.at(6).toLongLong() : 10000000;

    std::string text;
    if (!readFile(dump.absoluteFilePath(QStringLiteral("nodes.dmp")), text)) {
        std::fprintf(stderr, "cannot read nodes.dmp in %s\n", qPrintable(dump.absolutePath()));
        return 1;
    }
    std::vector<int> ids;
    std::vector<int> parentIds;
    int maxId = 0;
    eachRow(text, [&](const char* begin, const char* end) {
        const auto f = fields(begin, end);
        if (f.size() < 2)
            return;
        ids.push_back(std::atoi(f[0].c_str()));
        parentIds.push_back(std::atoi(f[1].c_str()));
        maxId = std::max(maxId, ids.back());
    });
    std::vector<int> indexOf(size_t(maxId) + 1, -1);
    for (size_t i = 0; i < ids.size(); ++i)
        indexOf[size_t(ids[i])] = int(i);
    std::vector<int> parent(ids.size(), -1);
    std::vector<bool> hasChild(ids.size(), false);
    for (size_t i = 0; i < ids.size(); ++i) {
        const int p = parentIds[i] >= 0 && parentIds[i] <= maxId ? indexOf[size_t(parentIds[i])] : -1;
        parent[i] = p == int(i) ? -1 : p;
        if (parent[i] >= 0)
            hasChild[size_t(parent[i])] = true;
    }

    if (!readFile(dump.absoluteFilePath(QStringLiteral("names.dmp")), text)) {
        std::fprintf(stderr, "cannot read names.dmp in %s\n", qPrintable(dump.absolutePath()));
        return 1;
    }
    std::vector<std::string> names(ids.size());
    eachRow(text, [&](const char* begin, const char* end) {
        const auto f = fields(begin, end);
        if (f.size() < 4 || f[3] != "scientific name")
            return;
        const int id = std::atoi(f[0].c_str());
        if (id >= 0 && id <= maxId && indexOf[size_t(id)] >= 0)
            names[size_t(indexOf[size_t(id)])] = f[1];
    });
    std::string().swap(text);

    // Zipf-like over the leaves in a random order.
    std::vector<int> leaves;
    for (size_t i = 0; i < ids.size(); ++i) {
        if (!hasChild[i] && parent[i] >= 0)
            leaves.push_back(int(i));
    }
    std::shuffle(leaves.begin(), leaves.end(), random);
    std::vector<double> cumulative(leaves.size());
    double sum = 0;
    for (size_t r = 0; r < leaves.size(); ++r) {
        sum += 1.0 / std::pow(double(r + 1), exponent);
        cumulative[r] = sum;
    }
    std::uniform_real_distribution<double> uniform(0.0, sum);
    std::uniform_real_distribution<double> chance(0.0, 1.0);
    const auto draw = [&]() {
        if (chance(random) < 0.01)
            return 900000000 + std::uniform_int_distribution<int>(0, 99999)(random);
        const auto at = std::lower_bound(cumulative.begin(), cumulative.end(), uniform(random));
        return ids[size_t(leaves[size_t(std::min<long>(at - cumulative.begin(), long(leaves.size()) - 1))])];
    };
    std::vector<int> drawn(static_cast<size_t>(reads));
    std::map<int, long long> counts;
    for (int& id : drawn) {
        id = draw();
        ++counts[id];
    }

    std::string taxids;
    std::string mgtaxa = "id\tlen\ttaxid\tname\trank\tweight\n";
    char line[256];
    for (size_t i = 0; i < drawn.size(); ++i) {
        const int id = drawn[i];
        std::snprintf(line, sizeof line, "%d\n", id);
        taxids += line;
        const int index = id <= maxId ? indexOf[size_t(id)] : -1;
        std::snprintf(line, sizeof line, "read%zu\t%d\t%d\t%s\tspecies\t1.0\n", i, 800 + int(i % 700), id,
                      index >= 0 ? names[size_t(index)].c_str() : "unknown");
        mgtaxa += line;
    }
    std::string taxidCounts;
    std::string krona;
    long long kronaLines = 0;
    std::vector<int> path;
    for (const auto& entry : counts) {
        std::snprintf(line, sizeof line, "%d\t%lld\n", entry.first, entry.second);
        taxidCounts += line;
        const int index = entry.first <= maxId ? indexOf[size_t(entry.first)] : -1;
        if (index < 0)
            continue;
        path.clear();
        for (int node = index; node >= 0 && parent[size_t(node)] >= 0 && path.size() < 1000; node = parent[size_t(node)])
            path.push_back(node);
        krona += std::to_string(entry.second);
        for (auto it = path.rbegin(); it != path.rend(); ++it)
            krona += '\t' + names[size_t(*it)];
        krona += '\n';
        ++kronaLines;
    }

    if (!writeFile(out.absoluteFilePath(QStringLiteral("reads.taxids")), taxids)
        || !writeFile(out.absoluteFilePath(QStringLiteral("reads.taxid-counts")), taxidCounts)
        || !writeFile(out.absoluteFilePath(QStringLiteral("reads.mgtaxa")), mgtaxa)
        || !writeFile(out.absoluteFilePath(QStringLiteral("reads.krona.txt")), krona)) {
        std::fprintf(stderr, "cannot write into %s\n", qPrintable(out.absolutePath()));
        return 1;
    }
    BenchTaxonomy taxonomy{ids, parent, names};
    std::map<int, long long> reported(counts);
    reported[0] = reads / 4;
    if (!writeReports(out.absoluteFilePath(QStringLiteral("reads.kreport")).toStdString(),
                      out.absoluteFilePath(QStringLiteral("reads.metaphlan")).toStdString(), taxonomy, reported, 2000)) {
        std::fprintf(stderr, "cannot write the reports into %s\n", qPrintable(out.absolutePath()));
        return 1;
    }
    if (krakenReads > 0
        && !writeKrakenReads(out.absoluteFilePath(QStringLiteral("reads.kraken")).toStdString(), krakenReads, draw, random)) {
        std::fprintf(stderr, "cannot write reads.kraken into %s\n", qPrintable(out.absolutePath()));
        return 1;
    }
    std::printf("%d reads over %zu leaves: %zu distinct ids, %lld Krona lines\n", reads, leaves.size(), counts.size(),
                kronaLines);
    return 0;
}
