#pragma once

#include "testing/TemporaryLibrary.h"

#include "model/MirelAppModel.h"
#include "x/XAPIClient.h"

#include <gtest/gtest.h>

namespace mirel::testing {

// The model with its services as the program wires them, on threads of their own; the test gives the vault
// and the network.
class WiredModelTest : public ::testing::Test
{
protected:
    // The vault and the transport are made on their thread.
    void makeModel(std::function<std::unique_ptr<CredentialVault>()> makeVault,
                   std::function<std::unique_ptr<HTTPTransport>()> makeTransport)
    {
        MirelServices services;
        services.store = std::make_unique<Serial<LocalLibraryStore>>(
            std::make_shared<ServiceThread>(QStringLiteral("library")), [this] { return library.open(); });
        const auto thread = std::make_shared<ServiceThread>(QStringLiteral("services"));
        services.vault = std::make_unique<Serial<CredentialVault>>(thread, std::move(makeVault));
        services.transport = std::make_unique<Serial<HTTPTransport>>(thread, std::move(makeTransport));
        services.x = std::make_unique<Serial<XDirectAPI>>(thread, [&] {
            return std::make_unique<XAPIClient>(services.vault->unguarded(), services.transport->unguarded(),
                                                QUrl(QStringLiteral("https://x.example/2")),
                                                library.clock.clock());
        });
        services.syncService = std::make_unique<Serial<MirelSyncService>>(thread, [&] {
            return std::make_unique<MirelSyncService>(services.x->unguarded(), *services.store,
                                                      library.clock.clock());
        });
        vault = services.vault.get();
        transport = services.transport.get();
        model = std::make_unique<MirelAppModel>(std::move(services), std::nullopt, library.clock.clock());
    }

    TemporaryLibrary library;
    std::unique_ptr<MirelAppModel> model;
    // These belong to the model.
    Serial<CredentialVault>* vault = nullptr;
    Serial<HTTPTransport>* transport = nullptr;
};

} // namespace mirel::testing
