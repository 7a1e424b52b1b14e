#pragma once

#include "nu/asynctask.h"
#include "ontology/buildreport.h"

#include <QMutex>
#include <QString>
#include <QUrl>

#include <atomic>
#include <exception>
#include <memory>
#include <utility>
#include <vector>

namespace nu {
class FileDownloader;
}

namespace Zem {
namespace Ontology {
class BuilderSource;
class Source;
} // namespace Ontology
} // namespace Zem

namespace Sorvik {
namespace Viewer {

// Turns a taxon-id list or MG-Taxa file into a counted chart file on its own thread. The NCBI
// taxonomy is kept between runs as an uncounted ontology file: when it is missing (or damaged),
// the dump archive is downloaded and imported first. Then the taxonomy and the input are merged,
// every read the tree does not place is placed (merged ids under their new ids, the rest under
// "unknown"), and the whole is counted with trimming and written to the target. Both files are
// written under a temporary name and take their own only when complete, so a cancelled or failed
// run leaves the earlier chart and cache as they were and deletes nothing.
//
// With setTaxonomyOnly, a run only makes the taxonomy anew (downloaded, or from an archive the
// user has), and swaps it in for the old one once it is complete: the taxonomy update.
class BuildNcbiPiechartAsyncTask : public nu::AsyncTask
{
    Q_OBJECT
public:
    class DownloadFailedException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };
    // The input holds no reads at all, and an empty chart was not wanted.
    class EmptyChartException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };

    static const char* const defaultDownloadAddress;
    // Milliseconds without data after which a download gives up, unless set otherwise.
    static constexpr int defaultDownloadStallTimeout = 120000;
    // SORVIK_TAXDUMP_URL when set (a mirror, or a test server), else NCBI's own server.
    static QUrl getDefaultDownloadUrl();

    explicit BuildNcbiPiechartAsyncTask(QObject* parent = nullptr);
    ~BuildNcbiPiechartAsyncTask() override;

    void setNcbiOntologyFile(const QString& fileName);
    QString getNcbiOntologyFile() const { return ncbiOntologyFile; }
    void setTargetFile(const QString& fileName);
    QString getTargetFile() const { return targetFile; }
    // The user's input; the task owns it until the chart step hands it to its builder.
    void setSource(std::unique_ptr<Zem::Ontology::Source> input);
    // Or several samples, each a name and its input (made by InputFormat::makeSource): one chart
    // of them all, each input's reads placed in the taxonomy on their own.
    void addSample(const QString& name, std::unique_ptr<Zem::Ontology::Source> input);
    void setWriterCommitSize(int size);
    void setDownloadUrl(const QUrl& url);
    QUrl getDownloadUrl() const { return downloadUrl; }
    // Makes the taxonomy anew, whether there is one or not, and nothing else.
    void setTaxonomyOnly(bool only);
    // The dump archive to import instead of downloading one.
    void setTaxonomyArchive(const QString& fileName);
    // Whether a chart that counts nothing is written (the default) or the run fails before the
    // target is touched, so that an earlier chart there stays.
    void setKeepEmptyChart(bool keep);
    // Milliseconds without data after which the download fails; 0 waits for ever.
    void setDownloadStallTimeout(int milliseconds);

    // Why the task failed, in words (the error message says only what failed); may be empty.
    QString getErrorDetail() const;
    // What the chart step read from the input and could not use; complete once the task has
    // finished.
    Zem::Ontology::BuildReport getReport() const;
    // Whether this run downloaded the taxonomy.
    bool hasDownloaded() const { return downloaded; }
    // Whether this run made the taxonomy anew.
    bool hasImported() const { return imported; }

public slots:
    void slotSetCancelled() override;

protected:
    void run() override;

private slots:
    void slotSourceReadingStart(int index, const QString& description);
    void slotCountingStart(int total);
    void slotBuildingStart(int total);
    void slotNodesCounted(int counted);
    void slotNodesInserted(int inserted);
    void slotSourceCurrentPos(qint64 position);
    void slotSourceTotalSize(qint64 total);
    void slotDownloadProgress(qint64 received, qint64 total);

private:
    bool shouldContinue() const;
    bool isCachedTaxonomyUsable() const;
    void advanceStep();
    int chartSteps() const;
    void prepareBuilder(Zem::Ontology::BuilderSource& builder);
    void runDownloadStep();
    void runNcbiOntologyStep();
    void runPiechartStep();
    // Places the reads the taxonomy's tree does not (merged, unknown and unclassified ids) and
    // says where they went.
    Zem::Ontology::BuildReport placeTaxa(Zem::Ontology::BuilderSource& builder);
    void setErrorDetail(const QString& detail);
    // The input's report, with where the taxonomy's tree did not place reads.
    void keepReport(const Zem::Ontology::BuilderSource& builder, const Zem::Ontology::BuildReport& placed);

    QString ncbiOntologyFile;
    QString targetFile = QStringLiteral("target.piechart");
    std::vector<std::pair<QString, std::unique_ptr<Zem::Ontology::Source>>> samples;
    int writerCommitSize = 10000;
    int step = 0;
    // Made and destroyed on the task's thread; the mutex lets a cancellation reach it.
    std::unique_ptr<nu::FileDownloader> downloader;
    mutable QMutex downloaderMutex;
    QUrl downloadUrl;
    int stallTimeout = defaultDownloadStallTimeout;
    std::atomic<bool> downloaded{false};
    std::atomic<bool> imported{false};
    bool taxonomyOnly = false;
    bool keepEmptyChart = true;
    QString taxonomyArchive;
    // File positions beyond the range of an int are shown scaled down by this many bits.
    int positionShift = 0;
    mutable QMutex detailMutex;
    QString errorDetail;
    Zem::Ontology::BuildReport report;
};

} // namespace Viewer
} // namespace Sorvik
