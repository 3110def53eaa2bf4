#include "testing/Printing.h"

#include "credentials/MirelKeychainConfiguration.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace mirel {
namespace {

using Configuration = MirelKeychainConfiguration;

const QString key = QStringLiteral("MirelKeychainService");
const QString production = QStringLiteral("io.mirel.mac.credentials.v2");

class MirelKeychainConfigurationTest : public ::testing::Test
{
protected:
    // The path of an executable below `bundle`, whose Contents hold that Info.plist.
    QString executable(const QString& belowContents, const QByteArray& propertyList,
                       const QString& bundle = QStringLiteral("Mirel.app"),
                       const QString& contents = QStringLiteral("Contents")) const
    {
        const QDir directory(m_directory.filePath(bundle + u'/' + contents));
        EXPECT_TRUE(directory.mkpath(QStringLiteral(".")));
        QFile file(directory.filePath(QStringLiteral("Info.plist")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(propertyList);
        return directory.filePath(belowContents);
    }

    static QByteArray propertyList(const QByteArray& dictionary)
    {
        return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
               "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
               "<plist version=\"1.0\"><dict>" +
               dictionary + "</dict></plist>\n";
    }

    static QByteArray naming(const QByteArray& service)
    {
        return propertyList("<key>Version</key><integer>3</integer>"
                            "<key>Nested</key><dict><key>MirelKeychainService</key><string>no</string></dict>"
                            "<key>MirelKeychainService</key><string>" +
                            service + "</string>");
    }

    const QString m_deep = QStringLiteral("Helpers/tools/mirelctl");
    QTemporaryDir m_directory;
};

TEST_F(MirelKeychainConfigurationTest, HasTheConstants)
{
    EXPECT_EQ(Configuration::productionService, production);
    EXPECT_EQ(Configuration::infoPlistKey, key);
}

TEST_F(MirelKeychainConfigurationTest, TakesTheTrimmedNameOfTheGivenInformationFirst)
{
    const QString path = executable(m_deep, naming("of.the.application"));
    EXPECT_EQ(Configuration::service({{key, QStringLiteral(" my.service\n")}}, path), u"my.service");
}

TEST_F(MirelKeychainConfigurationTest, CountsANameOfBlanksOrOfAnotherTypeAsNone)
{
    EXPECT_EQ(Configuration::service({{key, QStringLiteral(" \n\t")}}, {}), production);
    EXPECT_EQ(Configuration::service({{key, QString()}}, {}), production);
    EXPECT_EQ(Configuration::service({{key, 7}}, {}), production);
    EXPECT_EQ(Configuration::service({}, {}), production);
    EXPECT_EQ(Configuration::service({{QStringLiteral("Other"), QStringLiteral("x")}}, {}), production);
}

TEST_F(MirelKeychainConfigurationTest, ReadsTheContainingApplicationOfACompanion)
{
    EXPECT_EQ(Configuration::service({}, executable(m_deep, naming(" of.the.application "))),
              u"of.the.application");
    EXPECT_EQ(Configuration::service({{key, QStringLiteral(" ")}},
                                     executable(m_deep, naming("of.the.application"))),
              u"of.the.application");
}

TEST_F(MirelKeychainConfigurationTest, LooksNowhereElse)
{
    const QByteArray list = naming("wrong");
    EXPECT_EQ(Configuration::service({}, executable(QStringLiteral("MacOS/Mirel"), list)), production);
    EXPECT_EQ(Configuration::service({}, executable(QStringLiteral("a/b/c/tool"), list)), production);
    EXPECT_EQ(Configuration::service({}, executable(m_deep, list, QStringLiteral("Mirel"))), production);
    EXPECT_EQ(Configuration::service(
                  {}, executable(m_deep, list, QStringLiteral("Other.app"), QStringLiteral("Content"))),
              production);
    EXPECT_EQ(Configuration::service({}, QStringLiteral("/tool")), production);
}

TEST_F(MirelKeychainConfigurationTest, FallsBackWhenTheListIsMissingBrokenOrSilent)
{
    EXPECT_EQ(Configuration::service({}, m_directory.filePath(QStringLiteral("No.app/Contents/a/b/tool"))),
              production);
    for (const QByteArray& list :
         {QByteArray(), QByteArray("not a list"), QByteArray("bplist00\x01\x02"), naming("x").chopped(20),
          naming("  "), propertyList(""), propertyList("<key>MirelKeychainService</key><integer>7</integer>"),
          QByteArray("<plist><array><string>x</string></array></plist>"),
          QByteArray("<html><dict><key>MirelKeychainService</key>"
                     "<string>x</string></dict></html>")})
        EXPECT_EQ(Configuration::service({}, executable(m_deep, list)), production) << list.constData();
}

TEST_F(MirelKeychainConfigurationTest, IsTheProductionServiceForAProgramOutsideAnApplication)
{
    EXPECT_EQ(Configuration::currentService(), production);
}

} // namespace
} // namespace mirel
