#include "nu/filedownloader.h"
#include "tests/support/httpserver.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using nu::FileDownloader;
using Sorvik::Test::HttpServer;

namespace {

QByteArray randomBytes(int size)
{
    QByteArray data(size, Qt::Uninitialized);
    QRandomGenerator generator(42);
    for (char& c : data)
        c = static_cast<char>(generator.bounded(256));
    return data;
}

QByteArray fileContent(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

} // namespace

class TestFileDownloader : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(server.isListening());
        large = randomBytes(3 * 1024 * 1024 + 17);
        server.serve(QStringLiteral("/taxdmp.zip"), large);
        HttpServer::Route missing;
        missing.status = 404;
        missing.body = "gone";
        server.setRoute(QStringLiteral("/missing"), missing);
        HttpServer::Route cut;
        cut.body = large;
        cut.behaviour = HttpServer::Behaviour::CloseMidBody;
        server.setRoute(QStringLiteral("/cut"), cut);
        HttpServer::Route moved;
        moved.status = 302;
        moved.location = QStringLiteral("/taxdmp.zip");
        server.setRoute(QStringLiteral("/moved"), moved);
        HttpServer::Route silent;
        silent.behaviour = HttpServer::Behaviour::Stall;
        silent.body = large;
        server.setRoute(QStringLiteral("/silent"), silent);
        HttpServer::Route slow;
        slow.behaviour = HttpServer::Behaviour::Stall;
        slow.body = large;
        slow.stallAfter = 100000;
        server.setRoute(QStringLiteral("/slow"), slow);
    }

    void downloads_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("error");
        QTest::addColumn<bool>("complete");
        QTest::newRow("success") << "/taxdmp.zip" << int(QNetworkReply::NoError) << true;
        QTest::newRow("redirect followed") << "/moved" << int(QNetworkReply::NoError) << true;
        QTest::newRow("not found") << "/missing" << int(QNetworkReply::ContentNotFoundError) << false;
        QTest::newRow("closed mid-body") << "/cut" << int(QNetworkReply::RemoteHostClosedError) << false;
        QTest::newRow("connection refused") << "<refused>" << int(QNetworkReply::ConnectionRefusedError) << false;
    }

    void downloads()
    {
        QFETCH(QString, path);
        QFETCH(int, error);
        QFETCH(bool, complete);
        const QUrl url = path == QLatin1String("<refused>") ? HttpServer::refusingUrl(QStringLiteral("/x")) : server.url(path);
        FileDownloader downloader(url);
        QSignalSpy finished(&downloader, &FileDownloader::signalFinished);
        QSignalSpy errors(&downloader, &FileDownloader::signalError);
        QSignalSpy progress(&downloader, &FileDownloader::signalDownloadProgress);
        QVERIFY(finished.wait(30000));
        QCOMPARE(int(downloader.getError()), error);
        QCOMPARE(errors.count(), error == QNetworkReply::NoError ? 0 : 1);
        QCOMPARE(downloader.getErrorString().isEmpty(), error == QNetworkReply::NoError);
        if (complete) {
            QVERIFY(fileContent(downloader.getFilename()) == large);
            QCOMPARE(progress.isEmpty() ? -1 : progress.last().at(0).toLongLong(), qint64(large.size()));
        } else {
            QVERIFY(fileContent(downloader.getFilename()).size() < large.size());
        }
    }

    void abort_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("received");
        QTest::newRow("before any data") << "/silent" << 0;
        QTest::newRow("in the middle") << "/slow" << 100000;
    }

    void abort()
    {
        QFETCH(QString, path);
        QFETCH(int, received);
        FileDownloader downloader(server.url(path));
        QSignalSpy finished(&downloader, &FileDownloader::signalFinished);
        QSignalSpy errors(&downloader, &FileDownloader::signalError);
        // What arrived is on disk at once, progress signal or not.
        QTRY_COMPARE(server.getRequestCount(path), 1);
        QTRY_COMPARE(QFileInfo(downloader.getFilename()).size(), qint64(received));
        downloader.slotAbort();
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(errors.count(), 1);
        QCOMPARE(downloader.getError(), QNetworkReply::OperationCanceledError);
        QCOMPARE(fileContent(downloader.getFilename()), large.left(received));
        downloader.slotAbort(); // a second abort changes nothing
        QCOMPARE(finished.count(), 1);
    }

    void stallTimesOut()
    {
        FileDownloader downloader(server.url(QStringLiteral("/slow")));
        downloader.setStallTimeout(300);
        QSignalSpy finished(&downloader, &FileDownloader::signalFinished);
        QVERIFY(finished.wait(30000));
        QCOMPARE(downloader.getError(), QNetworkReply::TimeoutError);
        QVERIFY(downloader.getErrorString().contains(QLatin1String("No data")));
    }

    void fileIsRemovedWithTheDownloaderUnlessKept()
    {
        for (bool keep : {false, true}) {
            QString name;
            {
                FileDownloader downloader(server.url(QStringLiteral("/taxdmp.zip")));
                QSignalSpy finished(&downloader, &FileDownloader::signalFinished);
                QVERIFY(finished.wait(30000));
                name = downloader.getFilename();
                QVERIFY(QFileInfo::exists(name));
                if (keep)
                    downloader.setAutoRemove(false);
            }
            QCOMPARE(QFileInfo::exists(name), keep);
            if (keep)
                QFile::remove(name);
        }
    }

    void unusableTemporaryFolderThrows()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QByteArray previous = qgetenv("TMPDIR");
        // A file where the folder should be: nothing can be created below it, even as root.
        const QString notAFolder = dir.filePath(QStringLiteral("file"));
        QFile file(notAFolder);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        qputenv("TMPDIR", QFile::encodeName(notAFolder));
        bool thrown = false;
        try {
            FileDownloader downloader(server.url(QStringLiteral("/taxdmp.zip")));
        } catch (const FileDownloader::OpenTempFileException&) {
            thrown = true;
        }
        if (previous.isNull())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", previous);
        QVERIFY(thrown);
    }

private:
    HttpServer server;
    QByteArray large;
};

QTEST_GUILESS_MAIN(TestFileDownloader)
#include "tst_filedownloader.moc"
