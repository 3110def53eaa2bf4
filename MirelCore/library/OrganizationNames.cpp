#include "library/OrganizationNames.h"

#include "library/OrganizationError.h"
#include "library/SQLiteValue.h"
#include "support/Text.h"

namespace mirel {

namespace {

constexpr qsizetype longestName = 100;

} // namespace

QString storedName(const QString& name)
{
    return firstCharacters(trimmed(storedText(name)), longestName);
}

QString cleanName(const QString& name)
{
    const QString stored = storedName(name);
    if (stored.isEmpty())
        throw OrganizationError(OrganizationError::Case::invalidName);
    return stored;
}

QString searchPattern(const QString& search)
{
    return u'%' + lowerCased(trimmed(search)) + u'%';
}

} // namespace mirel
