#pragma once

#include <QByteArray>

#include <optional>

namespace mirel::standardStreams {

// The columns of the terminal that shows standard output; absent when it goes elsewhere.
[[nodiscard]] std::optional<int> outputColumns();

[[nodiscard]] bool isErrorTerminal();

// Writes all of `bytes` to standard output. A reader that closed the pipe has what it wanted: the rest is
// dropped. Throws CommandError for every other failure.
void writeOutput(const QByteArray& bytes);

// Writes to standard error; failures have nowhere to go.
void writeError(const QByteArray& bytes);

} // namespace mirel::standardStreams
