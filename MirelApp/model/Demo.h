#pragma once

#include "credentials/XCredentials.h"
#include "model/MirelAppModel.h"
#include "support/Error.h"

namespace mirel {

// The demo was asked for without what it needs.
class DemoError : public Error
{
public:
    enum class Case { noSimulator, noLibrary };

    explicit DemoError(Case errorCase)
        : m_case(errorCase)
    {
    }

    [[nodiscard]] QString description() const override;

private:
    Case m_case;
};

// The demo: the whole program with the account that mirel-simulator plays, and without a keyring.
struct Demo
{
    Demo() = delete;

    // The simulated account. None of this is a secret.
    [[nodiscard]] static XCredentials account();

    // What live() needs for the demo. Throws DemoError when `environment` names no simulator in
    // MIREL_X_API_URL or no library in MIREL_LOCAL_DATA_DIR: the demo reaches neither the real X nor the
    // user's own library.
    [[nodiscard]] static LiveOptions
    liveOptions(const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());
};

} // namespace mirel
