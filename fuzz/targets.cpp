#include "fuzz/targets.h"

#include "editor/scene.h"
#include "nu/database.h"
#include "nu/jsondatafile.h"
#include "nu/linereader.h"
#include "nu/parser/bcp.h"
#include "ontology/buildersource.h"
#include "ontology/chartsamples.h"
#include "ontology/inputformat.h"
#include "ontology/inputsample.h"
#include "ontology/ontology.h"
#include "ontology/reader.h"
#include "ontology/rootreader.h"
#include "ontology/sourcebcp.h"
#include "ontology/sourcechart.h"
#include "ontology/sourcefrequencies.h"
#include "ontology/sourcekronatext.h"
#include "ontology/sourcemgtaxatext.h"
#include "ontology/sourceontology.h"
#include "ontology/sourceqiimetext.h"
#include "ontology/taxonomydatabase.h"

#include <QBuffer>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTextStream>

#include <quazip/quazip.h>
#include <quazip/quazipfile.h>
#include <zlib.h>

#include <functional>
#include <map>

namespace Sorvik {
namespace Fuzz {

namespace {

using namespace Zem::Ontology;

// The folder every input is written to and every output goes, for the life of the process.
const QDir& workFolder()
{
    static QTemporaryDir folder(QDir::tempPath() + QStringLiteral("/sorvik-fuzz-XXXXXX"));
    static const QDir dir(folder.path());
    return dir;
}

QString writeInput(const QByteArray& data, const QString& name)
{
    const QString path = workFolder().filePath(name);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(data);
    return path;
}

QString outputFile()
{
    return workFolder().filePath(QStringLiteral("out.ontology"));
}

// Loads the sources and counts what they gave, as a build does before writing.
void load(std::vector<std::unique_ptr<Source>> sources, bool write = false)
{
    BuilderSource builder(outputFile());
    for (auto& source : sources)
        builder.addSource(std::move(source));
    try {
        builder.load();
        if (!builder.getRoot())
            return;
        builder.count(true);
        if (write)
            builder.build();
    } catch (const Builder::Exception&) {
    } catch (const nu::LineReader::ReadException&) {
    } catch (const nu::parser::BCP::RowTooLongException&) {
    }
}

std::vector<std::unique_ptr<Source>> one(std::unique_ptr<Source> source)
{
    std::vector<std::unique_ptr<Source>> sources;
    sources.push_back(std::move(source));
    return sources;
}

void runFrequencies(const QByteArray& data)
{
    // The length's parity picks one or two columns, so both modes see every kind of input.
    load(one(std::make_unique<SourceFrequencies>(writeInput(data, QStringLiteral("ids.txt")), 1 + data.size() % 2)));
}

void runMgtaxa(const QByteArray& data)
{
    load(one(std::make_unique<SourceMgtaxaText>(writeInput(data, QStringLiteral("mgtaxa.txt")))));
}

void runKrona(const QByteArray& data)
{
    load(one(std::make_unique<SourceKronaText>(writeInput(data, QStringLiteral("krona.txt")))));
}

void runQiime(const QByteArray& data)
{
    const QString file = writeInput(data, QStringLiteral("qiime.txt"));
    const QStringList columns = SourceQiimeText::readColumnNames(file);
    load(one(std::make_unique<SourceQiimeText>(file, columns.isEmpty() ? 0 : data.size() % columns.size(), 10000.0)));
}

void runBcp(const QByteArray& data)
{
    // The dump's own layout: nodes link under their parents, names go through the row filter.
    const QString file = writeInput(data, QStringLiteral("nodes.dmp"));
    auto makeSource = [&file](const QString& key) {
        auto source = std::make_unique<SourceBcp>(file);
        source->fieldSeparator = QStringLiteral("\t|\t");
        source->rowTerminator = QStringLiteral("\t|\n");
        source->finalTerminator = QStringLiteral("\t|");
        source->columns.insert(1, key);
        return source;
    };
    std::vector<std::unique_ptr<Source>> sources;
    sources.push_back(makeSource(SourceBcp::parentKey));
    auto names = makeSource(QStringLiteral("scientific name"));
    names->rowFilter.setPattern(QStringLiteral("^([^\t]*\t\\|\t){3}scientific name"));
    sources.push_back(std::move(names));
    load(std::move(sources));

    // And the row reader alone with its default delimiters and a tiny read size.
    QString text = QString::fromUtf8(data);
    QTextStream stream(&text, QIODevice::ReadOnly);
    nu::parser::BCP rows(stream);
    rows.setBufferSize(1 + data.size() % 40);
    try {
        while (rows.next())
            rows.get(rows.getFieldCount() % 4);
    } catch (const nu::parser::BCP::RowTooLongException&) {
    }
}

const QByteArray smallNodes("1\t|\t1\t|\tno rank\t|\n2\t|\t1\t|\tsuperkingdom\t|\n562\t|\t2\t|\tspecies\t|\n");

// A ZIP archive of the entries (name, content), written as given.
bool writeZip(const QString& fileName, const QList<QPair<QString, QByteArray>>& entries)
{
    QuaZip zip(fileName);
    if (!zip.open(QuaZip::mdCreate))
        return false;
    for (const auto& entry : entries) {
        QuaZipFile out(&zip);
        if (!out.open(QIODevice::WriteOnly, QuaZipNewInfo(entry.first)))
            return false;
        out.write(entry.second);
    }
    zip.close();
    return zip.getZipError() == 0;
}

void runTaxdump(const QByteArray& data)
{
    // "entry", a line, then a name and its content: an archive made around them, so that any
    // entry name (absolute, "..", odd bytes) reaches the unpacking, not only broken archives.
    QString archive;
    if (data.startsWith("entry\n")) {
        const QByteArray rest = data.mid(6);
        const int end = rest.indexOf('\n');
        archive = workFolder().filePath(QStringLiteral("made.zip"));
        const QString name = QString::fromUtf8(rest.left(end < 0 ? rest.size() : end));
        if (!writeZip(archive, {{QStringLiteral("nodes.dmp"), smallNodes}, {name, end < 0 ? QByteArray() : rest.mid(end + 1)}}))
            return;
    } else {
        archive = writeInput(data, QStringLiteral("taxdmp.zip"));
    }
    Zem::Ncbi::TaxonomyDatabase database(archive);
    try {
        database.open();
    } catch (const Zem::Ncbi::TaxonomyDatabase::Exception&) {
        return;
    }
    load(database.getSources(), true);
}

void runChartFile(const QByteArray& data)
{
    const QString file = writeInput(data, QStringLiteral("chart.pie"));
    Edit::Scene::ItemManager manager;
    Edit::Scene scene(manager);
    try {
        scene.loadFromFile(Edit::Scene::getFileInfo(file));
    } catch (const nu::JsonDataFile::Exception&) {
        return;
    }
    // What the editor does with a loaded chart: draw it, and save it again.
    QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    scene.render(&painter);
    painter.end();
    manager.toJson();
}

class CountingReader : public Reader
{
public:
    using Reader::Reader;
    void openNode(const QString&, const QVariantMap& data, const Position&) override { values += data.size(); }
    void closeNode(const QString&, const QVariantMap&) override {}
    int values = 0;
};

// "rows", a line, then one row per line (id, TAB, its number of children, TAB, its data): an
// ontology file made of them, so that the reader meets any nesting and any data text, not only
// damaged databases.
QString writeRowsOntology(const QByteArray& rows)
{
    const QString file = workFolder().filePath(QStringLiteral("rows.ontology"));
    QFile::remove(file);
    nu::database::Connection connection(QStringLiteral("fuzz-rows"), file, false);
    if (!connection.open())
        return file;
    QSqlDatabase db = connection.getDatabase();
    QSqlQuery query(db);
    db.transaction();
    query.exec(QStringLiteral("CREATE TABLE nodes( id TEXT, count INTEGER, data TEXT)"));
    query.exec(QStringLiteral("CREATE TABLE info( key TEXT PRIMARY KEY, value TEXT)"));
    query.prepare(QStringLiteral("INSERT INTO nodes (id, count, data) VALUES (?, ?, ?)"));
    int inserted = 0;
    for (const QByteArray& row : rows.split('\n')) {
        const QList<QByteArray> fields = row.split('\t');
        query.bindValue(0, QString::fromUtf8(fields.value(0)));
        query.bindValue(1, fields.value(1).toInt());
        query.bindValue(2, QString::fromUtf8(fields.mid(2).join('\t')));
        inserted += query.exec() ? 1 : 0;
    }
    query.exec(QStringLiteral("INSERT INTO info VALUES ('nodes', '%1'), ('counted', 'true')").arg(inserted));
    query.finish();
    db.commit();
    return file;
}

void runOntology(const QByteArray& data)
{
    const QString file =
        data.startsWith("rows\n") ? writeRowsOntology(data.mid(5)) : writeInput(data, QStringLiteral("chart.ontology"));
    try {
        const Zem::Ontology::Ontology ontology(file);
        RootReader::read(ontology);
        CountingReader reader(ontology);
        reader.read();
    } catch (const Zem::Ontology::Ontology::Exception&) {
        return;
    } catch (const Reader::OntologyOpenException&) {
    } catch (const Reader::QueryExecutionException&) {
    } catch (const Reader::InvalidEndException&) {
    }
    // A chart copied into a new one, as the NCBI build copies the taxonomy; the ontology's and
    // the reader's own exceptions pass through the source.
    try {
        load(one(std::make_unique<SourceOntology>(file)));
    } catch (const Reader::OntologyOpenException&) {
    } catch (const Reader::QueryExecutionException&) {
    } catch (const Reader::InvalidEndException&) {
    }
}

// A chart of two samples whose second sample's counts are the input, after its first byte: the
// samples table read as merging reads it. The first byte alone is also the number of rows the
// counts are decoded against.
void runSamples(const QByteArray& data)
{
    try {
        ChartSamples::decode(data.mid(1), data.isEmpty() ? 0 : quint8(data.at(0)));
    } catch (const ChartSamples::InvalidFormatException&) {
    }
    const QString chart = workFolder().filePath(QStringLiteral("samples.ontology"));
    QFile::remove(chart);
    {
        BuilderSource builder(chart);
        builder.addSample(QStringLiteral("a"), std::make_unique<SourceKronaText>(writeInput(
                                                   "3\tBacteria\tFirmicutes\n5\tBacteria\n", QStringLiteral("a.krona"))));
        builder.addSample(QStringLiteral("b"),
                          std::make_unique<SourceKronaText>(writeInput("2\tArchaea\n", QStringLiteral("b.krona"))));
        builder.load();
        builder.count(false);
        builder.build();
    }
    {
        nu::database::Connection connection(QStringLiteral("fuzz-samples"), chart, false);
        if (!connection.open())
            return;
        QSqlQuery query(connection.getDatabase());
        query.prepare(QStringLiteral("UPDATE samples SET counts = ? WHERE sample = 1"));
        query.bindValue(0, data.mid(1));
        query.exec();
    }
    try {
        BuilderSource merged(outputFile());
        SourceChart(chart, std::make_shared<SourceChart::Keys>()).read(merged);
        merged.count(false);
        merged.build();
    } catch (const ChartSamples::InvalidFormatException&) {
    }
}

QByteArray gzip(const QByteArray& data)
{
    z_stream z{};
    if (deflateInit2(&z, Z_BEST_SPEED, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK)
        return QByteArray();
    QByteArray out(int(deflateBound(&z, uLong(data.size()))), Qt::Uninitialized);
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.constData()));
    z.avail_in = uInt(data.size());
    z.next_out = reinterpret_cast<Bytef*>(out.data());
    z.avail_out = uInt(out.size());
    deflate(&z, Z_FINISH);
    out.resize(int(z.total_out));
    deflateEnd(&z);
    return out;
}

void runLineReader(const QByteArray& data)
{
    // An odd first byte has the rest compressed first, so that the inflater sees whole streams
    // of any text as well as the damaged ones the mutations make.
    QByteArray input = data;
    if (!data.isEmpty() && (data.at(0) & 1))
        input = gzip(data.mid(1));
    QBuffer buffer(&input);
    buffer.open(QIODevice::ReadOnly);
    nu::LineReader lines(buffer);
    lines.setMaxLineLength(1 + data.size() % 300);
    try {
        qint64 characters = 0;
        while (lines.next())
            characters += lines.isTooLong() ? 0 : lines.getLine().size();
        (void)characters;
    } catch (const nu::LineReader::ReadException&) {
    }
}

// The classifier formats, read as the format table makes their sources, unclassified reads
// kept or not by the input's length.
void runFormat(const QString& word, const QByteArray& data)
{
    const InputFormat* format = InputFormat::find(word);
    InputFormat::Options options;
    options.keepUnclassified = data.size() % 2 == 0;
    load(one(format->makeSource(writeInput(data, word + QStringLiteral(".txt")), options)));
}

// The tables of samples: their column names, then a few columns read as the build of several
// samples reads them, one source per column sharing one reading of the file.
void runSampleTable(const QString& word, const QByteArray& data)
{
    const InputFormat* format = InputFormat::find(word);
    const QString input = writeInput(data, word + QStringLiteral(".txt"));
    const int columns = int(format->readColumns(input).size());
    std::vector<std::unique_ptr<Source>> sources;
    for (int column : {0, columns - 1, columns + 1}) {
        InputFormat::Options options;
        options.column = column;
        options.keepUnclassified = data.size() % 2 == 0;
        sources.push_back(format->makeSource(input, options));
    }
    for (std::unique_ptr<Source>& source : sources)
        load(one(std::move(source)));
}

// Telling the format of a file: every format's check on the same sample.
void runDetect(const QByteArray& data)
{
    const InputSample sample(writeInput(data, QStringLiteral("unknown.txt")));
    QStringList whyNot;
    InputFormat::detect(sample, &whyNot);
}

const std::map<QString, std::function<void(const QByteArray&)>>& targets()
{
    static std::map<QString, std::function<void(const QByteArray&)>> all{
        {QStringLiteral("frequencies"), runFrequencies}, {QStringLiteral("mgtaxa"), runMgtaxa},
        {QStringLiteral("krona"), runKrona},             {QStringLiteral("qiime"), runQiime},
        {QStringLiteral("bcp"), runBcp},                 {QStringLiteral("taxdump"), runTaxdump},
        {QStringLiteral("chartfile"), runChartFile},     {QStringLiteral("ontology"), runOntology},
        {QStringLiteral("linereader"), runLineReader},   {QStringLiteral("samples"), runSamples},
        {QStringLiteral("detect"), runDetect},
    };
    static const bool formats = [] {
        for (const char* word : {"kreport", "bracken", "metaphlan", "kraken-reads", "kaiju", "centrifuge"}) {
            const QString name = QLatin1String(word);
            all.emplace(name, [name](const QByteArray& data) { runFormat(name, data); });
        }
        return true;
    }();
    (void)formats;
    static const bool tables = [] {
        for (const char* word : {"kreport-combined", "metaphlan-merged", "bracken-combined"}) {
            const QString name = QLatin1String(word);
            all.emplace(name, [name](const QByteArray& data) { runSampleTable(name, data); });
        }
        return true;
    }();
    (void)tables;
    return all;
}

bool writeZip(const QString& fileName, const QDir& dumps)
{
    QList<QPair<QString, QByteArray>> entries;
    for (const QString& name : dumps.entryList({QStringLiteral("*.dmp")}, QDir::Files)) {
        QFile in(dumps.filePath(name));
        if (!in.open(QIODevice::ReadOnly))
            return false;
        entries.append({name, in.read(16 * 1024)});
    }
    return writeZip(fileName, entries);
}

void writeSeed(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    if (file.open(QIODevice::WriteOnly))
        file.write(content);
}

void writeOntologySeeds(const QDir& folder)
{
    writeSeed(folder.filePath(QStringLiteral("rows-tree")),
              "rows\nroot\t2\t{\"accumCount\":\"6\",\"count\":\"0\"}\np1\t1\t{\"count\":\"1\",\"name\":\"A\"}\n"
              "p2\t0\t{\"count\":\"2\",\"name\":\"B\"}\np3\t0\t{\"count\":\"3\",\"name\":\"C\"}");
    writeSeed(folder.filePath(QStringLiteral("rows-chain")), "rows\nr\t1\t{}\na\t1\t{}\nb\t1\t{}\nc\t0\t{}");
    const QStringList krona{QStringLiteral("3\tBacteria\tFirmicutes\n5\tBacteria\n1\n"),
                            QStringLiteral("2\ta\tb\tc\td\te\tf\n7\tg\n")};
    int number = 0;
    for (const QString& text : krona) {
        for (bool counted : {true, false}) {
            const QString input = writeInput(text.toUtf8(), QStringLiteral("seed.krona"));
            BuilderSource builder(folder.filePath(QStringLiteral("chart-%1.ontology").arg(++number)));
            builder.addSource(std::make_unique<SourceKronaText>(input));
            builder.load();
            if (counted)
                builder.count(false);
            builder.build();
        }
    }
}

} // namespace

QStringList getTargetNames()
{
    QStringList names;
    for (const auto& target : targets())
        names << target.first;
    return names;
}

bool run(const QString& target, const QByteArray& data)
{
    const auto found = targets().find(target);
    if (found == targets().end())
        return false;
    found->second(data);
    return true;
}

void writeSeeds(const QString& target, const QString& folderName)
{
    const QDir folder(folderName);
    if (target == QLatin1String("ontology")) {
        writeOntologySeeds(folder);
    } else if (target == QLatin1String("samples")) {
        // Counts of rows 0, 1 and 3 of a chart of four rows, and of none.
        writeSeed(folder.filePath(QStringLiteral("entries")), QByteArray("\x04\x01\x02\x05\x01\x02\x00\x02\x03\x00", 10));
        writeSeed(folder.filePath(QStringLiteral("empty")), QByteArray("\x04", 1));
    } else if (target == QLatin1String("bcp")) {
        writeSeed(folder.filePath(QStringLiteral("small.dmp")),
                  smallNodes + "562\t|\tEscherichia coli\t|\t\t|\tscientific name\t|\n562\t|\tE. coli\t|\t\t|\tsynonym\t|");
    } else if (target == QLatin1String("taxdump")) {
        // Every pair of dumps beside the checkout, each as a taxdmp.zip of its own.
        const QString real = QStringLiteral(SORVIK_SOURCE_DIR "/../shared/data/real");
        QDirIterator it(real, {QStringLiteral("nodes.dmp")}, QDir::Files, QDirIterator::Subdirectories);
        int number = 0;
        while (it.hasNext())
            writeZip(folder.filePath(QStringLiteral("taxdmp-%1.zip").arg(++number)), QFileInfo(it.next()).dir());
        writeZip(folder.filePath(QStringLiteral("taxdmp-small.zip")), {{QStringLiteral("nodes.dmp"), smallNodes}});
        writeSeed(folder.filePath(QStringLiteral("entry-names")),
                  "entry\nnames.dmp\n562\t|\tEscherichia coli\t|\t\t|\tscientific name\t|\n");
        writeSeed(folder.filePath(QStringLiteral("entry-outside")), "entry\n../outside.dmp\n1\t|\t1\t|\n");
    }
}

} // namespace Fuzz
} // namespace Sorvik
