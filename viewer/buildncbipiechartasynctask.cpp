#include "viewer/buildncbipiechartasynctask.h"

#include "nu/filedownloader.h"
#include "ontology/buildersource.h"
#include "ontology/nodekeys.h"
#include "ontology/ontology.h"
#include "ontology/sourceontology.h"
#include "ontology/taxonomybuilder.h"
#include "ontology/taxonomycache.h"
#include "ontology/taxonomychanges.h"
#include "ontology/taxonomydatabase.h"
#include "ontology/taxonplacement.h"

#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>

#include <algorithm>
#include <climits>
#include <vector>

namespace Sorvik {
namespace Viewer {

using Zem::Ontology::BuilderSource;

const char* const BuildNcbiPiechartAsyncTask::defaultDownloadAddress =
    "https://ftp.ncbi.nlm.nih.gov/pub/taxonomy/taxdmp.zip";

const char* BuildNcbiPiechartAsyncTask::DownloadFailedException::what() const noexcept
{
    return "the NCBI taxonomy could not be downloaded";
}

const char* BuildNcbiPiechartAsyncTask::EmptyChartException::what() const noexcept
{
    return "no counted taxa in the input";
}

QUrl BuildNcbiPiechartAsyncTask::getDefaultDownloadUrl()
{
    const QString address = qEnvironmentVariable("SORVIK_TAXDUMP_URL");
    return QUrl(address.isEmpty() ? QString::fromLatin1(defaultDownloadAddress) : address);
}

BuildNcbiPiechartAsyncTask::BuildNcbiPiechartAsyncTask(QObject* parent)
    : nu::AsyncTask(parent)
    , downloadUrl(getDefaultDownloadUrl())
{
}

BuildNcbiPiechartAsyncTask::~BuildNcbiPiechartAsyncTask()
{
    // Nothing is deleted here: the builders write under temporary names and remove those
    // themselves, so the chart and the taxonomy are either complete or as they were before.
    if (isRunning()) {
        slotSetCancelled();
        wait();
    }
}

void BuildNcbiPiechartAsyncTask::setNcbiOntologyFile(const QString& fileName)
{
    ncbiOntologyFile = fileName;
}

void BuildNcbiPiechartAsyncTask::setTargetFile(const QString& fileName)
{
    targetFile = fileName;
}

void BuildNcbiPiechartAsyncTask::setSource(std::unique_ptr<Zem::Ontology::Source> input)
{
    samples.clear();
    addSample(QString(), std::move(input));
}

void BuildNcbiPiechartAsyncTask::addSample(const QString& name, std::unique_ptr<Zem::Ontology::Source> input)
{
    if (input)
        samples.emplace_back(name, std::move(input));
}

void BuildNcbiPiechartAsyncTask::setWriterCommitSize(int size)
{
    if (size > 0)
        writerCommitSize = size;
}

void BuildNcbiPiechartAsyncTask::setDownloadUrl(const QUrl& url)
{
    downloadUrl = url;
}

void BuildNcbiPiechartAsyncTask::setTaxonomyOnly(bool only)
{
    taxonomyOnly = only;
}

void BuildNcbiPiechartAsyncTask::setTaxonomyArchive(const QString& fileName)
{
    taxonomyArchive = fileName;
}

void BuildNcbiPiechartAsyncTask::setKeepEmptyChart(bool keep)
{
    keepEmptyChart = keep;
}

void BuildNcbiPiechartAsyncTask::setDownloadStallTimeout(int milliseconds)
{
    stallTimeout = qMax(0, milliseconds);
}

QString BuildNcbiPiechartAsyncTask::getErrorDetail() const
{
    QMutexLocker lock(&detailMutex);
    return errorDetail;
}

void BuildNcbiPiechartAsyncTask::setErrorDetail(const QString& detail)
{
    QMutexLocker lock(&detailMutex);
    errorDetail = detail;
}

Zem::Ontology::BuildReport BuildNcbiPiechartAsyncTask::getReport() const
{
    QMutexLocker lock(&detailMutex);
    return report;
}

void BuildNcbiPiechartAsyncTask::slotSetCancelled()
{
    nu::AsyncTask::slotSetCancelled();
    // The downloader lives on the task's thread: the abort is delivered there.
    QMutexLocker lock(&downloaderMutex);
    if (downloader)
        QMetaObject::invokeMethod(downloader.get(), &nu::FileDownloader::slotAbort, Qt::QueuedConnection);
}

bool BuildNcbiPiechartAsyncTask::shouldContinue() const
{
    return !isInterruptionRequested() && !isFinished();
}

bool BuildNcbiPiechartAsyncTask::isCachedTaxonomyUsable() const
{
    // A damaged cache is made anew rather than failing every later chart.
    return Zem::Ncbi::TaxonomyCache(ncbiOntologyFile).isUsable();
}

void BuildNcbiPiechartAsyncTask::run()
{
    step = 0;
    try {
        if (taxonomyOnly) {
            setProgressMax(0, taxonomyArchive.isEmpty() ? 4 : 3);
            if (taxonomyArchive.isEmpty())
                runDownloadStep();
            runNcbiOntologyStep();
            if (shouldContinue()) {
                setProgressMessage(0, tr("Taxonomy updated"));
                setProgressFinished(0);
            }
        } else if (isCachedTaxonomyUsable()) {
            setProgressMax(0, chartSteps());
            runPiechartStep();
        } else {
            setProgressMax(0, 4 + chartSteps());
            runDownloadStep();
            runNcbiOntologyStep();
            runPiechartStep();
        }
    } catch (const DownloadFailedException&) {
        setErrorMessage(tr("NCBI data couldn't be downloaded"));
    } catch (const Zem::Ontology::Builder::CancelledException&) {
        // An interruption that did not come through slotSetCancelled still ends as one.
        if (!isFinished())
            slotSetCancelled();
    } catch (const std::exception& e) {
        if (!isFinished())
            setErrorDetail(QString::fromUtf8(e.what()));
        setErrorMessage(tr("Pie chart couldn't be generated"));
    }
    QMutexLocker lock(&downloaderMutex);
    downloader.reset();
}

int BuildNcbiPiechartAsyncTask::chartSteps() const
{
    // Reading the taxonomy and each input, counting, writing.
    return 3 + std::max(1, static_cast<int>(samples.size()));
}

void BuildNcbiPiechartAsyncTask::advanceStep()
{
    setProgressValue(0, step);
    ++step;
}

void BuildNcbiPiechartAsyncTask::prepareBuilder(BuilderSource& builder)
{
    builder.setWriterCommitSize(writerCommitSize);
    // The builder runs on this thread, so the progress slots are called directly; they only
    // update the thread-safe progress list.
    connect(&builder, &BuilderSource::signalSourceReadingStart, this,
            &BuildNcbiPiechartAsyncTask::slotSourceReadingStart, Qt::DirectConnection);
    connect(&builder, &BuilderSource::signalSourceTotalSize, this,
            &BuildNcbiPiechartAsyncTask::slotSourceTotalSize, Qt::DirectConnection);
    connect(&builder, &BuilderSource::signalSourceCurrentPos, this,
            &BuildNcbiPiechartAsyncTask::slotSourceCurrentPos, Qt::DirectConnection);
    connect(&builder, &BuilderSource::signalBuildingStart, this,
            &BuildNcbiPiechartAsyncTask::slotBuildingStart, Qt::DirectConnection);
    connect(&builder, &BuilderSource::signalNodesInserted, this,
            &BuildNcbiPiechartAsyncTask::slotNodesInserted, Qt::DirectConnection);
    connect(&builder, &BuilderSource::signalNodesCounted, this,
            &BuildNcbiPiechartAsyncTask::slotNodesCounted, Qt::DirectConnection);
    connect(&builder, &BuilderSource::signalCountingStart, this,
            &BuildNcbiPiechartAsyncTask::slotCountingStart, Qt::DirectConnection);
    builder.setCancelCheck([this] { return !shouldContinue(); });
}

void BuildNcbiPiechartAsyncTask::runDownloadStep()
{
    if (isInterruptionRequested())
        return;
    setProgressMessage(0, tr("Retrieving data from NCBI..."));
    advanceStep();
    setProgressMessage(1, tr("Downloading database..."));

    nu::FileDownloader* download = nullptr;
    {
        QMutexLocker lock(&downloaderMutex);
        try {
            downloader = std::make_unique<nu::FileDownloader>(downloadUrl);
        } catch (const nu::FileDownloader::OpenTempFileException& e) {
            setErrorDetail(QString::fromUtf8(e.what()));
            throw DownloadFailedException();
        }
        download = downloader.get();
    }
    downloaded = true;
    download->setStallTimeout(stallTimeout);

    QEventLoop loop;
    connect(download, &nu::FileDownloader::signalFinished, &loop, &QEventLoop::quit);
    connect(download, &nu::FileDownloader::signalError, &loop, &QEventLoop::quit);
    connect(download, &nu::FileDownloader::signalDownloadProgress, this,
            &BuildNcbiPiechartAsyncTask::slotDownloadProgress, Qt::DirectConnection);
    // A cancellation that came before the downloader existed could not abort it.
    if (isInterruptionRequested())
        download->slotAbort();
    while (!download->isFinished())
        loop.exec();

    const QNetworkReply::NetworkError error = download->getError();
    // An abort is no failure when it is the user's cancellation; the cancelled state stops the
    // later steps. An abort for any other reason is.
    if (error == QNetworkReply::NoError || (error == QNetworkReply::OperationCanceledError && isFinished()))
        return;
    setErrorDetail(download->getErrorString());
    throw DownloadFailedException();
}

void BuildNcbiPiechartAsyncTask::runNcbiOntologyStep()
{
    if (!shouldContinue())
        return;
    QString archive = taxonomyArchive;
    QString origin = QFileInfo(taxonomyArchive).absoluteFilePath();
    if (archive.isEmpty()) {
        QMutexLocker lock(&downloaderMutex);
        archive = downloader ? downloader->getFilename() : QString();
        origin = downloadUrl.toString(QUrl::RemoveUserInfo);
    }
    Zem::Ncbi::TaxonomyDatabase database(archive);
    database.setCancelCheck([this] { return !shouldContinue(); });
    database.open();
    Zem::Ncbi::TaxonomyBuilder builder(ncbiOntologyFile);
    builder.addDump(database, origin);
    prepareBuilder(builder);
    setProgressMessage(0, tr("Building ontology..."));
    if (shouldContinue())
        builder.load();
    // Between steps too, the cancellation goes through the builder, which then frees its tree
    // without holding up the end of the thread.
    builder.checkCancelled(0);
    // The cache takes its name only once complete: until then, the old one stays in use.
    builder.build();
    imported = true;
}

void BuildNcbiPiechartAsyncTask::runPiechartStep()
{
    if (!shouldContinue())
        return;
    BuilderSource builder(targetFile);
    builder.addSource(std::make_unique<Zem::Ontology::SourceOntology>(ncbiOntologyFile));
    for (auto& [name, input] : samples)
        builder.addSample(name, std::move(input));
    samples.clear();
    // Each sample's reads are placed before the next sample's come.
    Zem::Ontology::BuildReport placed;
    builder.setSampleStep([this, &placed](BuilderSource& loaded) {
        loaded.checkCancelled(0);
        placed.add(placeTaxa(loaded));
    });
    prepareBuilder(builder);
    setProgressMessage(0, tr("Building piechart..."));
    if (shouldContinue())
        builder.load();
    builder.checkCancelled(0);
    builder.count(true);
    keepReport(builder, placed);
    if (!keepEmptyChart && builder.getTotal() <= 0)
        throw EmptyChartException();
    builder.checkCancelled(0);
    builder.build();
    if (shouldContinue()) {
        setProgressMessage(0, tr("Pie chart built"));
        setProgressFinished(0);
    }
}

Zem::Ontology::BuildReport BuildNcbiPiechartAsyncTask::placeTaxa(BuilderSource& builder)
{
    using Zem::Ncbi::TaxonomyChanges;
    Zem::Ncbi::TaxonPlacement placement(builder);
    const QStringList unplaced = placement.getUnplacedIds();
    Zem::Ontology::BuildReport placed;
    placement.place(unplaced.isEmpty() ? TaxonomyChanges() : TaxonomyChanges::read(ncbiOntologyFile, unplaced), placed);
    return placed;
}

void BuildNcbiPiechartAsyncTask::keepReport(const BuilderSource& builder, const Zem::Ontology::BuildReport& placed)
{
    Zem::Ontology::BuildReport read = builder.getReport();
    read.add(placed);
    QMutexLocker lock(&detailMutex);
    report = read;
}

void BuildNcbiPiechartAsyncTask::slotSourceReadingStart(int, const QString& description)
{
    advanceStep();
    setProgressMessage(1, tr("Reading file ") + description);
}

void BuildNcbiPiechartAsyncTask::slotCountingStart(int total)
{
    advanceStep();
    setProgressMessage(1, tr("Counting nodes..."));
    setProgressMax(1, total);
    setProgressValue(1, 0);
}

void BuildNcbiPiechartAsyncTask::slotBuildingStart(int total)
{
    advanceStep();
    setProgressMessage(1, tr("Inserting nodes..."));
    setProgressMax(1, total);
    setProgressValue(1, 0);
}

void BuildNcbiPiechartAsyncTask::slotNodesCounted(int counted)
{
    setProgressValue(1, counted);
}

void BuildNcbiPiechartAsyncTask::slotNodesInserted(int inserted)
{
    setProgressValue(1, inserted);
}

void BuildNcbiPiechartAsyncTask::slotSourceTotalSize(qint64 total)
{
    positionShift = 0;
    while ((total >> positionShift) > INT_MAX)
        ++positionShift;
    setProgressMax(1, static_cast<int>(total >> positionShift));
}

void BuildNcbiPiechartAsyncTask::slotSourceCurrentPos(qint64 position)
{
    setProgressValue(1, static_cast<int>(qBound<qint64>(0, position >> positionShift, INT_MAX)));
}

void BuildNcbiPiechartAsyncTask::slotDownloadProgress(qint64 received, qint64 total)
{
    int shift = 0;
    while ((qMax(total, received) >> shift) > INT_MAX)
        ++shift;
    setProgressMax(1, total < 0 ? 0 : static_cast<int>(total >> shift));
    setProgressValue(1, static_cast<int>(qMax<qint64>(0, received) >> shift));
}

} // namespace Viewer
} // namespace Sorvik
