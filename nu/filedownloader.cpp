#include "nu/filedownloader.h"

#include <QDir>
#include <QNetworkRequest>

namespace nu {

const char* FileDownloader::OpenTempFileException::what() const noexcept
{
    return "no temporary file could be created for the download";
}

FileDownloader::FileDownloader(const QUrl& url, QObject* parent)
    : QObject(parent)
    , file(QDir::tempPath() + QStringLiteral("/sorvik-download-XXXXXX"))
{
    if (!file.open())
        throw OpenTempFileException();

    stallTimer.setSingleShot(true);
    connect(&stallTimer, &QTimer::timeout, this, &FileDownloader::slotStalled);

    QNetworkRequest request(url);
    // Mirrors may redirect; never from HTTPS down to plain HTTP.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    reply = manager.get(request);
    // Qt holds back progress signals that come within 100 ms of each other, so the data is also
    // taken as soon as it is there.
    connect(reply, &QNetworkReply::readyRead, this, &FileDownloader::writeAvailable);
    connect(reply, &QNetworkReply::downloadProgress, this, &FileDownloader::slotDownloadProgress);
    connect(reply, &QNetworkReply::errorOccurred, this, &FileDownloader::slotDownloadError);
    connect(reply, &QNetworkReply::finished, this, &FileDownloader::slotDownloadFinished);
}

FileDownloader::~FileDownloader()
{
    if (reply) {
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
}

QString FileDownloader::getFilename() const
{
    return file.fileName();
}

void FileDownloader::setAutoRemove(bool autoRemove)
{
    file.setAutoRemove(autoRemove);
}

void FileDownloader::setStallTimeout(int milliseconds)
{
    if (milliseconds <= 0) {
        stallTimer.stop();
        stallTimer.setInterval(0);
        return;
    }
    stallTimer.setInterval(milliseconds);
    if (!finished)
        stallTimer.start();
}

void FileDownloader::slotAbort()
{
    if (reply && !finished)
        reply->abort();
}

void FileDownloader::writeAvailable()
{
    if (!reply || !file.isOpen())
        return;
    if (stallTimer.interval() > 0)
        stallTimer.start();
    const QByteArray data = reply->readAll();
    written += data.size();
    if (!data.isEmpty() && (file.write(data) != data.size() || !file.flush()))
        failWith(QNetworkReply::UnknownContentError,
                 tr("The download could not be written to %1.").arg(file.fileName()));
}

void FileDownloader::failWith(QNetworkReply::NetworkError code, const QString& message)
{
    // The first cause is the one to report; the abort it leads to is only its consequence.
    if (error == QNetworkReply::NoError) {
        error = code;
        errorString = message;
    }
    if (reply && reply->isRunning())
        reply->abort();
}

void FileDownloader::slotDownloadProgress(qint64 received, qint64 total)
{
    writeAvailable();
    emit signalDownloadProgress(received, total);
}

void FileDownloader::slotDownloadError(QNetworkReply::NetworkError code)
{
    if (error == QNetworkReply::NoError) {
        error = code;
        errorString = reply ? reply->errorString() : QString();
    }
    file.close();
    emit signalError(error);
}

void FileDownloader::slotDownloadFinished()
{
    stallTimer.stop();
    const bool reported = error != QNetworkReply::NoError;
    if (!reported)
        writeAvailable();
    if (file.isOpen() && !file.flush() && error == QNetworkReply::NoError) {
        error = QNetworkReply::UnknownContentError;
        errorString = tr("The download could not be written to %1.").arg(file.fileName());
    }
    // A connection that ends early is not always reported as an error; the announced length
    // tells (unless the body came compressed, when it counts other bytes).
    if (error == QNetworkReply::NoError && reply) {
        bool known = false;
        const qint64 expected = reply->header(QNetworkRequest::ContentLengthHeader).toLongLong(&known);
        const QByteArray encoding = reply->rawHeader("Content-Encoding");
        if (known && (encoding.isEmpty() || encoding == "identity") && expected != written) {
            error = QNetworkReply::RemoteHostClosedError;
            errorString = tr("The connection closed after %1 of %2 bytes.").arg(written).arg(expected);
        }
    }
    file.close();
    finished = true;
    // A failure found only now is announced like one Qt reported: an error, then the end.
    if (!reported && error != QNetworkReply::NoError)
        emit signalError(error);
    emit signalFinished();
}

void FileDownloader::slotStalled()
{
    if (finished)
        return;
    failWith(QNetworkReply::TimeoutError, tr("No data arrived for %1 seconds.").arg(stallTimer.interval() / 1000));
}

} // namespace nu
