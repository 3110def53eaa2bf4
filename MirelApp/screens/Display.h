#pragma once

#include <QDateTime>
#include <QQmlEngine>
#include <QTimer>
#include <QUrl>

namespace mirel {

// How values are put into words and numbers for the screen.
class Display : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    // To the minute, for dates that tell how long ago they are.
    Q_PROPERTY(QDateTime now READ now NOTIFY nowChanged)

public:
    explicit Display(QObject* parent = nullptr);

    [[nodiscard]] QDateTime now() const { return m_now; }

    // In full, with grouped digits: "12,345".
    [[nodiscard]] Q_INVOKABLE QString number(double value) const;
    // At most four characters and a unit, rounded down: "987", "1.2K", "34K", "5.6M".
    [[nodiscard]] Q_INVOKABLE QString compactNumber(double value) const;
    // "now", "5 min", "3 h", "Yesterday", "Tue", "12 Mar", "12 Mar 2024"; the last also for what lies ahead.
    [[nodiscard]] Q_INVOKABLE QString relativeDate(const QDateTime& date, const QDateTime& now) const;
    // "Tuesday, 12 March 2024 at 14:05".
    [[nodiscard]] Q_INVOKABLE QString fullDate(const QDateTime& date) const;
    // "14:05" on the day of `now`, else "12 Mar at 14:05".
    [[nodiscard]] Q_INVOKABLE QString clockTime(const QDateTime& date, const QDateTime& now) const;
    // "14:05:30".
    [[nodiscard]] Q_INVOKABLE QString secondOfDay(const QDateTime& date) const;
    // The beginning of a post on one paragraph, long enough for any list row.
    [[nodiscard]] Q_INVOKABLE QString snippet(const QString& text) const;
    // The picture's address when it is one of the web, else empty: a post names no file of this computer.
    [[nodiscard]] Q_INVOKABLE QUrl webPicture(const QUrl& url) const;

Q_SIGNALS:
    void nowChanged();

private:
    QDateTime m_now = QDateTime::currentDateTime();
    QTimer m_timer;
};

} // namespace mirel
