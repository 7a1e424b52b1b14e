#include "viewer/buildncbipiechartasynctask.h"

#include "nu/filedownloader.h"
#include "ontology/buildersource.h"
#include "ontology/ontology.h"
#include "ontology/sourceontology.h"
#include "ontology/taxonomydatabase.h"

#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>

#include <climits>

namespace Sorvik {
namespace Viewer {

using Zem::Ontology::BuilderSource;

const char* const BuildNcbiPiechartAsyncTask::defaultDownloadAddress =
    "https://ftp.ncbi.nlm.nih.gov/pub/taxonomy/taxdmp.zip";

const char* BuildNcbiPiechartAsyncTask::DownloadFailedException::what() const noexcept
{
    return "the NCBI taxonomy could not be downloaded";
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
    if (isRunning()) {
        slotSetCancelled();
        wait();
    }
    // Nothing half-made survives: neither the chart nor a taxonomy this run was to provide.
    if (getState() != Running) {
        QFile::remove(targetFile);
        if (downloaded)
            QFile::remove(ncbiOntologyFile);
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
    source = std::move(input);
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
    // A cache damaged by a crash is rebuilt rather than failing every later chart.
    if (!QFileInfo(ncbiOntologyFile).isFile())
        return false;
    try {
        return Zem::Ontology::Ontology(ncbiOntologyFile).getNodeNumber() > 0;
    } catch (const Zem::Ontology::Ontology::Exception&) {
        return false;
    }
}

void BuildNcbiPiechartAsyncTask::run()
{
    step = 0;
    try {
        if (isCachedTaxonomyUsable()) {
            setProgressMax(0, 4);
            runPiechartStep();
        } else {
            setProgressMax(0, 8);
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
    QString archive;
    {
        QMutexLocker lock(&downloaderMutex);
        archive = downloader ? downloader->getFilename() : QString();
    }
    Zem::Ncbi::TaxonomyDatabase database(archive);
    database.setCancelCheck([this] { return !shouldContinue(); });
    database.open();
    BuilderSource builder(ncbiOntologyFile);
    for (auto& dumpSource : database.getSources())
        builder.addSource(std::move(dumpSource));
    prepareBuilder(builder);
    setProgressMessage(0, tr("Building ontology..."));
    if (shouldContinue())
        builder.load();
    if (shouldContinue())
        builder.build();
}

void BuildNcbiPiechartAsyncTask::runPiechartStep()
{
    if (!shouldContinue())
        return;
    BuilderSource builder(targetFile);
    builder.addSource(std::make_unique<Zem::Ontology::SourceOntology>(ncbiOntologyFile));
    builder.addSource(std::move(source));
    prepareBuilder(builder);
    setProgressMessage(0, tr("Building piechart..."));
    if (shouldContinue())
        builder.load();
    if (shouldContinue())
        builder.count(true);
    if (shouldContinue())
        builder.build();
    if (shouldContinue()) {
        setProgressMessage(0, tr("Pie chart built"));
        setProgressFinished(0);
    }
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
