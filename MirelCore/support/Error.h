#pragma once

#include <QString>

#include <exception>
#include <string>

namespace mirel {

// The base of every error that Mirel throws. An error is a value: it can be copied and thrown again
// on another thread.
class Error : public std::exception
{
public:
    ~Error() override;

    // The one text that a user may see. Holds no secret.
    [[nodiscard]] virtual QString description() const = 0;

    // The description in UTF-8.
    [[nodiscard]] const char* what() const noexcept override;

private:
    mutable std::string m_what;
};

// The text that a user may see of any exception: description() of an Error, what() of the rest.
[[nodiscard]] QString describe(const std::exception& exception);
[[nodiscard]] QString describe(const std::exception_ptr& exception);

} // namespace mirel
