#pragma once

#include "credentials/CredentialVault.h"

#include <QIODevice>
#include <QProcessEnvironment>

#include <functional>

namespace mirel {

// The first code of the program: a headless credential import, or the application.
struct MirelEntryPoint
{
    MirelEntryPoint() = delete;

    // Imports credentials when argument 1 is "--import-credentials-stdin", else runs the application, which
    // finds no secret in the environment. Returns the exit status.
    static int main(int argumentCount, char** arguments,
                    const std::function<int(int, char**)>& runApplication);

    // Reads a credential document from `input` to its end, fills `vault` from it and the environment, and
    // writes the result as one line of JSON to `output`. A failure is written to `errors` as one line.
    // Returns the exit status, 0 or 1. The devices are open and, with the vault, outlive the task.
    static QCoro::Task<int> importCredentials(CredentialVault& vault, QIODevice& input,
                                              QProcessEnvironment environment, QIODevice& output,
                                              QIODevice& errors);
};

} // namespace mirel
