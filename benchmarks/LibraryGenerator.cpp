#include "PageGenerator.h"
#include "library/LocalLibraryStore.h"
#include "x/PostMapping.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStorageInfo>

#include <sqlite3.h>

#include <cstdio>
#include <stdexcept>

namespace mirel {
namespace {

// What a post of each kind takes on the disk, with its share of the index and of the log beside it.
constexpr qint64 postSize = 120'000;
constexpr qint64 lightPostSize = 8'000;

// A library that was not finished is made anew, so it need not survive a power cut while it grows.
int writeWithoutWaiting(sqlite3* connection, char**, const sqlite3_api_routines*)
{
    return sqlite3_exec(connection, "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
}

void requireSpace(const QString& directory, qint64 bytes)
{
    if (QStorageInfo(directory).bytesAvailable() < bytes)
        throw std::runtime_error("The disk has too little space for this library.");
}

void fill(const QString& path, const PageGenerator& generator, qint64 posts)
{
    LocalLibraryStore library(path);
    for (int page = 0; posts > 0; ++page) {
        for (const SyncedBookmark& post : postMapping::parseBookmarkPage(generator.page(page)).items) {
            if (posts-- == 0)
                return;
            library.upsertFromX(post, Instant::now());
        }
    }
}

// Does nothing when the library is there.
void generate(const QString& directory, qint64 posts, bool isLight)
{
    if (QFile::exists(directory))
        return;
    const QString unfinished = directory + QStringLiteral(".unfinished");
    QDir(unfinished).removeRecursively();
    if (!QDir().mkpath(unfinished))
        throw std::runtime_error("The directory cannot be made.");
    requireSpace(unfinished, posts * (isLight ? lightPostSize : postSize));
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(writeWithoutWaiting));
    fill(unfinished + QStringLiteral("/mirel.sqlite3"), isLight ? PageGenerator::light() : PageGenerator(),
         posts);
    if (!QDir().rename(unfinished, directory))
        throw std::runtime_error("The finished library cannot be renamed.");
}

} // namespace
} // namespace mirel

int main(int argumentCount, char** arguments)
{
    QCoreApplication application(argumentCount, arguments);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Makes a library of generated posts, unless the directory exists."));
    parser.addHelpOption();
    const QCommandLineOption posts(QStringLiteral("posts"), QStringLiteral("How many posts."),
                                   QStringLiteral("N"), QStringLiteral("1000"));
    const QCommandLineOption light(QStringLiteral("light"),
                                   QStringLiteral("Envelopes of 2 KB instead of 90 KB."));
    parser.addOptions({posts, light});
    parser.addPositionalArgument(QStringLiteral("DIRECTORY"),
                                 QStringLiteral("The data directory, to be given to mirelctl --data-dir."));
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(EXIT_FAILURE);
    try {
        mirel::generate(parser.positionalArguments().first(), parser.value(posts).toLongLong(),
                        parser.isSet(light));
        return EXIT_SUCCESS;
    } catch (...) {
        std::fprintf(stderr, "library-generator: %s\n",
                     qPrintable(mirel::describe(std::current_exception())));
        return EXIT_FAILURE;
    }
}
