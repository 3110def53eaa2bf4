#include "mirelctl/ConnectionCommands.h"

#include "mirelctl/Answer.h"
#include "mirelctl/InputLines.h"
#include "mirelctl/Interruption.h"
#include "model/LinkReceiver.h"
#include "support/FileError.h"
#include "support/MirelPaths.h"
#include "support/Text.h"
#include "support/WebURL.h"
#include "x/MirelDeepLink.h"

#include <QEventLoop>

#include <deque>

namespace mirel {

namespace {

// What reaches a sign-in that waits: lines of standard input, and callbacks that another start of Mirel hands
// over.
class Arrivals
{
public:
    explicit Arrivals(int input)
        : m_lines(input, [this](const std::optional<QString>& line) { takeLine(line); })
    {
    }

    // From now on callbacks are taken, if no other program takes them.
    void receiveCallbacks(const QProcessEnvironment& environment)
    {
        try {
            m_receiver = std::make_unique<LinkReceiver>(MirelPaths::runtimeDirectory(environment));
            if (!m_receiver->claim())
                m_receiver.reset();
        } catch (const FileError&) {
            // Standard input is left.
        }
        if (m_receiver)
            m_receiver->receive([this](const HandedLink& handed) { return takeLink(handed); });
    }

    // Callbacks arrive without the user's help.
    [[nodiscard]] bool receivesCallbacks() const { return m_receiver != nullptr; }

    // The next line of standard input, before receiveCallbacks(); absent when it has ended, or after end().
    [[nodiscard]] std::optional<QString> nextLine()
    {
        Q_ASSERT(!m_receiver);
        return next();
    }

    // The next line or callback; absent when nothing can come any more, or after end().
    [[nodiscard]] std::optional<QString> next()
    {
        while (m_waiting.empty() && !m_isEnded && (!m_isInputEnded || m_receiver)) {
            QEventLoop loop;
            m_loop = &loop;
            loop.exec();
            m_loop = nullptr;
        }
        if (m_isEnded || m_waiting.empty())
            return std::nullopt;
        const QString text = m_waiting.front();
        m_waiting.pop_front();
        return text;
    }

    void end()
    {
        m_isEnded = true;
        wake();
    }

private:
    void takeLine(const std::optional<QString>& line)
    {
        if (line)
            m_waiting.push_back(*line);
        else
            m_isInputEnded = true;
        wake();
    }

    bool takeLink(const HandedLink& handed)
    {
        if (!handed.url || !MirelDeepLink::xOAuthCallbackIn(*handed.url))
            return false;
        m_waiting.push_back(*handed.url);
        wake();
        return true;
    }

    void wake() const
    {
        if (m_loop)
            m_loop->quit();
    }

    std::deque<QString> m_waiting;
    bool m_isInputEnded = false;
    bool m_isEnded = false;
    QEventLoop* m_loop = nullptr;
    InputLines m_lines;
    std::unique_ptr<LinkReceiver> m_receiver;
};

struct Message
{
    QString message;

    static constexpr auto jsonFields() { return std::tuple{jsonField("message", &Message::message)}; }
};

// Standard output of a command that ends with the model's message.
QByteArray answerStatus(const MirelAppModel& model, const CommandSurroundings& surroundings)
{
    requireNoFailure(model);
    const Message message{model.statusMessage().value_or(QString())};
    return answer(surroundings, message, message.message);
}

void showPage(const MirelAppModel& model, const CommandSurroundings& surroundings, bool receivesCallbacks)
{
    surroundings.remark(
        QStringLiteral("Open this page in a browser, and allow Mirel to read your bookmarks:"));
    const QString page = absoluteString(model.xAuthorizationURL());
    if (surroundings.json)
        surroundings.remark(page);
    else
        surroundings.print(page.toUtf8() + '\n');
    surroundings.remark(
        receivesCallbacks
            ? QStringLiteral("If the browser cannot return to Mirel, paste here the address it was sent to.")
            : QStringLiteral("Then paste here the address the browser was sent to: Mirel is open, or another "
                             "sign-in waits, and takes what the browser returns."));
}

// Hands callbacks to the model until one has connected the account. Another's callback does no harm.
void awaitConnection(MirelAppModel& model, const CommandSurroundings& surroundings, Arrivals& arrivals)
{
    while (model.isAuthorizingX()) {
        const auto text = arrivals.next();
        if (!text && !model.isAuthorizingX())
            return;
        if (!text)
            throw CommandError(QStringLiteral("The sign-in ended without an address from X."));
        const auto callback = MirelDeepLink::xOAuthCallbackIn(*text);
        if (!callback) {
            if (!trimmed(*text).isEmpty())
                surroundings.remark(
                    QStringLiteral("That is not an address to which X returns: it begins with %1.")
                        .arg(XOAuthService::nativeRedirectURI));
            continue;
        }
        model.dismissError();
        blockOn(model.handleOpenURL(*callback));
        if (model.lastError() && model.isAuthorizingX())
            surroundings.remark(*model.lastError());
    }
}

} // namespace

void ConnectCommand::describe(CommandSyntax& syntax)
{
    syntax.addText(QStringLiteral("client-id"), clientID);
    syntax.addSwitch(QStringLiteral("client-secret-stdin"), readsSecret);
    syntax.addOption(QStringLiteral("redirect-uri"), [this](const QString& value) { redirectURI = value; });
}

QByteArray ConnectCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    requireLibrary(model);
    Arrivals arrivals(surroundings.input);
    bool isBegun = false;
    bool isInterrupted = false;
    bool isCanceled = false;
    std::optional<QCoro::Task<>> ending;
    const Interruption interruption([&] {
        isInterrupted = true;
        isCanceled = !isBegun || model.isAuthorizingX();
        model.cancelXAuthorization();
        ending.emplace(model.shutDown());
        arrivals.end();
    });
    const QProcessEnvironment& environment = surroundings.environment;
    const auto secret = readsSecret ? arrivals.nextLine()
                                    : std::optional(environment.value(QStringLiteral("X_CLIENT_SECRET")));
    if (!isCanceled) {
        if (!secret)
            throw CommandError(QStringLiteral("No client secret came on standard input."));
        arrivals.receiveCallbacks(environment);
        blockOn(model.beginXOAuth(clientID.value_or(environment.value(QStringLiteral("X_CLIENT_ID"))),
                                  *secret, redirectURI));
        requireNoFailure(model);
        isBegun = true;
    }
    if (!isCanceled) {
        showPage(model, surroundings, arrivals.receivesCallbacks());
        awaitConnection(model, surroundings, arrivals);
    }
    if (ending)
        blockOn(*std::move(ending));
    // An interrupted sign-in may have come to its end all the same.
    if (isCanceled || (isInterrupted && model.lastError()))
        throw CommandError(QStringLiteral("X authorization canceled."));
    return answerStatus(model, surroundings);
}

QByteArray DisconnectCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    requireLibrary(model);
    blockOn(model.clearCredentials());
    return answerStatus(model, surroundings);
}

QByteArray PurgeCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    if (!yes)
        throw CommandError(
            QStringLiteral("This deletes all bookmarks, labels, folders, notes and settings of "
                           "Mirel and its secrets in the keyring, for good. Nothing was deleted; "
                           "\"purge --yes\" does it."));
    requireLibrary(model);
    blockOn(model.deleteAllData());
    return answerStatus(model, surroundings);
}

} // namespace mirel
