#pragma once

#include "support/Error.h"

namespace mirel {

// The one error type of the library.
class SQLiteStoreError : public Error
{
public:
    enum class Case {
        // The database cannot be opened.
        open,
        // A statement fails on running, or stored data is invalid.
        execute,
        // SQL does not compile.
        prepare,
        // A value cannot be bound.
        bind,
        // A row that must exist is missing.
        notFound
    };

    SQLiteStoreError(Case errorCase, QString message);

    // There is no live bookmark with the id that was asked for.
    [[nodiscard]] static SQLiteStoreError bookmarkNotFound();

    [[nodiscard]] Case errorCase() const { return m_case; }
    [[nodiscard]] const QString& message() const { return m_message; }
    [[nodiscard]] QString description() const override;

private:
    Case m_case;
    QString m_message;
};

} // namespace mirel
