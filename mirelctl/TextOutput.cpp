#include "mirelctl/TextOutput.h"

#include <QRegularExpression>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>

namespace mirel {

namespace {

constexpr int narrowestText = 20;

struct CodePointRange
{
    char32_t first;
    char32_t last;
};

// The East Asian wide and full-width blocks and the emoji that are shown in colour by themselves, ascending.
constexpr std::array wideRanges{
    CodePointRange{0x1100, 0x115F},   CodePointRange{0x231A, 0x231B},   CodePointRange{0x2329, 0x232A},
    CodePointRange{0x23E9, 0x23EC},   CodePointRange{0x23F0, 0x23F0},   CodePointRange{0x23F3, 0x23F3},
    CodePointRange{0x25FD, 0x25FE},   CodePointRange{0x2614, 0x2615},   CodePointRange{0x2648, 0x2653},
    CodePointRange{0x267F, 0x267F},   CodePointRange{0x2693, 0x2693},   CodePointRange{0x26A1, 0x26A1},
    CodePointRange{0x26AA, 0x26AB},   CodePointRange{0x26BD, 0x26BE},   CodePointRange{0x26C4, 0x26C5},
    CodePointRange{0x26CE, 0x26CE},   CodePointRange{0x26D4, 0x26D4},   CodePointRange{0x26EA, 0x26EA},
    CodePointRange{0x26F2, 0x26F3},   CodePointRange{0x26F5, 0x26F5},   CodePointRange{0x26FA, 0x26FA},
    CodePointRange{0x26FD, 0x26FD},   CodePointRange{0x2705, 0x2705},   CodePointRange{0x270A, 0x270B},
    CodePointRange{0x2728, 0x2728},   CodePointRange{0x274C, 0x274C},   CodePointRange{0x274E, 0x274E},
    CodePointRange{0x2753, 0x2755},   CodePointRange{0x2757, 0x2757},   CodePointRange{0x2795, 0x2797},
    CodePointRange{0x27B0, 0x27B0},   CodePointRange{0x27BF, 0x27BF},   CodePointRange{0x2B1B, 0x2B1C},
    CodePointRange{0x2B50, 0x2B50},   CodePointRange{0x2B55, 0x2B55},   CodePointRange{0x2E80, 0x303E},
    CodePointRange{0x3041, 0xA4CF},   CodePointRange{0xA960, 0xA97C},   CodePointRange{0xAC00, 0xD7A3},
    CodePointRange{0xF900, 0xFAFF},   CodePointRange{0xFE10, 0xFE19},   CodePointRange{0xFE30, 0xFE6F},
    CodePointRange{0xFF01, 0xFF60},   CodePointRange{0xFFE0, 0xFFE6},   CodePointRange{0x16FE0, 0x18D08},
    CodePointRange{0x1AFF0, 0x1B2FB}, CodePointRange{0x1F004, 0x1F004}, CodePointRange{0x1F0CF, 0x1F0CF},
    CodePointRange{0x1F18E, 0x1F18E}, CodePointRange{0x1F191, 0x1F19A}, CodePointRange{0x1F1E6, 0x1F202},
    CodePointRange{0x1F210, 0x1F23B}, CodePointRange{0x1F240, 0x1F248}, CodePointRange{0x1F250, 0x1F251},
    CodePointRange{0x1F260, 0x1F265}, CodePointRange{0x1F300, 0x1F320}, CodePointRange{0x1F32D, 0x1F335},
    CodePointRange{0x1F337, 0x1F37C}, CodePointRange{0x1F37E, 0x1F393}, CodePointRange{0x1F3A0, 0x1F3CA},
    CodePointRange{0x1F3CF, 0x1F3D3}, CodePointRange{0x1F3E0, 0x1F3F0}, CodePointRange{0x1F3F4, 0x1F3F4},
    CodePointRange{0x1F3F8, 0x1F43E}, CodePointRange{0x1F440, 0x1F440}, CodePointRange{0x1F442, 0x1F4FC},
    CodePointRange{0x1F4FF, 0x1F53D}, CodePointRange{0x1F54B, 0x1F54E}, CodePointRange{0x1F550, 0x1F567},
    CodePointRange{0x1F57A, 0x1F57A}, CodePointRange{0x1F595, 0x1F596}, CodePointRange{0x1F5A4, 0x1F5A4},
    CodePointRange{0x1F5FB, 0x1F64F}, CodePointRange{0x1F680, 0x1F6C5}, CodePointRange{0x1F6CC, 0x1F6CC},
    CodePointRange{0x1F6D0, 0x1F6D2}, CodePointRange{0x1F6D5, 0x1F6D7}, CodePointRange{0x1F6DC, 0x1F6DF},
    CodePointRange{0x1F6EB, 0x1F6EC}, CodePointRange{0x1F6F4, 0x1F6FC}, CodePointRange{0x1F7E0, 0x1F7EB},
    CodePointRange{0x1F7F0, 0x1F7F0}, CodePointRange{0x1F90C, 0x1F93A}, CodePointRange{0x1F93C, 0x1F945},
    CodePointRange{0x1F947, 0x1F9FF}, CodePointRange{0x1FA70, 0x1FAF8}, CodePointRange{0x20000, 0x2FFFD},
    CodePointRange{0x30000, 0x3FFFD},
};

bool isWide(char32_t character)
{
    const auto range =
        std::lower_bound(wideRanges.begin(), wideRanges.end(), character,
                         [](const CodePointRange& each, char32_t wanted) { return each.last < wanted; });
    return range != wideRanges.end() && range->first <= character;
}

bool isInvisible(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Control:
    case QChar::Other_Format:
        return true;
    default:
        return false;
    }
}

// A character is as wide as its widest code point: marks and joiners add nothing, and a joined emoji is
// one picture.
int characterWidth(const QString& character)
{
    static constexpr uint emojiSelector = 0xFE0F;
    int width = 0;
    for (const uint codePoint : character.toUcs4()) {
        if (isWide(codePoint) || (codePoint == emojiSelector && width > 0))
            return 2;
        if (!isInvisible(codePoint))
            width = 1;
    }
    return width;
}

QStringList characters(const QString& text)
{
    QStringList result;
    QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    for (qsizetype end = boundaries.toNextBoundary(); end != -1; end = boundaries.toNextBoundary()) {
        result.append(text.sliced(start, end - start));
        start = end;
    }
    return result;
}

// As many characters from the start of `text` as fit.
QString fittingStart(const QString& text, int columns)
{
    QString result;
    int width = 0;
    for (const QString& character : characters(text)) {
        width += characterWidth(character);
        if (width > columns)
            break;
        result += character;
    }
    return result;
}

// The characters that turn the direction of what follows them, which would reach into other columns.
bool turnsDirection(QChar character)
{
    return (character >= u'\u202A' && character <= u'\u202E') ||
           (character >= u'\u2066' && character <= u'\u2069');
}

// `text` on one line; unlike oneLine(), its blanks stay.
QString cellText(const QString& text)
{
    static const QRegularExpression lineEnds(QStringLiteral("[\\n\\x{2028}\\x{2029}]"));
    return printable(text).replace(lineEnds, QStringLiteral(" "));
}

// Appends the lines that `word` needs; the last one may have room for more.
void appendLongWord(QStringList& lines, QString word, int columns)
{
    while (displayWidth(word) > columns) {
        QString start = fittingStart(word, columns);
        if (start.isEmpty())
            start = characters(word).first();
        lines.append(start);
        word.remove(0, start.size());
    }
    lines.append(word);
}

} // namespace

