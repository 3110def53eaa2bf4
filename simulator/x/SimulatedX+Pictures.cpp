#include "simulator/x/SimulatedX.h"

#include "simulator/FaultResponse.h"
#include "simulator/Pictures.h"

namespace mirel::simulator {

HTTPResponse SimulatedX::picture(const HTTPRequest& request)
{
    const QString name = QString::fromLatin1(request.path.mid(request.path.lastIndexOf('/') + 1));
    const bool isPortrait = request.path.startsWith("/media/profile/");
    const QByteArray bytes = isPortrait ? Pictures::portrait(name) : Pictures::scene(name);
    if (bytes.isEmpty())
        return refused(404, QStringLiteral("Not Found"), QStringLiteral("There is no such picture."));
    return {200, isPortrait ? "image/png" : "image/jpeg", {{"cache-control", "max-age=604800"}}, bytes};
}

HTTPResponse SimulatedX::video(const HTTPRequest&)
{
    // Posts name films as X does, but there are none to see. Asking for one is not a mistake.
    return problem(404, QStringLiteral("Not Found"), QStringLiteral("The simulator shows no films."));
}

} // namespace mirel::simulator
