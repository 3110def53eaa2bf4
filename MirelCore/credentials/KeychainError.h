#pragma once

#include "support/Error.h"

namespace mirel {

// What the credential store answered to a call that failed. The numbers are those of the macOS Keychain, on
// every platform.
class KeychainError : public Error
{
public:
    static constexpr qint32 unimplemented = -4;
    // The store could not write or delete the item.
    static constexpr qint32 inputOutput = -36;
    // The secret itself cannot be stored.
    static constexpr qint32 invalidParameter = -50;
    // The user refused, or the call was given up because the program ends.
    static constexpr qint32 userCanceled = -128;
    // Something that the store tells in words alone.
    static constexpr qint32 internalComponent = -2070;
    // No credential store answers.
    static constexpr qint32 notAvailable = -25291;
    static constexpr qint32 authenticationFailed = -25293;
    // Not a failure to the vault: the item is absent.
    static constexpr qint32 itemNotFound = -25300;
    // The store is locked, and nobody unlocked it.
    static constexpr qint32 interactionNotAllowed = -25308;
    // The store took a call and did not end it in time.
    static constexpr qint32 serviceNotAvailable = -67585;

    // `message` is the store's own text for the status, empty when it has none.
    explicit KeychainError(qint32 status, QString message = {});

    // The store's message, else "Keychain error " and the status.
    [[nodiscard]] QString description() const override;
    [[nodiscard]] qint32 status() const { return m_status; }

private:
    qint32 m_status;
    QString m_message;
};

} // namespace mirel