int displayWidth(const QString& text)
{
    int width = 0;
    for (const QString& character : characters(text))
        width += characterWidth(character);
    return width;
}

QString truncatedToWidth(const QString& text, int columns)
{
    if (displayWidth(text) <= columns)
        return text;
    if (columns < 1)
        return {};
    return fittingStart(text, columns - 1) + u'\u2026';
}

QString paddedToWidth(const QString& text, int columns)
{
    return text + QString(std::max(0, columns - displayWidth(text)), u' ');
}

QStringList wrappedToWidth(const QString& text, int columns)
{
    QStringList lines;
    for (const QString& paragraph : text.split(u'\n')) {
        QStringList wrapped{QString()};
        for (const QString& word : paragraph.split(u' ')) {
            const QString joined = wrapped.last().isEmpty() ? word : wrapped.last() + u' ' + word;
            if (displayWidth(joined) <= columns)
                wrapped.last() = joined;
            else if (wrapped.last().isEmpty())
                appendLongWord(wrapped, (wrapped.removeLast(), word), columns);
            else
                appendLongWord(wrapped, word, columns);
        }
        lines += wrapped;
    }
    return lines;
}

QString alignedLines(QList<QStringList> rows, std::optional<int> columns)
{
    QList<int> widths;
    for (QStringList& row : rows) {
        for (qsizetype i = 0; i < row.size(); ++i) {
            row[i] = cellText(row[i]);
            if (i == widths.size())
                widths.append(0);
            widths[i] = std::max(widths[i], displayWidth(row[i]));
        }
    }
    QString lines;
    for (const QStringList& row : rows) {
        QString start;
        for (qsizetype i = 0; i + 1 < row.size(); ++i)
            start += paddedToWidth(row[i], widths[i]) + QStringLiteral("  ");
        const QString last = row.value(row.size() - 1);
        lines += start +
                 (columns ? truncatedToWidth(last, std::max(narrowestText, *columns - displayWidth(start)))
                          : last) +
                 u'\n';
    }
    return lines;
}

QString printable(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar character : text) {
        if (character == u'\t')
            result += u' ';
        else if (character == u'\n' ||
                 (character.category() != QChar::Other_Control && !turnsDirection(character)))
            result += character;
    }
    return result;
}

QString oneLine(const QString& text)
{
    return printable(text.simplified());
}

QString dateText(Instant instant)
{
    return instant.toDateTime().toLocalTime().date().toString(Qt::ISODate);
}

QString timeText(Instant instant)
{
    return instant.toDateTime().toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

} // namespace mirel
