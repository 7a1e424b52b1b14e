#pragma once

#include <QHash>
#include <QTcpServer>
#include <QUrl>

class QTcpSocket;

namespace Sorvik {
namespace Test {

// A small HTTP/1.1 server on 127.0.0.1 (an ephemeral port) for download tests. Each path answers
// as set: a body, an error status, a connection closed halfway through the body, or a stall
// (headers and part of the body, then silence until the server goes away). Unknown paths get 404.
class HttpServer : public QObject
{
    Q_OBJECT
public:
    enum class Behaviour { Complete, CloseMidBody, Stall };

    struct Route
    {
        int status = 200;
        QByteArray body;
        Behaviour behaviour = Behaviour::Complete;
        // For Stall: how many body bytes go out before the silence.
        int stallAfter = 0;
        // For status 301/302/307: where to.
        QString location;
    };

    explicit HttpServer(QObject* parent = nullptr);

    bool isListening() const { return server.isListening(); }
    void setRoute(const QString& path, const Route& route);
    void serve(const QString& path, const QByteArray& body);
    QUrl url(const QString& path) const;
    int getRequestCount(const QString& path) const { return requests.value(path); }
    // An address on which nothing listens (a port just given up).
    static QUrl refusingUrl(const QString& path);

private slots:
    void slotNewConnection();

private:
    void answer(QTcpSocket* socket, const QByteArray& request);

    QTcpServer server;
    QHash<QString, Route> routes;
    QHash<QString, int> requests;
};

} // namespace Test
} // namespace Sorvik
