#include "support/ServiceThread.h"

namespace mirel {

ServiceThread::ServiceThread(const QString& name)
{
    m_thread.setObjectName(name);
    m_context = new QObject;
    m_context->moveToThread(&m_thread);
    m_thread.start();
}

ServiceThread::~ServiceThread()
{
    m_thread.quit();
    m_thread.wait();
    // Nothing runs there any more. deleteLater would need an application, which a thread that lives as long
    // as the process outlives.
    delete m_context;
}

} // namespace mirel
