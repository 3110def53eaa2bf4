#include "simulator/Scenario.h"

#include "simulator/SimulatorError.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <limits>
#include <set>

namespace mirel {

namespace {

using Action = Fault::Action;

[[noreturn]] void fail(const QString& problem)
{
    throw SimulatorError(SimulatorError::Case::InvalidScenario, problem);
}

// Reads the members of one object; what was not read at the end is an unknown key.
class Members
{
public:
    Members(QJsonObject object, QString place)
        : m_object(std::move(object))
        , m_place(std::move(place))
    {
    }

    [[nodiscard]] QJsonValue take(const QString& key)
    {
        m_known.insert(key);
        return m_object.value(key);
    }

    [[nodiscard]] QString text(const QString& key, const QString& absent = {})
    {
        const QJsonValue value = take(key);
        if (value.isUndefined())
            return absent;
        if (!value.isString())
            wrong(key, QStringLiteral("must be a text"));
        return value.toString();
    }

    [[nodiscard]] qint64 integer(const QString& key, qint64 absent, qint64 lowest)
    {
        const QJsonValue value = take(key);
        if (value.isUndefined())
            return absent;
        return checked(key, value, lowest);
    }

    [[nodiscard]] int smallInteger(const QString& key, int absent, int lowest)
    {
        const qint64 value = integer(key, absent, lowest);
        if (value > std::numeric_limits<int>::max())
            wrong(key, QStringLiteral("is too large"));
        return static_cast<int>(value);
    }

    [[nodiscard]] bool flag(const QString& key)
    {
        const QJsonValue value = take(key);
        if (!value.isUndefined() && !value.isBool())
            wrong(key, QStringLiteral("must be true or false"));
        return value.toBool();
    }

    [[nodiscard]] qint64 checked(const QString& key, const QJsonValue& value, qint64 lowest) const
    {
        const qint64 number = value.toInteger(lowest - 1);
        if (!value.isDouble() || number < lowest || static_cast<double>(number) != value.toDouble())
            wrong(key, QStringLiteral("must be an integer from %1 up").arg(lowest));
        return number;
    }

    void refuseUnknown() const
    {
        for (const QString& key : m_object.keys()) {
            if (!m_known.contains(key))
                wrong(key, QStringLiteral("is not known"));
        }
    }

