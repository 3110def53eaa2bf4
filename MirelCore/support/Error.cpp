#include "support/Error.h"

namespace mirel {

Error::~Error() = default;

const char* Error::what() const noexcept
{
    try {
        m_what = description().toStdString();
        return m_what.c_str();
    } catch (...) {
        return "out of memory";
    }
}

QString describe(const std::exception& exception)
{
    if (const auto* error = dynamic_cast<const Error*>(&exception))
        return error->description();
    return QString::fromUtf8(exception.what());
}

QString describe(const std::exception_ptr& exception)
{
    try {
        std::rethrow_exception(exception);
    } catch (const std::exception& error) {
        return describe(error);
    }
}

} // namespace mirel
