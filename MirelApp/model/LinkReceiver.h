#pragma once

#include "model/HandedLink.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>

#include <functional>

namespace mirel {

// Receives the links that later starts of Mirel hand over, by a socket that only the user can reach. At most
// one program of a user receives them.
class LinkReceiver
{
public:
    // Returns whether the program takes the link; else, or when it throws Error, whoever hands it keeps it.
    using Take = std::function<bool(const HandedLink&)>;

    // Longer ones, those that are no HandedLink, and those that do not end in time are dropped.
    static constexpr qint64 longestMessage = 16'384;
    // The answer to a link that was taken.
    static constexpr QByteArrayView taken{"taken\n"};

    [[nodiscard]] static QString socketPath(const QString& directory);

    // `patience` is how long a sender may take.
    explicit LinkReceiver(const QString& directory,
                          std::chrono::milliseconds patience = std::chrono::seconds(5));
    ~LinkReceiver();
    Q_DISABLE_COPY_MOVE(LinkReceiver)

    // Makes this program the one that receives, in place of one that is gone. Returns false when another one
    // does, or when it is not possible in `directory`. Links wait from now on.
    [[nodiscard]] bool claim();

    // Takes links in the event loop of this thread.
    void receive(Take take);

private:
    void accept();
    void read(QLocalSocket* sender);
    [[nodiscard]] bool isTaken(const QByteArray& message) const;

    QString m_path;
    Take m_take;
    std::chrono::milliseconds m_patience;
    // Held while this program receives, and let go by the system when it dies.
    QLockFile m_lock;
    QLocalServer m_server;
};

} // namespace mirel
