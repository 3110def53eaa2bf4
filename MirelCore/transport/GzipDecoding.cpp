#include "transport/GzipDecoding.h"

#include <array>

#define ZLIB_CONST
#include <zlib.h>

namespace mirel {

namespace {

class Inflation
{
public:
    explicit Inflation(const QByteArray& compressed)
    {
        m_stream.next_in = reinterpret_cast<const Bytef*>(compressed.constData());
        m_stream.avail_in = static_cast<uInt>(compressed.size());
        constexpr int gzipOnly = 16;
        m_isReady = inflateInit2(&m_stream, gzipOnly + MAX_WBITS) == Z_OK;
    }
    ~Inflation()
    {
        if (m_isReady)
            inflateEnd(&m_stream);
    }
    Q_DISABLE_COPY_MOVE(Inflation)

    [[nodiscard]] bool isReady() const { return m_isReady; }
    [[nodiscard]] bool hasInput() const { return m_stream.avail_in > 0; }
    // Begins with the next member of the stream.
    [[nodiscard]] bool restart() { return inflateReset(&m_stream) == Z_OK; }

    // Appends the next piece to `bytes` and returns zlib's status.
    int expand(QByteArray& bytes)
    {
        m_stream.next_out = m_piece.data();
        m_stream.avail_out = static_cast<uInt>(m_piece.size());
        const int status = inflate(&m_stream, Z_NO_FLUSH);
        bytes.append(reinterpret_cast<const char*>(m_piece.data()),
                     static_cast<qsizetype>(m_piece.size() - m_stream.avail_out));
        return status;
    }

private:
    z_stream m_stream{};
    std::array<Bytef, 65'536> m_piece;
    bool m_isReady = false;
};

} // namespace

GzipDecoding decodeGzip(const QByteArray& compressed, qsizetype limit)
{
    Inflation inflation(compressed);
    if (!inflation.isReady())
        return {};
    QByteArray bytes;
    for (;;) {
        const int status = inflation.expand(bytes);
        if (bytes.size() > limit)
            return {.bytes = {}, .isTooLarge = true};
        if (status == Z_STREAM_END && !inflation.hasInput())
            return {.bytes = bytes};
        if (status == Z_STREAM_END && !inflation.restart())
            return {};
        if (status != Z_OK && status != Z_STREAM_END)
            return {};
    }
}

} // namespace mirel
