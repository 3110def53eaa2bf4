#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

// Stands in for libFuzzer where that is missing: runs a fuzz target on seeds and on inputs made from them,
// the same ones each time. Arguments: the number of inputs, the directory of the seeds.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

class InputMaker
{
public:
    explicit InputMaker(std::vector<QByteArray> seeds)
        : m_seeds(std::move(seeds))
    {
    }

    QByteArray make()
    {
        QByteArray input = m_seeds[below(m_seeds.size())];
        for (std::size_t change = 1 + below(4); change > 0; --change)
            this->change(input);
        return input;
    }

private:
    // From 0 to `limit` - 1; 0 for an empty range. Plain remainders, since distributions differ between
    // libraries.
    std::size_t below(std::size_t limit) { return limit == 0 ? 0 : m_random() % limit; }

    qsizetype positionIn(const QByteArray& text)
    {
        return static_cast<qsizetype>(below(static_cast<std::size_t>(text.size()) + 1));
    }

    void change(QByteArray& input)
    {
        static constexpr std::array<const char*, 16> pieces = {
            "null", "true",    "{}",       "[]",      "\"\"", "-1", "1e999", "9223372036854775808",
            "0.5",  "\\ud83d", "\xf0\x9f", "\\u0000", "\"",   "}",  ",",     "[[[[[[[[[[[[[[[["};
        const qsizetype position = positionIn(input);
        switch (below(5)) {
        case 0:
            if (position < input.size())
                input[position] = static_cast<char>(below(256));
            break;
        case 1:
            input.remove(position, 1 + static_cast<qsizetype>(below(16)));
            break;
        case 2:
            input.insert(position, pieces.at(below(pieces.size())));
            break;
        case 3:
            input.truncate(position);
            break;
        default: {
            const QByteArray& other = m_seeds[below(m_seeds.size())];
            input.insert(position, other.mid(positionIn(other), static_cast<qsizetype>(below(64))));
        }
        }
    }

    std::vector<QByteArray> m_seeds;
    std::mt19937 m_random{1};
};

std::vector<QByteArray> readSeeds(const QString& directory)
{
    std::vector<QByteArray> seeds;
    for (const QFileInfo& entry : QDir(directory).entryInfoList(QDir::Files, QDir::Name)) {
        QFile file(entry.filePath());
        if (file.open(QIODevice::ReadOnly))
            seeds.push_back(file.readAll());
    }
    return seeds;
}

void run(const QByteArray& input)
{
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.constData()),
                           static_cast<std::size_t>(input.size()));
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const std::vector<QByteArray> seeds =
        argumentCount == 3 ? readSeeds(QString::fromLocal8Bit(arguments[2])) : std::vector<QByteArray>();
    if (seeds.empty()) {
        std::fputs("Give the number of inputs and a directory with at least one seed.\n", stderr);
        return EXIT_FAILURE;
    }
    for (const QByteArray& seed : seeds)
        run(seed);
    InputMaker maker(seeds);
    for (long inputs = std::strtol(arguments[1], nullptr, 10); inputs > 0; --inputs)
        run(maker.make());
    return EXIT_SUCCESS;
}
