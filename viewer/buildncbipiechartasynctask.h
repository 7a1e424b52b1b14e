#pragma once

#include "nu/asynctask.h"
#include "ontology/buildreport.h"

#include <QMutex>
#include <QString>
#include <QUrl>

#include <atomic>
#include <exception>
#include <memory>

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
// counted with trimming and written to the target. A cancelled or failed run deletes the target,
// and the taxonomy too when this run downloaded it.
class BuildNcbiPiechartAsyncTask : public nu::AsyncTask
{
    Q_OBJECT
public:
    class DownloadFailedException : public std::exception
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
    void setWriterCommitSize(int size);
    void setDownloadUrl(const QUrl& url);
    // Milliseconds without data after which the download fails; 0 waits for ever.
    void setDownloadStallTimeout(int milliseconds);

    // Why the task failed, in words (the error message says only what failed); may be empty.
    QString getErrorDetail() const;
    // What the chart step read from the input and could not use; complete once the task has
    // finished.
    Zem::Ontology::BuildReport getReport() const;
    // Whether this run downloaded the taxonomy.
    bool hasDownloaded() const { return downloaded; }

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
    void prepareBuilder(Zem::Ontology::BuilderSource& builder);
    void runDownloadStep();
    void runNcbiOntologyStep();
    void runPiechartStep();
    void setErrorDetail(const QString& detail);
    // Unclassified reads count beside the taxonomy, in a slice of the root's.
    static void placeUnclassified(Zem::Ontology::BuilderSource& builder);
    // The input's report, with the reads of ids the taxonomy does not hold.
    void keepReport(const Zem::Ontology::BuilderSource& builder);

    QString ncbiOntologyFile;
    QString targetFile = QStringLiteral("target.piechart");
    std::unique_ptr<Zem::Ontology::Source> source;
    int writerCommitSize = 10000;
    int step = 0;
    // Made and destroyed on the task's thread; the mutex lets a cancellation reach it.
    std::unique_ptr<nu::FileDownloader> downloader;
    mutable QMutex downloaderMutex;
    QUrl downloadUrl;
    int stallTimeout = defaultDownloadStallTimeout;
    std::atomic<bool> downloaded{false};
    // File positions beyond the range of an int are shown scaled down by this many bits.
    int positionShift = 0;
    mutable QMutex detailMutex;
    QString errorDetail;
    Zem::Ontology::BuildReport report;
};

} // namespace Viewer
} // namespace Sorvik
