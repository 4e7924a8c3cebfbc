#include "common/Compression.h"

#include <zlib.h>

#include <algorithm>
#include <bit>
#include <limits>
#include <memory>
#include <vector>

#include "common/Base64.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor {
namespace {

// No deflate stream grows by more than this when it is decoded.
constexpr std::size_t kGreatestRatio = 1032;

// zlib only reads what next_in points to.
Bytef* inputOf(std::string_view bytes) {
    return reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
}

class Inflater {
public:
    explicit Inflater(std::string_view bytes) {
        stream_.next_in = inputOf(bytes);
        stream_.avail_in = static_cast<uInt>(bytes.size());
        if (inflateInit(&stream_) != Z_OK) throw Error(7);
    }
    ~Inflater() { inflateEnd(&stream_); }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    // Decodes into the space and returns how much of it was filled; nothing when the stream is damaged or
    // incomplete.
    std::optional<std::size_t> fill(char* space, std::size_t size) {
        stream_.next_out = reinterpret_cast<Bytef*>(space);
        stream_.avail_out = static_cast<uInt>(size);
        const int outcome = inflate(&stream_, Z_NO_FLUSH);
        if (outcome == Z_MEM_ERROR) throw Error(7);
        ended_ = outcome == Z_STREAM_END;
        const std::size_t filled = size - stream_.avail_out;
        if (!ended_ && (outcome != Z_OK || filled == 0)) return std::nullopt;
        return filled;
    }

    bool ended() const { return ended_; }
    bool atEndOfInput() const { return stream_.avail_in == 0; }

private:
    z_stream stream_{};
    bool ended_ = false;
};

// The decoded size of the stream; nothing when it is damaged or the size exceeds the limit.
std::optional<std::size_t> decodedSize(std::string_view compressed, std::size_t limit) {
    Inflater inflater(compressed);
    std::vector<char> scratch(std::size_t{1} << 16);
    std::size_t total = 0;
    while (!inflater.ended()) {
        const auto filled = inflater.fill(scratch.data(), scratch.size());
        if (!filled) return std::nullopt;
        total += *filled;
        if (total > limit) return std::nullopt;
    }
    return total;
}

std::optional<std::string> decode(std::string_view compressed, std::size_t firstStep) {
    Inflater inflater(compressed);
    std::string result;
    for (std::size_t step = firstStep; !inflater.ended(); step = result.size()) {
        const std::size_t done = result.size();
        result.resize(done + step);
        const auto filled = inflater.fill(result.data() + done, step);
        if (!filled) return std::nullopt;
        result.resize(done + *filled);
    }
    if (!inflater.atEndOfInput()) return std::nullopt;
    return result;
}

}  // namespace

std::string compressBytes(std::string_view bytes) {
    if (bytes.size() > std::numeric_limits<uInt>::max() / 2) throw Error(7);
    // Short texts get a small window and a small table: clearing the usual ones would cost more than the text itself.
    const int window = std::clamp(static_cast<int>(std::bit_width(bytes.size())), 9, 15);
    const int memory = std::min(window - 7, 8);
    z_stream stream{};
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, window, memory, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw Error(7);
    }
    const std::unique_ptr<z_stream, int (*)(z_streamp)> end(&stream, &deflateEnd);
    std::string result(deflateBound(&stream, static_cast<uLong>(bytes.size())), '\0');
    stream.next_in = inputOf(bytes);
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    if (deflate(&stream, Z_FINISH) != Z_STREAM_END) throw Error(7);
    result.resize(stream.total_out);
    return result;
}

std::u16string compressedText(std::u16string_view text) {
    return base64(compressBytes(toUtf8(text)));
}

std::optional<std::string> decompressBytes(std::string_view compressed, std::size_t limit) {
    if (compressed.size() > std::numeric_limits<uInt>::max() / 2) return std::nullopt;
    if (compressed.size() <= limit / kGreatestRatio) return decode(compressed, compressed.size() * 4 + 64);
    const auto size = decodedSize(compressed, limit);
    return size ? decode(compressed, *size + 1) : std::nullopt;
}

std::optional<std::u16string> textFromCompressed(std::u16string_view encoded) {
    const auto compressed = fromBase64(encoded);
    if (!compressed) return std::nullopt;
    const auto bytes = decompressBytes(*compressed);
    return bytes ? std::optional(fromUtf8(*bytes)) : std::nullopt;
}

}  // namespace velmor