    [[noreturn]] void wrong(const QString& key, const QString& problem) const
    {
        fail(QStringLiteral("“%1%2” %3.").arg(m_place, key, problem));
    }

private:
    QJsonObject m_object;
    QString m_place;
    std::set<QString> m_known;
};

template <typename Value>
struct Name
{
    QLatin1StringView name;
    Value value;
};

constexpr Name<Action> actionNames[]{
    {QLatin1StringView("none"), Action::None},
    {QLatin1StringView("status"), Action::Status},
    {QLatin1StringView("cutBeforeHeaders"), Action::CutBeforeHeaders},
    {QLatin1StringView("cutInBody"), Action::CutInBody},
    {QLatin1StringView("stall"), Action::Stall},
    {QLatin1StringView("stallInBody"), Action::StallInBody},
    {QLatin1StringView("repeatedToken"), Action::RepeatedToken},
    {QLatin1StringView("emptyPage"), Action::EmptyPage},
    {QLatin1StringView("noData"), Action::NoData},
    {QLatin1StringView("undecodable"), Action::Undecodable},
    {QLatin1StringView("missingAuthor"), Action::MissingAuthor},
    {QLatin1StringView("redirect"), Action::Redirect},
    {QLatin1StringView("hugeBody"), Action::HugeBody},
    {QLatin1StringView("addPosts"), Action::AddPosts},
    {QLatin1StringView("removePosts"), Action::RemovePosts},
    {QLatin1StringView("denyAuthorization"), Action::DenyAuthorization},
    {QLatin1StringView("expireTokens"), Action::ExpireTokens},
};

constexpr Name<Fault::Body> bodyNames[]{
    {QLatin1StringView("problem"), Fault::Body::Problem}, {QLatin1StringView("errors"), Fault::Body::Errors},
    {QLatin1StringView("text"), Fault::Body::Text},       {QLatin1StringView("html"), Fault::Body::HTML},
    {QLatin1StringView("binary"), Fault::Body::Binary},   {QLatin1StringView("empty"), Fault::Body::Empty},
};

constexpr Name<Fault::End> endNames[]{
    {QLatin1StringView("newest"), Fault::End::Newest},
    {QLatin1StringView("oldest"), Fault::End::Oldest},
};

template <typename Value, size_t Count>
Value named(Members& members, const QString& key, const Name<Value> (&names)[Count], Value absent)
{
    const QString text = members.text(key);
    if (text.isEmpty())
        return absent;
    for (const auto& [name, value] : names) {
        if (name == text)
            return value;
    }
    members.wrong(key, QStringLiteral("has the unknown value “%1”").arg(text));
}

Fault::Selection selection(Members& members)
{
    const QString key = QStringLiteral("requests");
    const QJsonValue json = members.take(key);
    Fault::Selection result;
    if (json.isUndefined() || json.toString() == QStringLiteral("every"))
        return result;
    if (json.isArray()) {
        for (const QJsonValue& number : json.toArray())
            result.numbers.append(static_cast<int>(members.checked(key, number, 1)));
        if (result.numbers.isEmpty())
            members.wrong(key, QStringLiteral("names no request"));
    } else if (json.isObject()) {
        Members range(json.toObject(), QStringLiteral("requests."));
        result.from = range.smallInteger(QStringLiteral("from"), 1, 1);
        if (const int to = range.smallInteger(QStringLiteral("to"), 0, 1); to > 0)
            result.to = to;
        range.refuseUnknown();
    } else {
        result.numbers = {static_cast<int>(members.checked(key, json, 1))};
    }
    return result;
}

void readRateLimit(Fault& fault, Members& members)
{
    const QJsonValue reset = members.take(QStringLiteral("rateLimitReset"));
    if (reset.isString())
        fault.rateLimitReset = reset.toString().toUtf8();
    else if (!reset.isUndefined())
        fault.rateLimitReset =
            QByteArray::number(members.checked(QStringLiteral("rateLimitReset"), reset, 0));
    if (const int seconds = members.smallInteger(QStringLiteral("rateLimitResetInSeconds"), -1, 0);
        seconds >= 0)
        fault.rateLimitResetInSeconds = seconds;
}

void readBody(Fault& fault, Members& members)
{
    fault.body = named(members, QStringLiteral("body"), bodyNames, Fault::Body::Problem);
    const QJsonValue text = members.take(QStringLiteral("bodyText"));
    if (text.isString())
        fault.customBody = text.toString().toUtf8();
    else if (!text.isUndefined())
        members.wrong(QStringLiteral("bodyText"), QStringLiteral("must be a text"));
}

Fault readFault(const QJsonValue& json, qsizetype number)
{
    const QString place = QStringLiteral("faults.%1.").arg(number);
    if (!json.isObject())
        fail(QStringLiteral("“%1” must be an object.").arg(place.chopped(1)));
    Members members(json.toObject(), place);
    Fault fault;
    fault.action = named(members, QStringLiteral("action"), actionNames, Action::None);
    const QString pattern = members.text(QStringLiteral("path"), QStringLiteral("/2/users/*/bookmarks"));
    fault.path = QRegularExpression::fromWildcard(pattern, Qt::CaseSensitive);
    fault.method = members.text(QStringLiteral("method"));
    fault.requests = selection(members);
    fault.delayMilliseconds = members.smallInteger(QStringLiteral("delayMilliseconds"), 0, 0);
    fault.status =
        members.smallInteger(QStringLiteral("status"), fault.action == Action::Redirect ? 302 : 0, 200);
    if (fault.action == Action::Status && (fault.status == 0 || fault.status > 599))
        members.wrong(QStringLiteral("status"), QStringLiteral("must be an HTTP status"));
    readBody(fault, members);
    readRateLimit(fault, members);
    fault.location = members.text(QStringLiteral("location"));
    if (fault.action == Action::Redirect && fault.location.isEmpty())
        members.wrong(QStringLiteral("location"), QStringLiteral("is missing"));
    fault.bytes = members.integer(QStringLiteral("bytes"), -1, 0);
    fault.chunked = members.flag(QStringLiteral("chunked"));
    fault.count = members.smallInteger(QStringLiteral("count"), 1, 1);
    fault.end = named(members, QStringLiteral("end"), endNames, Fault::End::Newest);
    members.refuseUnknown();
    return fault;
}

} // namespace

bool Fault::Selection::contains(int number) const
{
    if (!numbers.isEmpty())
        return numbers.contains(number);
    return number >= from && (!to || number <= *to);
}

Scenario Scenario::fromJSON(const QByteArray& json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        fail(QStringLiteral("it is no JSON at byte %1: %2.").arg(error.offset).arg(error.errorString()));
    }
    if (!document.isObject())
        fail(QStringLiteral("it must be an object."));
    Members members(document.object(), {});
    Scenario scenario;
    scenario.delayMilliseconds = members.smallInteger(QStringLiteral("delayMilliseconds"), 0, 0);
    scenario.accessTokenLifetimeSeconds =
        members.smallInteger(QStringLiteral("accessTokenLifetimeSeconds"), 7200, 0);
    const QJsonValue faults = members.take(QStringLiteral("faults"));
    if (!faults.isUndefined() && !faults.isArray())
        members.wrong(QStringLiteral("faults"), QStringLiteral("must be an array"));
    const QJsonArray list = faults.toArray();
    for (qsizetype i = 0; i < list.size(); ++i)
        scenario.faults.append(readFault(list.at(i), i));
    members.refuseUnknown();
    return scenario;
}

} // namespace mirel
