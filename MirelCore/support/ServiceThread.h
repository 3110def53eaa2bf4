#pragma once

#include <QObject>
#include <QString>
#include <QThread>

#include <memory>

namespace mirel {

// A thread with an event loop, on which one or more services live. Made and destroyed on any one thread.
class ServiceThread
{
public:
    // Starts the thread. `name` is what debuggers show.
    explicit ServiceThread(const QString& name);

    // Ends the event loop after the events that wait in it, and joins the thread.
    ~ServiceThread();

    Q_DISABLE_COPY_MOVE(ServiceThread)

    // An object that lives on the thread, to post functions to.
    [[nodiscard]] QObject* context() const { return m_context; }

private:
    QThread m_thread;
    QObject* m_context = nullptr;
};

} // namespace mirel
