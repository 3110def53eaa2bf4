#pragma once

#include <QString>

namespace mirel {

enum class SecretServiceState {
    // No secret service can be reached.
    absent,
    // The item is there, and locked.
    locked,
    ready
};

// How the credential store of this session stands, as far as it bears on the item of that service and
// account. Waits at most a few seconds for the answer.
[[nodiscard]] SecretServiceState secretServiceState(const QString& service, const QString& account);

} // namespace mirel
