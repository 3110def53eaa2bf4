#include "support/ServiceThread.h"

namespace mirel {

ServiceThread::ServiceThread(const QString& name)
{
    m_thread.setObjectName(name);
    m_context = new QObject;
    m_context->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_context, &QObject::deleteLater);
    m_thread.start();
}

ServiceThread::~ServiceThread()
{
    m_thread.quit();
    m_thread.wait();
}

} // namespace mirel
