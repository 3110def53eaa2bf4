#include "mirelctl/PreferencesCommands.h"

#include "mirelctl/Answer.h"

#include <map>

namespace mirel {

namespace {

// The value of each setting by its key.
using Settings = std::map<QString, QJsonValue>;

void collect(Settings& settings, const QJsonObject& object, const QString& prefix = {})
{
    for (auto field = object.begin(); field != object.end(); ++field) {
        const QString key = prefix + field.key();
        if (field->isObject())
            collect(settings, field->toObject(), key + u'.');
        else
            settings.emplace(key, *field);
    }
}

Settings settingsOf(const AppPreferences& preferences)
{
    Settings settings;
    collect(settings, preferences.toJSON().toObject());
    return settings;
}

AppPreferences preferencesOf(const Settings& settings)
{
    QJsonObject object;
    for (const auto& [key, value] : settings) {
        const QString group = key.section(u'.', 0, 0);
        if (group == key) {
            object.insert(key, value);
            continue;
        }
        QJsonObject members = object.value(group).toObject();
        members.insert(key.section(u'.', 1), value);
        object.insert(group, members);
    }
    return fromJSON<AppPreferences>(object);
}

QString textOf(const QJsonValue& value)
{
    return value.isString() ? value.toString() : QString::fromUtf8(writeJSON(value));
}

CommandError unknownKey(const QString& key, const Settings& settings)
{
    QStringList keys;
    for (const auto& setting : settings)
        keys.append(setting.first);
    return CommandError(QStringLiteral("There is no preference \"%1\": use %2.").arg(key, choices(keys)));
}

// Those with that key or in that group.
Settings settingsUnder(const Settings& settings, const QString& key)
{
    Settings found;
    for (const auto& setting : settings) {
        if (setting.first == key || setting.first.startsWith(key + u'.'))
            found.insert(setting);
    }
    if (found.empty())
        throw unknownKey(key, settings);
    return found;
}

QByteArray textOf(const Settings& settings, std::optional<int> columns)
{
    QList<QStringList> rows;
    for (const auto& [key, value] : settings)
        rows.append({key, textOf(value)});
    return alignedLines(rows, columns).toUtf8();
}

// Empty when any text will do.
QStringList textsAllowedFor(const QString& key)
{
    static const std::map<QString, QStringList> texts{
        {QStringLiteral("appearance"), rawTexts<AppPreferences::Appearance>()},
        {QStringLiteral("threadEnrichment"), rawTexts<AppPreferences::ThreadEnrichment>()},
        {QStringLiteral("libraryLayout"), rawTexts<AppPreferences::LibraryLayout>()},
        {QStringLiteral("readerSupplementLayout"), rawTexts<AppPreferences::ReaderSupplementLayout>()},
        {QStringLiteral("aiProvider"), rawTexts<AIProviderKind>()},
    };
    const auto found = texts.find(key);
    return found == texts.end() ? QStringList() : found->second;
}

// The value that the user's `text` means in place of `old`.
QJsonValue valueFrom(const QString& key, const QString& text, const QJsonValue& old)
{
    const auto require = [&](bool isAllowed, const QString& allowed) {
        if (!isAllowed)
            throw CommandError(
                QStringLiteral("The preference \"%1\" takes %2, not \"%3\".").arg(key, allowed, text));
    };
    if (old.isBool()) {
        require(text == u"true" || text == u"false", QStringLiteral("true or false"));
        return text == u"true";
    }
    if (old.isDouble()) {
        bool isNumber = false;
        const qint64 number = text.toLongLong(&isNumber);
        require(isNumber, QStringLiteral("a whole number"));
        return number;
    }
    const QStringList allowed = textsAllowedFor(key);
    require(allowed.isEmpty() || allowed.contains(text), allowed.isEmpty() ? QString() : choices(allowed));
    return text;
}

void assign(Settings& settings, const QStringList& assignments)
{
    for (qsizetype i = 0; i + 1 < assignments.size(); i += 2) {
        const auto setting = settings.find(assignments[i]);
        if (setting == settings.end())
            throw unknownKey(assignments[i], settings);
        setting->second = valueFrom(assignments[i], assignments[i + 1], setting->second);
    }
}

// What was stored in place of what was wanted.
QStringList differences(const Settings& wanted, const Settings& stored)
{
    QStringList sentences;
    for (const auto& [key, value] : wanted) {
        if (stored.at(key) != value)
            sentences.append(QStringLiteral("The preference \"%1\" cannot be %2 and is now %3.")
                                 .arg(key, textOf(value), textOf(stored.at(key))));
    }
    return sentences;
}

} // namespace

void PreferencesGetCommand::describe(CommandSyntax& syntax)
{
    syntax.addOptionalOperand(key);
}

QByteArray PreferencesGetCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    const AppPreferences preferences =
        withLibrary(model, [](LocalLibraryStore& library) { return library.preferences(); });
    const Settings settings = settingsOf(preferences);
    const Settings wanted = key ? settingsUnder(settings, *key) : settings;
    if (surroundings.json) {
        const bool isInGroup = key && key->contains(u'.');
        const QJsonObject json = preferences.toJSON().toObject();
        return writeJSON(!key ? json : isInGroup ? wanted.at(*key) : json.value(*key)) + '\n';
    }
    if (key && wanted.contains(*key))
        return printable(textOf(wanted.at(*key))).toUtf8() + '\n';
    return textOf(wanted, surroundings.columns);
}

void PreferencesSetCommand::describe(CommandSyntax& syntax)
{
    syntax.addOperands(QStringLiteral("the name of a preference and its value"), assignments);
    syntax.addCheck([this] {
        if (assignments.size() % 2 != 0)
            throw CommandError(
                QStringLiteral("The preference \"%1\" is given no value.").arg(assignments.last()));
    });
}

QByteArray PreferencesSetCommand::run(MirelAppModel& model, const CommandSurroundings& surroundings) const
{
    using Change = std::pair<Settings, AppPreferences>;
    const auto [wanted, stored] = withLibrary(model, [all = assignments](LocalLibraryStore& library) {
        Settings settings = settingsOf(library.preferences());
        assign(settings, all);
        const AppPreferences preferences = preferencesOf(settings);
        library.savePreferences(preferences);
        return Change{settings, preferences};
    });
    const Settings settings = settingsOf(stored);
    for (const QString& sentence : differences(wanted, settings))
        surroundings.remark(sentence);
    if (surroundings.json)
        return encodeJSON(stored) + '\n';
    Settings assigned;
    for (qsizetype i = 0; i < assignments.size(); i += 2)
        assigned.emplace(assignments[i], settings.at(assignments[i]));
    return textOf(assigned, surroundings.columns);
}

} // namespace mirel
