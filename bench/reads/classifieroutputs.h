#pragma once

#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

// The taxonomy of a generated dump, as the read generator has it: node i has the taxon id
// ids[i], the parent parent[i] (-1 for the root) and the name names[i].
struct BenchTaxonomy
{
    std::vector<int> ids;
    std::vector<int> parent;
    std::vector<std::string> names;
};

// Writes Kraken 2 per-read output of the given number of reads: one read in five unclassified,
// the others of a taxon drawn by draw() (a taxon id), with read ids, lengths (paired reads
// half the time) and k-mer hit lists as Kraken writes them, about 130 bytes a read. Streams to
// the file; false when it cannot be written.
bool writeKrakenReads(const std::string& path, long long reads, const std::function<int()>& draw, std::mt19937_64& random);

// Writes a Kraken-style report and a MetaPhlAn profile of about rows taxa: the most read taxa
// of counts (taxon id to reads) with their lineages, clade reads summed up the tree; false
// when a file cannot be written.
bool writeReports(const std::string& kreportPath, const std::string& metaphlanPath, const BenchTaxonomy& taxonomy,
                  const std::map<int, long long>& counts, int rows);
