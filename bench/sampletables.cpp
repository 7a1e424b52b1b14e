// Reading a table of many samples: one column at a time, as the build of several samples reads
// it, and all of them into one chart.
//
// Usage: bench_sample_tables [samples] [taxa]        (default 200 samples, 20 000 taxa)
// Generates combined Kraken-style reports and a merged MetaPhlAn table of that size, then times
// the first column (which reads the file for all), a later column, and the chart of all samples.

#include "ontology/buildersource.h"
#include "ontology/inputformat.h"
#include "ontology/source.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>

#include <functional>
#include <vector>

using namespace Zem::Ontology;

namespace {

QTextStream& out()
{
    static QTextStream stream(stdout);
    return stream;
}

void timed(const QString& what, const std::function<void()>& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    out() << QStringLiteral("%1: %2 ms").arg(what, -46).arg(timer.elapsed()) << Qt::endl;
}

// A tree of taxa four levels deep, every sample holding reads of about a third of the leaves.
void writeKreports(const QString& fileName, int samples, int taxa)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return;
    QRandomGenerator random(7);
    const int leaves = taxa - taxa / 8;
    std::vector<std::vector<qint64>> reads(size_t(leaves), std::vector<qint64>(size_t(samples), 0));
    for (auto& leaf : reads) {
        for (qint64& count : leaf)
            count = random.bounded(3) == 0 ? random.bounded(1, 500) : 0;
    }
    QByteArray header = "perc\ttot_all\ttot_lvl";
    for (int s = 1; s <= samples; ++s)
        header += "\t" + QByteArray::number(s) + "_all\t" + QByteArray::number(s) + "_lvl";
    file.write(header + "\tlvl_type\ttaxid\tname\n");
    const int groups = taxa / 8;
    const int perGroup = leaves / std::max(1, groups);
    for (int g = 0; g < groups; ++g) {
        QByteArray row = "1.0\t0\t0";
        for (int s = 0; s < samples; ++s) {
            qint64 sum = 0;
            for (int l = g * perGroup; l < (g + 1) * perGroup; ++l)
                sum += reads[size_t(l)][size_t(s)];
            row += "\t" + QByteArray::number(sum) + "\t0";
        }
        file.write(row + "\tG\t" + QByteArray::number(100000 + g) + "\tgenus " + QByteArray::number(g) + "\n");
        for (int l = g * perGroup; l < (g + 1) * perGroup; ++l) {
            QByteArray leaf = "0.1\t0\t0";
            for (int s = 0; s < samples; ++s) {
                const QByteArray count = QByteArray::number(reads[size_t(l)][size_t(s)]);
                leaf += "\t" + count + "\t" + count;
            }
            file.write(leaf + "\tS\t" + QByteArray::number(200000 + l) + "\t  species " + QByteArray::number(l) + "\n");
        }
    }
}

void writeMetaphlan(const QString& fileName, int samples, int clades)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return;
    QRandomGenerator random(11);
    QByteArray header = "#mpa_v30_CHOCOPhlAn_201901\nclade_name\tNCBI_tax_id";
    for (int s = 1; s <= samples; ++s)
        header += "\tsample_" + QByteArray::number(s);
    file.write(header + "\n");
    for (int c = 0; c < clades; ++c) {
        QByteArray row = "k__Bacteria|p__P" + QByteArray::number(c % 40) + "|s__S" + QByteArray::number(c) + "\t2||"
                         + QByteArray::number(c);
        for (int s = 0; s < samples; ++s)
            row += random.bounded(3) == 0 ? QByteArray("\t0.0") + QByteArray::number(random.bounded(1, 999)) : QByteArray("\t0");
        file.write(row + "\n");
    }
}

std::vector<std::unique_ptr<Source>> sourcesOf(const QString& word, const QString& fileName, int samples)
{
    std::vector<std::unique_ptr<Source>> sources;
    for (int s = 0; s < samples; ++s) {
        InputFormat::Options options;
        options.column = s;
        sources.push_back(InputFormat::find(word)->makeSource(fileName, options));
    }
    return sources;
}

void measure(const QString& word, const QString& input, const QTemporaryDir& folder, int samples)
{
    out() << word << QStringLiteral(" (%1 MB)").arg(QFileInfo(input).size() / 1e6, 0, 'f', 1) << Qt::endl;
    {
        std::vector<std::unique_ptr<Source>> sources = sourcesOf(word, input, samples);
        int n = 0;
        const auto readOne = [&](size_t s) {
            BuilderSource builder(folder.filePath(QStringLiteral("one%1.piechart").arg(++n)));
            builder.addSource(std::move(sources[s]));
            builder.load();
        };
        timed(QStringLiteral("  first column (reads the table)"), [&] { readOne(0); });
        timed(QStringLiteral("  second column"), [&] { readOne(1); });
        timed(QStringLiteral("  the other %1 columns").arg(samples - 2), [&] {
            for (size_t s = 2; s < sources.size(); ++s)
                readOne(s);
        });
    }
    timed(QStringLiteral("  chart of all %1 samples").arg(samples), [&] {
        BuilderSource builder(folder.filePath(QStringLiteral("all-%1.piechart").arg(word)));
        std::vector<std::unique_ptr<Source>> sources = sourcesOf(word, input, samples);
        for (int s = 0; s < samples; ++s)
            builder.addSample(QStringLiteral("S%1").arg(s + 1), std::move(sources[size_t(s)]));
        builder.load();
        builder.count(true);
        builder.build();
    });
    const qint64 bytes = QFileInfo(folder.filePath(QStringLiteral("all-%1.piechart").arg(word))).size();
    out() << QStringLiteral("  chart file: %1 MB").arg(bytes / 1e6, 0, 'f', 1) << Qt::endl;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const int samples = argc > 1 ? QString::fromLatin1(argv[1]).toInt() : 200;
    const int taxa = argc > 2 ? QString::fromLatin1(argv[2]).toInt() : 20000;
    const QTemporaryDir folder;
    const QString kreports = folder.filePath(QStringLiteral("combined.kreport"));
    const QString metaphlan = folder.filePath(QStringLiteral("merged.txt"));
    timed(QStringLiteral("generating"), [&] {
        writeKreports(kreports, samples, taxa);
        writeMetaphlan(metaphlan, samples, taxa / 10);
    });
    measure(QStringLiteral("kreport-combined"), kreports, folder, samples);
    measure(QStringLiteral("metaphlan-merged"), metaphlan, folder, samples);
    return 0;
}
