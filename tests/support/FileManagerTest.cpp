#include "testing/Printing.h"

#include "support/FileError.h"
#include "support/FileManager.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace mirel {
namespace {

int mode(const QString& path)
{
    struct stat status = {};
    EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0) << qPrintable(path);
    return static_cast<int>(status.st_mode & 07777);
}

class FileManagerTest : public ::testing::Test
{
protected:
    void SetUp() override { m_before = ::umask(0); }
    void TearDown() override { ::umask(m_before); }

    [[nodiscard]] QString path(const char* name) const
    {
        return m_directory.filePath(QString::fromUtf8(name));
    }

    const FileManager& m_files = FileManager::standard();
    QTemporaryDir m_directory;
    mode_t m_before = 0;
};

TEST_F(FileManagerTest, CreatesADirectoryWithItsParentsForTheUserAlone)
{
    m_files.createDirectory(path("a/é b/c"));
    for (const char* name : {"a", "a/é b", "a/é b/c"})
        EXPECT_EQ(mode(path(name)), 0700) << name;
    m_files.createDirectory(path("d/"));
    EXPECT_EQ(mode(path("d")), 0700);
}

TEST_F(FileManagerTest, LeavesADirectoryAsItIs)
{
    m_files.createDirectory(path("a"));
    ::chmod(QFile::encodeName(path("a")).constData(), 0750);
    m_files.createDirectory(path("a"));
    EXPECT_EQ(mode(path("a")), 0750);
}

TEST_F(FileManagerTest, FailsWhereAFileStandsInTheWay)
{
    m_files.createPrivateFile(path("file"));
    for (const char* name : {"file", "file/below"}) {
        try {
            m_files.createDirectory(path(name));
            ADD_FAILURE() << name;
        } catch (const FileError& error) {
            EXPECT_EQ(error.path(), path("file"));
            EXPECT_EQ(error.number(), EEXIST);
            EXPECT_EQ(error.description(),
                      QStringLiteral("“%1” could not be created or opened: File exists.").arg(path("file")));
        }
    }
}

TEST_F(FileManagerTest, CreatesAnEmptyFileForTheUserAlone)
{
    m_files.createPrivateFile(path("file"));
    EXPECT_EQ(mode(path("file")), 0600);
    EXPECT_EQ(QFileInfo(path("file")).size(), 0);
}

TEST_F(FileManagerTest, LeavesAFileAsItIs)
{
    QFile file(path("file"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("content");
    file.close();
    ::chmod(QFile::encodeName(path("file")).constData(), 0644);
    m_files.createPrivateFile(path("file"));
    EXPECT_EQ(mode(path("file")), 0644);
    EXPECT_EQ(QFileInfo(path("file")).size(), 7);
}

TEST_F(FileManagerTest, FailsToCreateAFileInADirectoryThatIsNotThere)
{
    try {
        m_files.createPrivateFile(path("no/file"));
        ADD_FAILURE();
    } catch (const FileError& error) {
        EXPECT_EQ(error.number(), ENOENT);
        EXPECT_EQ(error.path(), path("no/file"));
    }
}

TEST_F(FileManagerTest, RemovesADirectoryWithAllThatItHolds)
{
    m_files.createDirectory(path("a/b"));
    m_files.createPrivateFile(path("a/b/file"));
    EXPECT_TRUE(m_files.removeDirectory(path("a")));
    EXPECT_FALSE(QFileInfo::exists(path("a")));
    EXPECT_TRUE(m_files.removeDirectory(path("a")));
}

} // namespace
} // namespace mirel
