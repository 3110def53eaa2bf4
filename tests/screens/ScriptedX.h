#pragma once

#include "x/FakeX.h"

#include <QCoro/QCoroFuture>
#include <QPromise>

namespace mirel::testing {

// X whose pages come when the test lets them. The test's thread answers, the service's thread waits.
class ScriptedX : public FakeX
{
public:
    struct Pages
    {
        std::vector<std::shared_ptr<QPromise<XBookmarkPage>>> promises;

        explicit Pages(std::size_t count)
        {
            for (std::size_t page = 0; page < count; ++page) {
                promises.push_back(std::make_shared<QPromise<XBookmarkPage>>());
                promises.back()->start();
            }
        }
        void send(std::size_t page, XBookmarkPage content) const
        {
            promises[page]->addResult(std::move(content));
            promises[page]->finish();
        }
        void fail(std::size_t page, std::exception_ptr failure) const
        {
            promises[page]->setException(failure);
            promises[page]->finish();
        }
    };

    explicit ScriptedX(const Pages& pages)
        : m_pages(pages)
    {
    }

    QCoro::Task<XBookmarkPage> bookmarks(std::optional<QString> paginationToken, qint64 maxResults) override
    {
        calls.push_back({paginationToken, maxResults});
        QFuture<XBookmarkPage> future = m_pages.promises[calls.size() - 1]->future();
        co_return co_await future;
    }

private:
    Pages m_pages;
};

} // namespace mirel::testing
