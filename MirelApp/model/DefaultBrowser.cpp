#include "model/DefaultBrowser.h"

#include "credentials/CredentialImportService.h"
#include "model/platform/PageOpener.h"
#include "support/WebURL.h"

#include <QProcess>

namespace mirel {

bool openInDefaultBrowser(const QUrl& page, QProcessEnvironment environment)
{
    for (const QString& secret : CredentialImportService::secretVariables())
        environment.remove(secret);
    QProcess opener;
    opener.setProgram(pageOpener());
    opener.setArguments({absoluteString(page)});
    opener.setProcessEnvironment(environment);
    opener.setStandardInputFile(QProcess::nullDevice());
    opener.setStandardOutputFile(QProcess::nullDevice());
    opener.setStandardErrorFile(QProcess::nullDevice());
    return opener.startDetached();
}

} // namespace mirel
