#pragma once

#include "testing/Printing.h"

#include "TestModel.h"
#include "mirelctl/CommandError.h"
#include "mirelctl/CommandLine.h"
#include "support/BlockOn.h"

#include <gtest/gtest.h>

namespace mirel::testing {

// The words of a command line, split at blanks; double quotes hold a word together.
inline QStringList wordsOf(const QString& line)
{
    QStringList words;
    QString word;
    bool isQuoted = false;
    for (const QChar character : line + u' ') {
        if (character == u'"')
            isQuoted = !isQuoted;
        if (isQuoted || character != u' ') {
            word += character;
        } else if (!word.isEmpty()) {
            words.append(word.remove(u'"'));
            word.clear();
        }
    }
    return words;
}

// A library in a temporary directory and the commands over it. Dates in the outputs are those of Greenwich.
class CommandBench : public ::testing::Test
{
protected:
    void SetUp() override
    {
        qputenv("TZ", "UTC");
        tzset();
        for (CommandSurroundings* each : {&forPeople, &forPipes, &forMachines}) {
            each->remark = [this](const QString& sentence) { remarks.append(sentence); };
            each->now = test.library.clock.clock();
        }
    }

    void store(const SyncedBookmark& post)
    {
        const auto upsert = [post, now = test.library.clock.now()](LocalLibraryStore& library) {
            library.upsertFromX(post, now);
        };
        blockOn(model.store()->call(upsert));
    }

    // The posts of the numbers 1 to `count`.
    void storePosts(int count)
    {
        for (int number = 1; number <= count; ++number)
            store(makePost(number));
    }

    // Runs `operation(LocalLibraryStore&)`.
    template <typename Operation>
    auto inLibrary(Operation operation)
    {
        return blockOn(model.store()->call(operation));
    }

    QStringList lines(const QByteArray& output)
    {
        EXPECT_TRUE(output.endsWith('\n'));
        return QString::fromUtf8(output).chopped(1).split(u'\n');
    }

    template <typename Operation>
    QString failureOf(Operation operation)
    {
        try {
            operation();
        } catch (const Error& error) {
            return error.description();
        }
        return QStringLiteral("no failure");
    }

    // The output of a command line such as `label create "Deep work"`.
    QByteArray output(const QByteArray& line, const CommandSurroundings& surroundings)
    {
        const CommandLine commandLine = parseCommandLine(wordsOf(QString::fromUtf8(line)));
        const auto run = [&]<typename Each>(const Each& command) {
            if constexpr (requires { command.run(model, surroundings); })
                return command.run(model, surroundings);
            else
                return QByteArray();
        };
        return std::visit(run, commandLine.command);
    }

    // The same for a pipe, without the last line end.
    QByteArray text(const QByteArray& line)
    {
        const QByteArray bytes = output(line, forPipes);
        EXPECT_TRUE(bytes.endsWith('\n'));
        return bytes.chopped(1);
    }

    template <typename Record>
    Record json(const QByteArray& line)
    {
        return decodeJSON<Record>(output(line, forMachines));
    }

    QByteArray failure(const QByteArray& line)
    {
        return failureOf([&] { (void)output(line, forPipes); }).toUtf8();
    }

    TestModel test;
    MirelAppModel& model = *test.model;
    // What was said beside the outputs.
    QStringList remarks;
    CommandSurroundings forPeople{.columns = 60, .libraryPath = QStringLiteral("/somewhere/mirel.sqlite3")};
    CommandSurroundings forPipes{.libraryPath = QStringLiteral("/somewhere/mirel.sqlite3")};
    CommandSurroundings forMachines{.json = true, .libraryPath = QStringLiteral("/somewhere/mirel.sqlite3")};
};

} // namespace mirel::testing
