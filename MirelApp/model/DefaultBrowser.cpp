#include "model/DefaultBrowser.h"

#include "credentials/CredentialImportService.h"
#include "model/platform/PageOpener.h"
#include "support/WebURL.h"

#include <QProcess>

#include <memory>
#include <unistd.h>

namespace mirel {

bool openInDefaultBrowser(const QUrl& page, QProcessEnvironment environment, std::function<void()> failed)
{
    for (const QString& secret : CredentialImportService::secretVariables())
        environment.remove(secret);
    auto opener = std::make_unique<QProcess>();
    opener->setProgram(pageOpener());
    opener->setArguments({absoluteString(page)});
    opener->setProcessEnvironment(environment);
    opener->setStandardInputFile(QProcess::nullDevice());
    opener->setStandardOutputFile(QProcess::nullDevice());
    opener->setStandardErrorFile(QProcess::nullDevice());
    // What ends Mirel in its terminal does not end the browser.
    opener->setChildProcessModifier([] { ::setsid(); });
    const auto end = [process = opener.get(), failed = std::move(failed)](int code,
                                                                          QProcess::ExitStatus status) {
        process->deleteLater();
        if (failed && (code != 0 || status != QProcess::NormalExit))
            failed();
    };
    QObject::connect(opener.get(), &QProcess::finished, opener.get(), end);
    opener->start();
    if (!opener->waitForStarted())
        return false;
    // It may go on as the browser itself, which an owner would end with Mirel.
    static_cast<void>(opener.release());
    return true;
}

} // namespace mirel
