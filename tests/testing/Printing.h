#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <ostream>

// How GoogleTest prints Qt's values. Included before <gtest/gtest.h>.

inline void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* stream)
{
    *stream << '"' << bytes.toStdString() << '"';
}

inline void PrintTo(const QUrl& url, std::ostream* stream)
{
    *stream << url.toString().toStdString();
}
