#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QTemporaryFile>
#include <QTimer>
#include <QUrl>

#include <exception>

namespace nu {

// Fetches one URL into a temporary file, streaming the data to disk as it arrives, and reports
// progress, errors and the end through signals. A failed download emits signalError and then
// signalFinished; the caller reads getError().
class FileDownloader : public QObject
{
    Q_OBJECT
public:
    class OpenTempFileException : public std::exception
    {
    public:
        const char* what() const noexcept override;
    };

    // Opens the temporary file and starts the request at once.
    explicit FileDownloader(const QUrl& url, QObject* parent = nullptr);
    ~FileDownloader() override;

    QString getFilename() const;
    QNetworkReply::NetworkError getError() const { return error; }
    // A sentence for the user about the error, empty when there is none.
    QString getErrorString() const { return errorString; }
    bool isFinished() const { return finished; }
    // Whether the file is deleted with the downloader (it is by default).
    void setAutoRemove(bool autoRemove);
    // Gives up with QNetworkReply::TimeoutError when no data arrives for this long; 0, the
    // default, waits for ever.
    void setStallTimeout(int milliseconds);

public slots:
    void slotAbort();

signals:
    void signalDownloadProgress(qint64 received, qint64 total);
    void signalError(QNetworkReply::NetworkError code);
    void signalFinished();

private slots:
    void slotDownloadProgress(qint64 received, qint64 total);
    void slotDownloadError(QNetworkReply::NetworkError code);
    void slotDownloadFinished();
    void slotStalled();
    void writeAvailable();

private:
    void failWith(QNetworkReply::NetworkError code, const QString& message);

    QNetworkAccessManager manager;
    QPointer<QNetworkReply> reply;
    QTemporaryFile file;
    QTimer stallTimer;
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    QString errorString;
    qint64 written = 0;
    bool finished = false;
};

} // namespace nu
