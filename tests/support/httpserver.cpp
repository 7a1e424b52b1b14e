#include "tests/support/httpserver.h"

#include <QTcpSocket>

namespace Sorvik {
namespace Test {

namespace {

QByteArray reason(int status)
{
    switch (status) {
    case 200: return "OK";
    case 301: return "Moved Permanently";
    case 302: return "Found";
    case 307: return "Temporary Redirect";
    case 403: return "Forbidden";
    case 404: return "Not Found";
    case 500: return "Internal Server Error";
    default: return "Status";
    }
}

} // namespace

HttpServer::HttpServer(QObject* parent)
    : QObject(parent)
{
    connect(&server, &QTcpServer::newConnection, this, &HttpServer::slotNewConnection);
    server.listen(QHostAddress::LocalHost, 0);
}

void HttpServer::setRoute(const QString& path, const Route& route)
{
    routes.insert(path, route);
}

void HttpServer::serve(const QString& path, const QByteArray& body)
{
    Route route;
    route.body = body;
    setRoute(path, route);
}

QUrl HttpServer::url(const QString& path) const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(server.serverPort()).arg(path));
}

QUrl HttpServer::refusingUrl(const QString& path)
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    const quint16 port = probe.serverPort();
    probe.close();
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(port).arg(path));
}

void HttpServer::slotNewConnection()
{
    while (QTcpSocket* socket = server.nextPendingConnection()) {
        socket->setParent(this);
        auto buffer = std::make_shared<QByteArray>();
        connect(socket, &QTcpSocket::readyRead, this, [this, socket, buffer] {
            buffer->append(socket->readAll());
            if (buffer->contains("\r\n\r\n")) {
                const QByteArray request = *buffer;
                buffer->clear();
                answer(socket, request);
            }
        });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }
}

void HttpServer::answer(QTcpSocket* socket, const QByteArray& request)
{
    const QList<QByteArray> words = request.left(request.indexOf("\r\n")).split(' ');
    const QString path = words.size() >= 2 ? QString::fromLatin1(words.at(1)) : QString();
    requests[path] += 1;

    Route route;
    if (routes.contains(path)) {
        route = routes.value(path);
    } else {
        route.status = 404;
        route.body = "<html>Not found</html>";
    }

    QByteArray head = "HTTP/1.1 " + QByteArray::number(route.status) + ' ' + reason(route.status) + "\r\n";
    head += "Content-Type: application/octet-stream\r\n";
    head += "Content-Length: " + QByteArray::number(route.body.size()) + "\r\n";
    if (!route.location.isEmpty())
        head += "Location: " + url(route.location).toEncoded() + "\r\n";
    head += "Connection: close\r\n\r\n";
    socket->write(head);

    switch (route.behaviour) {
    case Behaviour::Complete:
        socket->write(route.body);
        socket->disconnectFromHost();
        break;
    case Behaviour::CloseMidBody:
        socket->write(route.body.left(route.body.size() / 2));
        socket->disconnectFromHost();
        break;
    case Behaviour::Stall:
        socket->write(route.body.left(route.stallAfter));
        socket->flush();
        break;
    }
}

} // namespace Test
} // namespace Sorvik
