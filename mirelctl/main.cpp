#include "credentials/CredentialImportService.h"
#include "mirelctl/Program.h"

#include <QCoreApplication>

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>

// Qt wants a UTF-8 locale, chooses one itself where there is none, and says so on standard error; chosen
// before, nothing is said.
static void chooseUTF8Locale()
{
    std::setlocale(LC_ALL, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        setenv("LC_ALL", "C.UTF-8", 1);
}

int main(int argumentCount, char** arguments)
{
    chooseUTF8Locale();
    const QProcessEnvironment environment = mirel::CredentialImportService::takeEnvironment();
    // A closed pipe shows as a failing write.
    std::signal(SIGPIPE, SIG_IGN);
    QCoreApplication application(argumentCount, arguments);
    QCoreApplication::setApplicationName(QStringLiteral("mirelctl"));
    QCoreApplication::setApplicationVersion(QStringLiteral(MIREL_VERSION));
    return mirel::runProgram(QCoreApplication::arguments().sliced(1), environment);
}
