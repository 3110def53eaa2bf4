#include "support/Text.h"

#include <QTextBoundaryFinder>
#include <QUuid>

namespace mirel {

namespace {

// A mark on such a character can go; in other scripts marks are vowels, or make another letter. Digits and
// symbols are of the script Common.
bool hasMarksThatFold(char32_t character)
{
    switch (QChar::script(character)) {
    case QChar::Script_Unknown:
    case QChar::Script_Inherited:
    case QChar::Script_Common:
    case QChar::Script_Latin:
    case QChar::Script_Greek:
    case QChar::Script_Cyrillic:
        return true;
    default:
        return false;
    }
}

QString withoutFoldingMarks(const QString& text)
{
    QString rest;
    bool foldsMarks = true;
    for (const char32_t character : text.normalized(QString::NormalizationForm_D).toUcs4()) {
        const bool isMark = QChar::isMark(character);
        if (!isMark)
            foldsMarks = hasMarksThatFold(character);
        if (!isMark || !foldsMarks)
            rest += QChar::fromUcs4(character);
    }
    return rest.normalized(QString::NormalizationForm_C);
}

// Unicode's full case folding, of which QString has only the part that keeps the length: a letter whose upper
// case is several ("ß", "ﬁ") folds to those.
QString fullyCaseFolded(const QString& text)
{
    QString folded;
    for (const char32_t character : text.toUcs4()) {
        const QString letter = QString::fromUcs4(&character, 1);
        const QString upperCase = letter.toUpper();
        folded += (upperCase.size() > letter.size() ? upperCase : letter).toCaseFolded();
    }
    return folded;
}

// Lower case comes first, while "İ" is one letter: what Turkish makes of it differs from what it makes of
// "I".
QString folded(const QString& text, const QLocale& locale)
{
    const QString lowerCase = locale.toLower(text.normalized(QString::NormalizationForm_C));
    return withoutFoldingMarks(fullyCaseFolded(lowerCase)).toLower();
}

} // namespace

QString trimmed(QStringView text)
{
    return text.trimmed().toString();
}

std::optional<QString> nilIfBlank(QStringView text)
{
    const QStringView rest = text.trimmed();
    if (rest.isEmpty())
        return std::nullopt;
    return rest.toString();
}

std::optional<QString> nilIfBlank(const std::optional<QString>& text)
{
    if (!text)
        return std::nullopt;
    return nilIfBlank(QStringView(*text));
}

// QString::toLower() moves the rest of the text at each character that grows, which takes minutes for a long
// text of them. There is one such character, so it goes first, all at once.
QString lowerCased(QString text)
{
    return text.replace(QChar(u'\u0130'), QStringLiteral("i\u0307")).toLower();
}

qsizetype characterCount(const QString& text)
{
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (boundaries.toNextBoundary() != -1)
        ++count;
    return count;
}

QString firstCharacters(const QString& text, qsizetype count)
{
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    for (qsizetype i = 0; i < count; ++i) {
        const qsizetype next = boundaries.toNextBoundary();
        if (next == -1)
            return text;
        end = next;
    }
    return text.first(end);
}

QString slug(const QString& name, const QLocale& locale)
{
    QString slug;
    bool isWithinWord = false;
    for (const char32_t character : folded(name, locale).toUcs4()) {
        const bool isOfWord = QChar::isLetterOrNumber(character) || QChar::isMark(character);
        if (isOfWord && !isWithinWord && !slug.isEmpty())
            slug += u'-';
        if (isOfWord)
            slug += QChar::fromUcs4(character);
        isWithinWord = isOfWord;
    }
    return slug.isEmpty() ? QUuid::createUuid().toString(QUuid::WithoutBraces) : slug;
}

} // namespace mirel
