#include "common/Compression.h"

#include <zlib.h>

#include <algorithm>
#include <bit>
#include <limits>
#include <memory>

#include "text/Error.h"

namespace velmor {
namespace {

// zlib only reads what next_in points to.
Bytef* inputOf(std::string_view bytes) {
    return reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
}

uInt sizeOf(std::string_view bytes) {
    return static_cast<uInt>(bytes.size());
}

using End = std::unique_ptr<z_stream, int (*)(z_streamp)>;

// The size of what the stream gives; nothing when it is damaged, ends early, has bytes after its end, or gives more
// than the limit.
std::optional<std::size_t> decodedSize(std::string_view compressed, std::size_t limit) {
    z_stream stream{};
    stream.next_in = inputOf(compressed);
    stream.avail_in = sizeOf(compressed);
    if (inflateInit(&stream) != Z_OK) throw Error(7);
    const End end(&stream, &inflateEnd);
    std::string scratch(std::min(compressed.size() * 4 + 64, std::size_t{1} << 16), '\0');
    int outcome = Z_OK;
    while (outcome == Z_OK && stream.total_out <= limit) {
        stream.next_out = reinterpret_cast<Bytef*>(scratch.data());
        stream.avail_out = sizeOf(scratch);
        outcome = inflate(&stream, Z_NO_FLUSH);
    }
    if (outcome == Z_MEM_ERROR) throw Error(7);
    const bool isWhole = outcome == Z_STREAM_END && stream.avail_in == 0;
    return isWhole && stream.total_out <= limit ? std::optional<std::size_t>(stream.total_out) : std::nullopt;
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
    const End end(&stream, &deflateEnd);
    std::string result(deflateBound(&stream, static_cast<uLong>(bytes.size())), '\0');
    stream.next_in = inputOf(bytes);
    stream.avail_in = sizeOf(bytes);
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = sizeOf(result);
    if (deflate(&stream, Z_FINISH) != Z_STREAM_END) throw Error(7);
    result.resize(stream.total_out);
    return result;
}

// The stream is read twice, so that no memory is allocated for a result that is refused.
std::optional<std::string> decompressBytes(std::string_view compressed, std::size_t limit) {
    if (compressed.size() > std::numeric_limits<uInt>::max() / 2) return std::nullopt;
    const auto size = decodedSize(compressed, limit);
    if (!size) return std::nullopt;
    std::string bytes(*size, '\0');
    auto length = static_cast<uLong>(*size);
    const int outcome =
        uncompress(reinterpret_cast<Bytef*>(bytes.data()), &length, inputOf(compressed), sizeOf(compressed));
    if (outcome != Z_OK) throw Error(7);
    return bytes;
}

}  // namespace velmor
