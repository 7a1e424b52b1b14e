// Feeds the readers of user files inputs built to exhaust memory, and prints each one's time and
// peak memory: a 2 GB file of one line (through a pipe, so nothing that size lands on disk), a
// gzip file that unpacks to 1 GB of one line, and a Krona path 100 000 levels deep, counted,
// written and read back. Each case runs in a process of its own, so its peak is its own.
//
//   sorvik-bench-hostile FOLDER        (FOLDER holds the generated files and outputs)
#include "nu/linereader.h"
#include "ontology/buildersource.h"
#include "ontology/ontology.h"
#include "ontology/reader.h"
#include "ontology/sourcebcp.h"
#include "ontology/sourcefrequencies.h"
#include "ontology/sourcekronatext.h"
#include "ontology/sourcemgtaxatext.h"
#include "ontology/sourceqiimetext.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTextStream>

#include <sys/resource.h>
#include <zlib.h>

#include <cstdio>
#include <memory>

namespace {

using namespace Zem::Ontology;

constexpr qint64 oneLineBytes = qint64(2) * 1024 * 1024 * 1024;
constexpr int deepLevels = 100000;

std::unique_ptr<Source> makeSource(const QString& format, const QString& file)
{
    if (format == QLatin1String("krona") || format == QLatin1String("deep-krona"))
        return std::make_unique<SourceKronaText>(file);
    if (format == QLatin1String("qiime"))
        return std::make_unique<SourceQiimeText>(file, 0);
    if (format == QLatin1String("mgtaxa"))
        return std::make_unique<SourceMgtaxaText>(file);
    if (format == QLatin1String("taxids") || format == QLatin1String("taxid-counts"))
        return std::make_unique<SourceFrequencies>(file, format == QLatin1String("taxids") ? 1 : 2);
    auto dump = std::make_unique<SourceBcp>(file);
    dump->fieldSeparator = QStringLiteral("\t|\t");
    dump->rowTerminator = QStringLiteral("\t|\n");
    dump->finalTerminator = QStringLiteral("\t|");
    dump->columns.insert(1, SourceBcp::parentKey);
    return dump;
}

class CountingReader : public Reader
{
public:
    using Reader::Reader;
    void openNode(const QString&, const QVariantMap&, const Position&) override { ++nodes; }
    void closeNode(const QString&, const QVariantMap&) override {}
    int nodes = 0;
};

// One case, in this process: what it gave, in a few words.
QString runCase(const QString& format, const QString& input, const QString& output)
{
    try {
        if (format == QLatin1String("lines")) {
            nu::LineReader lines(input);
            qint64 tooLong = 0;
            qint64 count = 0;
            while (lines.next()) {
                ++count;
                tooLong += lines.isTooLong() ? 1 : 0;
            }
            return QStringLiteral("%1 lines, %2 too long").arg(count).arg(tooLong);
        }
        auto source = makeSource(format, input);
        const Source& reader = *source;
        BuilderSource builder(output);
        builder.addSource(std::move(source));
        builder.load();
        QString result = QStringLiteral("%1 nodes, %2 lines skipped").arg(builder.getNodeNumber()).arg(reader.getLinesSkipped());
        if (format == QLatin1String("deep-krona")) {
            builder.count(false);
            builder.build();
            CountingReader read{Ontology(output)};
            read.read();
            result += QStringLiteral(", %1 read back").arg(read.nodes);
        }
        return result;
    } catch (const std::exception& e) {
        return QStringLiteral("refused: ") + QString::fromUtf8(e.what());
    }
}

bool writeGzipOfOneLine(const QString& fileName, qint64 bytes)
{
    gzFile out = gzopen(QFile::encodeName(fileName).constData(), "wb1");
    if (!out)
        return false;
    const QByteArray block(1 << 20, 'A');
    for (qint64 written = 0; written < bytes; written += block.size())
        gzwrite(out, block.constData(), unsigned(block.size()));
    gzwrite(out, "\n5\tB\n", 5);
    return gzclose(out) == Z_OK;
}

bool writeDeepKrona(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QByteArray line("1");
    for (int i = 0; i < deepLevels; ++i)
        line += "\tL" + QByteArray::number(i);
    return file.write(line + '\n') == line.size() + 1;
}

void measure(const QString& label, const QString& format, const QString& input, const QString& output, qint64 pipeBytes)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer timer;
    timer.start();
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--case"), format, pipeBytes > 0 ? QStringLiteral("/dev/stdin") : input, output});
    child.waitForStarted();
    if (pipeBytes > 0) {
        // One line of pipeBytes bytes, then a good line after it.
        const QByteArray block(1 << 20, 'A');
        bool open = true;
        for (qint64 sent = 0; open && sent < pipeBytes; sent += block.size()) {
            child.write(block);
            // A reader that gives up early closes the pipe.
            while (open && child.bytesToWrite() > (4 << 20))
                open = child.waitForBytesWritten(-1);
        }
        if (open) {
            child.write("\n5\tB\n");
            child.waitForBytesWritten(-1);
        }
        child.closeWriteChannel();
    }
    child.waitForFinished(-1);
    const QStringList answer = QString::fromUtf8(child.readAllStandardOutput()).trimmed().split(QLatin1Char('|'));
    std::printf("%-34s %8.1f %10s   %s\n", qPrintable(label), timer.elapsed() / 1000.0, qPrintable(answer.value(0)),
                qPrintable(answer.value(1)));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.size() == 5 && arguments.at(1) == QLatin1String("--case")) {
        const QString result = runCase(arguments.at(2), arguments.at(3), arguments.at(4));
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        std::printf("%ld|%s\n", usage.ru_maxrss / 1024, qPrintable(result));
        return 0;
    }
    if (arguments.size() != 2) {
        std::fprintf(stderr, "usage: sorvik-bench-hostile FOLDER\n");
        return 2;
    }
    const QDir folder(arguments.at(1));
    folder.mkpath(QStringLiteral("."));
    const QString output = folder.filePath(QStringLiteral("hostile.ontology"));
    const QString bomb = folder.filePath(QStringLiteral("one-line-1GB.gz"));
    const QString deep = folder.filePath(QStringLiteral("deep.krona.txt"));
    if (!QFile::exists(bomb) && !writeGzipOfOneLine(bomb, qint64(1) << 30))
        return 1;
    if (!writeDeepKrona(deep))
        return 1;

    std::printf("%-34s %8s %10s   %s\n", "case (limit: 1024 MB)", "time (s)", "peak (MB)", "result");
    for (const char* format : {"lines", "krona", "qiime", "taxids", "taxid-counts", "mgtaxa", "dump"})
        measure(QStringLiteral("2 GB line, piped: ") + format, QString::fromLatin1(format), QString(), output, oneLineBytes);
    for (const char* format : {"lines", "krona", "taxids"})
        measure(QStringLiteral("1 GB line, gzip: ") + format, QString::fromLatin1(format), bomb, output, 0);
    measure(QStringLiteral("100 000-level Krona path"), QStringLiteral("deep-krona"), deep, output, 0);
    return 0;
}
