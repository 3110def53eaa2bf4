#pragma once

#include <QByteArray>
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
    // The library's file.
    QString libraryPath;
    // How long the keyring and X may take to tell whether X works.
    std::chrono::milliseconds patience{10'000};
};

} // namespace mirel
