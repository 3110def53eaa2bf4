#pragma once

#include "transport/HTTPTransport.h"

#include <QByteArrayList>

namespace mirel {

// Answers every request at once with the next of the given pages, and after the last one with an empty page,
// which ends a sync.
class ReadyPages : public HTTPTransport
{
public:
    explicit ReadyPages(QByteArrayList pages);

    [[nodiscard]] QCoro::Task<HTTPResponse> data(HTTPRequest request) override;

private:
    QByteArrayList m_pages;
};

} // namespace mirel
