#pragma once

#include <QList>

#include <optional>

namespace mirel::simulator {

// Which posts are bookmarked, by their serial numbers: the highest was bookmarked last.
class Account
{
public:
    // A run of bookmarks, newest first, and where to go on.
    struct Slice
    {
        QList<int> serials;
        // `before` of the following run, absent at the end.
        std::optional<int> next;
        // `before` of the preceding run, absent at the start.
        std::optional<int> previous;
    };

    explicit Account(int posts);

    // Newest first.
    [[nodiscard]] const QList<int>& serials() const { return m_serials; }
    [[nodiscard]] bool contains(int serial) const;

    // At most `count` bookmarks with serial numbers below `before`, from the newest when it is absent. A
    // removed bookmark never makes a reader skip another one.
    [[nodiscard]] Slice slice(std::optional<int> before, int count) const;

    // Bookmarks so many posts that were never bookmarked before, as far as serial numbers last.
    void add(int count);
    // False when it is not there.
    bool remove(int serial);
    void removeNewest(int count);
    void removeOldest(int count);

private:
    QList<int> m_serials;
    int m_nextSerial;
};

} // namespace mirel::simulator
