#pragma once

#include "support/JSONCoding.h"

namespace mirel {

// An account on X.
struct XUser
{
    QString id;
    QString name;
    QString username;

    static constexpr auto jsonFields()
    {
        return std::tuple{
            jsonField("id", &XUser::id),
            jsonField("name", &XUser::name),
            jsonField("username", &XUser::username),
        };
    }

    friend bool operator==(const XUser&, const XUser&) = default;
};

} // namespace mirel
