#pragma once

#include "support/Instant.h"

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace mirel {

// What a command learns of the process that it runs in.
struct CommandSurroundings
{
    // One JSON document instead of text for people.
    bool json = false;
    // The columns of the terminal that shows the output; absent when no terminal does, and text stays whole.
    std::optional<int> columns;
    // Takes the bytes that show the progress of a sync; empty when nobody watches.
    std::function<void(const QByteArray&)> showProgress;
    // Takes a sentence for people who watch beside the output, on standard error.
    std::function<void(const QString&)> remark = [](const QString&) {};
    // Takes what goes to standard output before the command has ended.
    std::function<void(const QByteArray&)> print = [](const QByteArray&) {};
    // The descriptor of standard input.
    int input = 0;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Dates what the user makes.
    Clock now = Instant::now;
    // The library's file.
    QString libraryPath;
    // How long the keyring and X may take to tell whether X works.
    std::chrono::milliseconds patience{10'000};
};

} // namespace mirel
