#include "simulator/x/Account.h"

#include "simulator/posts/PostKey.h"

#include <algorithm>

namespace mirel::simulator {

Account::Account(int posts)
    : m_nextSerial(posts)
{
    m_serials.reserve(posts);
    for (int serial = posts - 1; serial >= 0; --serial)
        m_serials.append(serial);
}

bool Account::contains(int serial) const
{
    return std::binary_search(m_serials.begin(), m_serials.end(), serial, std::greater<>());
}

Account::Slice Account::slice(std::optional<int> before, int count) const
{
    const auto begin = before
                           ? std::upper_bound(m_serials.begin(), m_serials.end(), *before, std::greater<>())
                           : m_serials.begin();
    const qsizetype start = begin - m_serials.begin();
    Slice slice;
    slice.serials = m_serials.mid(start, count);
    if (start + count < m_serials.size())
        slice.next = slice.serials.last();
    if (start > 0)
        slice.previous = m_serials.at(std::max(qsizetype{0}, start - count)) + 1;
    return slice;
}

void Account::add(int count)
{
    for (int i = 0; i < count && m_nextSerial < PostKey::serialLimit; ++i)
        m_serials.prepend(m_nextSerial++);
}

bool Account::remove(int serial)
{
    return m_serials.removeOne(serial);
}

void Account::removeNewest(int count)
{
    m_serials.remove(0, std::min(qsizetype{count}, m_serials.size()));
}

void Account::removeOldest(int count)
{
    const qsizetype removed = std::min(qsizetype{count}, m_serials.size());
    m_serials.remove(m_serials.size() - removed, removed);
}

} // namespace mirel::simulator
