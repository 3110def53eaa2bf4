#include "testing/Printing.h"

#include "model/LinkReceiver.h"
#include "testing/Eventually.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <future>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace mirel {
namespace {

using namespace std::chrono_literals;

class ReceivedLinks : public ::testing::Test
{
protected:
    // As another program does, while this one runs its event loop.
    template <typename Operation>
    auto elsewhere(Operation operation)
    {
        auto result = std::async(std::launch::async, operation);
        EXPECT_TRUE(testing::eventually([&] { return result.wait_for(0s) == std::future_status::ready; }));
        return result.get();
    }

    Handing hand(const HandedLink& link)
    {
        return elsewhere([=, this] { return handOver(link, directory.path()); });
    }

    // What comes back for bytes that no Mirel sends.
    QByteArray answerTo(const QByteArray& bytes)
    {
        return elsewhere([=, this] {
            QLocalSocket socket;
            socket.connectToServer(LinkReceiver::socketPath(directory.path()));
            if (!socket.waitForConnected())
                return QByteArray("no connection");
            socket.write(bytes);
            while (socket.state() != QLocalSocket::UnconnectedState && socket.waitForReadyRead(60'000)) {
            }
            return socket.readAll();
        });
    }

    void receive(LinkReceiver& receiver)
    {
        ASSERT_TRUE(receiver.claim());
        receiver.receive([this](const HandedLink& link) {
            received.append(link);
            return takes;
        });
    }

    const HandedLink post{.url = QStringLiteral("mirel://open/1"), .libraryPath = QStringLiteral("/library")};
    QTemporaryDir directory;
    QList<HandedLink> received;
    bool takes = true;
};

TEST_F(ReceivedLinks, ReachTheProgramThatRuns)
{
    LinkReceiver receiver(directory.path());
    receive(receiver);
    const HandedLink start{.libraryPath = QStringLiteral("/library")};
    EXPECT_EQ(hand(post), Handing::taken);
    EXPECT_EQ(hand(start), Handing::taken);
    EXPECT_EQ(received, QList<HandedLink>({post, start}));
}

TEST_F(ReceivedLinks, CanBeRefused)
{
    LinkReceiver receiver(directory.path());
    receive(receiver);
    takes = false;
    EXPECT_EQ(hand(post), Handing::refused);
}

TEST_F(ReceivedLinks, FindNobodyWhereNothingRuns)
{
    EXPECT_EQ(hand(post), Handing::nobodyThere);
    {
        LinkReceiver receiver(directory.path());
        receive(receiver);
    }
    EXPECT_EQ(hand(post), Handing::nobodyThere);
    EXPECT_FALSE(QFile::exists(LinkReceiver::socketPath(directory.path())));
}

TEST_F(ReceivedLinks, WaitUntilTheProgramThatIsJustStartingTakesThem)
{
    LinkReceiver receiver(directory.path());
    ASSERT_TRUE(receiver.claim());
    // It answers after all the time that connecting to it may take.
    const HandingPatience patience{.forConnection = 0ms};
    auto handing =
        std::async(std::launch::async, [=, this] { return handOver(post, directory.path(), patience); });
    EXPECT_EQ(handing.wait_for(50ms), std::future_status::timeout);
    EXPECT_TRUE(received.isEmpty());
    receiver.receive([this](const HandedLink& link) {
        received.append(link);
        return true;
    });
    ASSERT_TRUE(testing::eventually([&] { return handing.wait_for(0s) == std::future_status::ready; }));
    EXPECT_EQ(handing.get(), Handing::taken);
    EXPECT_EQ(received, QList<HandedLink>({post}));
}

TEST_F(ReceivedLinks, ReachTheUserAlone)
{
    LinkReceiver receiver(directory.path());
    receive(receiver);
    const QFile::Permissions permissions =
        QFileInfo(LinkReceiver::socketPath(directory.path())).permissions();
    const QFile::Permissions owner = QFile::ReadOwner | QFile::WriteOwner;
    EXPECT_EQ(permissions & ~(QFile::ReadUser | QFile::WriteUser), owner);
}

TEST_F(ReceivedLinks, GoToOneProgramAtATime)
{
    LinkReceiver first(directory.path());
    receive(first);
    LinkReceiver second(directory.path());
    EXPECT_FALSE(second.claim());
    EXPECT_EQ(hand(post), Handing::taken) << "the first one still receives";
}

TEST_F(ReceivedLinks, FollowAProgramThatDied)
{
    const QByteArray path = QFile::encodeName(LinkReceiver::socketPath(directory.path()));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), qsizetype(sizeof address.sun_path));
    std::copy(path.begin(), path.end(), address.sun_path);
    const int left = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(left, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    close(left);
    ASSERT_TRUE(QFileInfo::exists(QFile::decodeName(path)));
    EXPECT_EQ(hand(post), Handing::nobodyThere);
    LinkReceiver receiver(directory.path());
    receive(receiver);
    EXPECT_EQ(hand(post), Handing::taken);
}

TEST_F(ReceivedLinks, AreRefusedWhenTheyAreNone)
{
    LinkReceiver receiver(directory.path());
    receive(receiver);
    for (const char* const bytes :
         {"\n", "mirel://open/1\n", "{}\n", "{\"libraryPath\":7}\n", "[1\n", "\xff\xfe\n"})
        EXPECT_EQ(answerTo(bytes), "refused\n") << bytes;
    EXPECT_TRUE(received.isEmpty());
    EXPECT_EQ(hand(post), Handing::taken);
}

TEST_F(ReceivedLinks, AreOneForEachConnection)
{
    LinkReceiver receiver(directory.path());
    receive(receiver);
    const QByteArray message = encodeJSON(post) + '\n';
    EXPECT_EQ(answerTo(message + message), "taken\n");
    EXPECT_EQ(received.size(), 1);
}

TEST_F(ReceivedLinks, MayNotBeEndless)
{
    LinkReceiver receiver(directory.path());
    receive(receiver);
    EXPECT_EQ(answerTo(QByteArray(LinkReceiver::longestMessage * 4, 'x')), "");
    const HandedLink tooLong{.url = QString(LinkReceiver::longestMessage, u'x')};
    EXPECT_EQ(hand(tooLong), Handing::refused);
    EXPECT_TRUE(received.isEmpty());
    EXPECT_EQ(hand(post), Handing::taken);
}

TEST_F(ReceivedLinks, DoNotWaitForASenderWhoStops)
{
    LinkReceiver receiver(directory.path(), 50ms);
    receive(receiver);
    EXPECT_EQ(answerTo("{\"url\":"), "");
    EXPECT_TRUE(received.isEmpty());
}

TEST_F(ReceivedLinks, AProgramThatDoesNotAnswerRefuses)
{
    LinkReceiver receiver(directory.path());
    ASSERT_TRUE(receiver.claim());
    EXPECT_EQ(handOver(post, directory.path(), {.forAnswer = 50ms}), Handing::refused);
}

TEST_F(ReceivedLinks, NeedADirectoryThatCanBeWrittenTo)
{
    LinkReceiver receiver(directory.filePath(QStringLiteral("missing")));
    EXPECT_FALSE(receiver.claim());
}

} // namespace
} // namespace mirel
