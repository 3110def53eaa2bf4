#pragma once

#include "credentials/XCredentials.h"
#include "model/MirelAppModel.h"
#include "support/Error.h"

namespace mirel {

// The demo was asked for without a simulator.
class DemoError : public Error
{
public:
    [[nodiscard]] QString description() const override;
};

// The demo: the whole program with the account that mirel-simulator plays, and without a keyring.
struct Demo
{
    Demo() = delete;

    // The simulated account. None of this is a secret.
    [[nodiscard]] static XCredentials account();

    // What live() needs for the demo. Throws DemoError when `environment` names no simulator in
    // MIREL_X_API_URL: the demo never reaches the real X.
    [[nodiscard]] static LiveOptions
    liveOptions(const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());
};

} // namespace mirel
