#pragma once

#include "model/MirelAppModel.h"

#include <QSemaphore>

#include <gtest/gtest.h>

namespace mirel::testing {

// Keeps the library's thread from answering until it is released.
class HeldLibrary
{
public:
    explicit HeldLibrary(MirelAppModel& model)
    {
        const auto wait = [gate = m_gate](LocalLibraryStore&) { EXPECT_TRUE(gate->tryAcquire(1, 60'000)); };
        m_call = model.store()->call(wait);
    }
    ~HeldLibrary() { release(); }
    Q_DISABLE_COPY_MOVE(HeldLibrary)

    void release() { m_gate->release(); }

private:
    std::shared_ptr<QSemaphore> m_gate = std::make_shared<QSemaphore>();
    QCoro::Task<> m_call;
};

} // namespace mirel::testing
