#include "testing/Printing.h"

#include "support/FileError.h"
#include "support/MirelPaths.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace mirel {
namespace {

class MirelPathsTest : public ::testing::Test
{
protected:
    MirelPathsTest() { set("HOME", m_directory.path()); }

    void set(const char* variable, const QString& value)
    {
        m_environment.insert(QString::fromLatin1(variable), value);
    }
    [[nodiscard]] QString path(const char* name) const
    {
        return m_directory.filePath(QString::fromUtf8(name));
    }
    [[nodiscard]] QString support() const { return MirelPaths::applicationSupportDirectory(m_environment); }
    [[nodiscard]] QString caches() const { return MirelPaths::cacheDirectory(m_environment); }

    QTemporaryDir m_directory;
    QProcessEnvironment m_environment;
};

TEST_F(MirelPathsTest, CreatesTheDirectoryThatTheVariableNames)
{
    set("MIREL_LOCAL_DATA_DIR", path("chosen/deep"));
    set("XDG_DATA_HOME", path("data"));
    EXPECT_EQ(support(), path("chosen/deep"));
    EXPECT_TRUE(QFileInfo(path("chosen/deep")).isDir());
    EXPECT_EQ(QFileInfo(path("chosen/deep")).permissions() &
                  (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther),
              QFile::Permissions());
    EXPECT_FALSE(QFileInfo::exists(path("data")));
}

TEST_F(MirelPathsTest, TakesAnEmptyVariableForUnset)
{
    set("MIREL_LOCAL_DATA_DIR", QString());
    set("XDG_DATA_HOME", path("data"));
    EXPECT_EQ(support(), path("data/Mirel"));
    EXPECT_TRUE(QFileInfo(path("data/Mirel")).isDir());
}

TEST_F(MirelPathsTest, FailsWhenTheDirectoryCannotBeCreated)
{
    FileManager::standard().createPrivateFile(path("file"));
    set("MIREL_LOCAL_DATA_DIR", path("file/below"));
    EXPECT_THROW((void)support(), FileError);
}

#ifdef Q_OS_LINUX
TEST_F(MirelPathsTest, FollowsTheBaseDirectoryRules)
{
    EXPECT_EQ(support(), path(".local/share/Mirel"));
    EXPECT_EQ(caches(), path(".cache/Mirel"));

    set("XDG_DATA_HOME", path("data"));
    set("XDG_CACHE_HOME", path("cache"));
    EXPECT_EQ(support(), path("data/Mirel"));
    EXPECT_EQ(caches(), path("cache/Mirel"));
}

TEST_F(MirelPathsTest, IgnoresRelativeAndEmptyBaseDirectories)
{
    for (const char* value : {"", "data", "./data", "../data", "~/data"}) {
        set("XDG_DATA_HOME", QString::fromLatin1(value));
        set("XDG_CACHE_HOME", QString::fromLatin1(value));
        EXPECT_EQ(support(), path(".local/share/Mirel")) << value;
        EXPECT_EQ(caches(), path(".cache/Mirel")) << value;
    }
}
#endif

#ifndef Q_OS_MACOS
TEST_F(MirelPathsTest, MeetsInTheRuntimeDirectoryWhenItIsTheUsersAlone)
{
    ASSERT_TRUE(QDir().mkdir(path("run")));
    const QFile::Permissions owner = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    ASSERT_TRUE(QFile::setPermissions(path("run"), owner));
    set("XDG_RUNTIME_DIR", path("run"));
    EXPECT_EQ(MirelPaths::runtimeDirectory(m_environment), path("run"));
    ASSERT_TRUE(QFile::setPermissions(path("run"), owner | QFile::ReadOther));
    EXPECT_EQ(MirelPaths::runtimeDirectory(m_environment), path(".local/share/Mirel"));
}

TEST_F(MirelPathsTest, MeetsBesideTheLibraryWithoutARuntimeDirectory)
{
    set("MIREL_LOCAL_DATA_DIR", path("elsewhere"));
    for (const QString& value : {QString(), QStringLiteral("run"), path("missing")}) {
        set("XDG_RUNTIME_DIR", value);
        EXPECT_EQ(MirelPaths::runtimeDirectory(m_environment), path(".local/share/Mirel"));
    }
    EXPECT_TRUE(QFileInfo(path(".local/share/Mirel")).isDir());
}
#endif

TEST_F(MirelPathsTest, CreatesNoCacheDirectory)
{
    EXPECT_FALSE(QFileInfo::exists(caches()));
}

TEST_F(MirelPathsTest, KeepsTheLibraryInTheDirectoryOfTheProcessEnvironment)
{
    const QByteArray before = qgetenv("MIREL_LOCAL_DATA_DIR");
    qputenv("MIREL_LOCAL_DATA_DIR", path("library").toUtf8());
    EXPECT_EQ(MirelPaths::databasePath(), path("library/mirel.sqlite3"));
    qputenv("MIREL_LOCAL_DATA_DIR", before);
    EXPECT_FALSE(QFileInfo::exists(path("library/mirel.sqlite3")));
}

} // namespace
} // namespace mirel
