#include "testing/Printing.h"

#include "presentation/PresentationCase.h"
#include "support/RawJSON.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

// Every file of the golden folder is a bookmark; beside it stands what is shown of it.

namespace mirel {
namespace {

constexpr QLatin1StringView expectedSuffix(".expected.json");

QStringList caseNames()
{
    QStringList names;
    const QDir folder(QStringLiteral(MIREL_GOLDEN_PRESENTATIONS));
    for (const QString& file : folder.entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name)) {
        if (!file.endsWith(expectedSuffix))
            names.append(file.chopped(qsizetype{5}));
    }
    return names;
}

QByteArray contents(const QString& name)
{
    QFile file(QStringLiteral(MIREL_GOLDEN_PRESENTATIONS "/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

// The envelope is taken byte for byte, apart from white space and the order of keys; "text" stands instead of
// it for what is no JSON.
Bookmark goldenBookmark(const QString& name)
{
    const RawJSON golden = RawJSON::parse(contents(name + QStringLiteral(".json")));
    const auto columns = golden.root().member("bookmark");
    const auto envelope = golden.root().member("envelope");
    return bookmarkOf(columns ? columns->canonical() : "{}",
                      envelope ? envelope->canonical() : golden.root().member("text")->string().toUtf8());
}

std::string indented(const QJsonObject& json)
{
    return QJsonDocument(json).toJson().toStdString();
}

class GoldenPresentation : public testing::TestWithParam<QString>
{
};

TEST_P(GoldenPresentation, IsAsExpected)
{
    const QJsonObject expected = parseJSON(contents(GetParam() + expectedSuffix)).toObject();
    const QJsonObject shown = PostPresentation(goldenBookmark(GetParam())).toJSON();
    EXPECT_EQ(indented(shown), indented(expected));
}

TEST_P(GoldenPresentation, AgreesWithTheFacts)
{
    const Bookmark bookmark = goldenBookmark(GetParam());
    EXPECT_EQ(PresentationFacts::of(bookmark), factsOf(PostPresentation(bookmark)));
}

std::string nameOf(const testing::TestParamInfo<QString>& row)
{
    return QString(row.param).replace(u'-', u'_').toStdString();
}

TEST(GoldenFolder, HoldsAnExpectationForEveryCaseAndNoOther)
{
    const QStringList names = caseNames();
    EXPECT_FALSE(names.isEmpty());
    QStringList files;
    for (const QString& name : names)
        files << name + QStringLiteral(".json") << name + expectedSuffix;
    files.sort(Qt::CaseSensitive);
    EXPECT_EQ(QDir(QStringLiteral(MIREL_GOLDEN_PRESENTATIONS)).entryList(QDir::Files, QDir::Name), files);
}

INSTANTIATE_TEST_SUITE_P(Folder, GoldenPresentation, testing::ValuesIn(caseNames()), nameOf);

} // namespace
} // namespace mirel
