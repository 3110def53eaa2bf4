#pragma once

#include <QQmlNetworkAccessManagerFactory>
#include <QString>

namespace mirel {

// How the screens load pictures: with a cache on disk, and without cookies. Used on several threads.
class PictureNetwork : public QQmlNetworkAccessManagerFactory
{
public:
    explicit PictureNetwork(QString cacheDirectory);

    [[nodiscard]] QNetworkAccessManager* create(QObject* parent) override;

private:
    const QString m_cacheDirectory;
};

} // namespace mirel
