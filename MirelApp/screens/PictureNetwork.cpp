#include "screens/PictureNetwork.h"

#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QNetworkRequest>

namespace mirel {

namespace {

constexpr qint64 largestCache = 256 * 1024 * 1024;

class PictureAccessManager : public QNetworkAccessManager
{
public:
    using QNetworkAccessManager::QNetworkAccessManager;

protected:
    QNetworkReply* createRequest(Operation operation, const QNetworkRequest& original,
                                 QIODevice* outgoingData) override
    {
        QNetworkRequest request(original);
        request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::PreferCache);
        return QNetworkAccessManager::createRequest(operation, request, outgoingData);
    }
};

} // namespace

PictureNetwork::PictureNetwork(QString cacheDirectory)
    : m_cacheDirectory(std::move(cacheDirectory))
{
}

QNetworkAccessManager* PictureNetwork::create(QObject* parent)
{
    auto* const manager = new PictureAccessManager(parent);
    auto* const cache = new QNetworkDiskCache(manager);
    cache->setCacheDirectory(m_cacheDirectory);
    cache->setMaximumCacheSize(largestCache);
    manager->setCache(cache);
    return manager;
}

} // namespace mirel
