#include "testing/Printing.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTcpSocket>

#include <gtest/gtest.h>

namespace mirel {
namespace {

constexpr int patience = 20'000;
const QString program = QStringLiteral(MIREL_SIMULATOR_PROGRAM);

TEST(SimulatorExecutable, SaysWhereItListensAnswersAndEndsWhenAsked)
{
    QProcess process;
    process.start(program, {QStringLiteral("--posts"), QStringLiteral("3")});
    while (!process.canReadLine())
        ASSERT_TRUE(process.waitForReadyRead(patience));
    const QString line = QString::fromUtf8(process.readLine());
    const auto match =
        QRegularExpression(QStringLiteral("^Simulating X at http://127\\.0\\.0\\.1:(\\d+)/2\n$")).match(line);
    ASSERT_TRUE(match.hasMatch()) << line.toStdString();
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), match.captured(1).toUShort());
    ASSERT_TRUE(socket.waitForConnected(patience));
    socket.write("GET /simulator/account HTTP/1.1\r\n\r\n");
    ASSERT_TRUE(socket.waitForReadyRead(patience));
    EXPECT_TRUE(socket.readAll().startsWith("HTTP/1.1 200 OK\r\n"));
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(patience));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);
}

TEST(SimulatorExecutable, RefusesBadArgumentsWithOneSentenceOnStandardError)
{
    QProcess process;
    process.start(program, {QStringLiteral("--posts"), QStringLiteral("many")});
    ASSERT_TRUE(process.waitForFinished(patience));
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_EQ(process.readAllStandardOutput(), "");
    EXPECT_EQ(QString::fromUtf8(process.readAllStandardError()),
              QStringLiteral("mirel-simulator: --posts needs a number from 0 to 50000, not “many”.\n"));
}

} // namespace
} // namespace mirel
