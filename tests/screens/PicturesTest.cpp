#include "screens/WindowBench.h"

#include <QBuffer>
#include <QImage>
#include <QTcpServer>
#include <QTcpSocket>

namespace mirel::testing {

// A server on loopback that gives every address the same picture and remembers what was asked of it.
class PictureServer : public QTcpServer
{
public:
    PictureServer()
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* const socket = nextPendingConnection())
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] { answer(socket); });
        });
        listen(QHostAddress::LocalHost);
    }

    [[nodiscard]] QUrl address() const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(serverPort()));
    }

    QSet<QByteArray> paths;
    QByteArray requests;

private:
    void answer(QTcpSocket* socket)
    {
        const QByteArray request = socket->readAll();
        requests += request;
        paths.insert(request.split(' ').value(1));
        QByteArray picture;
        QBuffer buffer(&picture);
        QImage image(8, 8, QImage::Format_RGB32);
        image.fill(Qt::red);
        image.save(&buffer, "PNG");
        socket->write(
            "HTTP/1.1 200 OK\r\nContent-Type: image/png\r\nSet-Cookie: tracked=1\r\nConnection: close\r\n"
            "Content-Length: " +
            QByteArray::number(picture.size()) + "\r\n\r\n" + picture);
        socket->disconnectFromHost();
    }
};

class Pictures : public WindowBench
{
protected:
    // Fifty posts, each with a picture of its own.
    void fillWithPictures()
    {
        QList<SyncedBookmark> posts;
        for (int number = 1; number <= 50; ++number) {
            SyncedBookmark post = makePost(number);
            post.author.profileImageURL.reset();
            const QString path = QStringLiteral("%1.png").arg(number);
            post.media = {{.id = QStringLiteral("3_") + path, .url = server.address().resolved(QUrl(path))}};
            posts.append(post);
        }
        fill(posts);
    }

    PictureServer server;
};

TEST_F(Pictures, AreLoadedOnlyForRowsOnTheScreen)
{
    fillWithPictures();
    openWindow();
    const auto shown = rows().size();
    ASSERT_LT(shown, 10);
    ASSERT_TRUE(eventually([&] { return server.paths.size() == shown && !screens->isLoadingPictures(); }));
    for (int number = 50; number > 50 - shown; --number)
        EXPECT_TRUE(server.paths.contains(QByteArray("/") + QByteArray::number(number) + ".png")) << number;

    list().forceActiveFocus();
    press(Qt::Key_End);
    ASSERT_TRUE(eventually([&] { return server.paths.contains("/1.png") && !screens->isLoadingPictures(); }));
    EXPECT_FALSE(server.paths.contains("/25.png")) << "was never on the screen";
}

TEST_F(Pictures, AreLoadedWithoutCookies)
{
    fillWithPictures();
    openWindow();
    ASSERT_TRUE(eventually([&] { return server.paths.size() == rows().size(); }));
    list().forceActiveFocus();
    press(Qt::Key_End);
    ASSERT_TRUE(eventually([&] { return server.paths.contains("/1.png"); }));
    EXPECT_FALSE(server.requests.toLower().contains("cookie:"));
}

} // namespace mirel::testing
