#include "cli/render/ByteReader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include "cli/Failure.h"
#include "cli/Streams.h"
#include "cli/render/Interruption.h"
#include "text/Encoding.h"

#ifndef _WIN32
#include <poll.h>
#include <unistd.h>
#endif

namespace velmor::cli {
namespace {

constexpr std::size_t blockSize = std::size_t{1} << 18;

int keepOpen(std::FILE*) {
    return 0;
}

std::FILE* openToRead(const std::filesystem::path& path) {
#ifdef _WIN32
    return _wfopen(path.c_str(), L"rb");
#else
    return std::fopen(path.c_str(), "rb");
#endif
}

#ifndef _WIN32
constexpr std::size_t refused = static_cast<std::size_t>(-1);

// As many bytes of a pipe or a terminal as there are before its end; fewer when the run is interrupted.
std::size_t readStream(int descriptor, char* into, std::size_t size) {
    constexpr int milliseconds = 100;
    std::size_t filled = 0;
    while (filled < size && !Interruption::requested()) {
        pollfd waiting{descriptor, POLLIN, 0};
        if (poll(&waiting, 1, milliseconds) == 0) continue;
        const ssize_t count = ::read(descriptor, into + filled, size - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return refused;
        if (count == 0) break;
        filled += static_cast<std::size_t>(count);
    }
    return filled;
}
#endif

}  // namespace

ByteReader::ByteReader(const std::string& name) : name_(name), file_(nullptr, &std::fclose) {
    if (name == "-") {
        file_ = File(stdin, &keepOpen);
    } else {
        const std::filesystem::path path(fromUtf8(name));
        std::error_code none;
        isRegular_ = std::filesystem::is_regular_file(path, none);
        if (std::filesystem::is_directory(path, none)) throw Failure(exitFile, inputName(name) + " is a folder");
        file_ = File(openToRead(path), &std::fclose);
        if (!file_) refuse();
        if (isRegular_) size_ = std::filesystem::file_size(path, none);
    }
}

void ByteReader::refuse() const {
    throw Failure(exitFile, "cannot read " + inputName(name_) + ": " + std::strerror(errno));
}

std::size_t ByteReader::readSome(char* into, std::size_t size) {
    if (Interruption::requested()) return 0;
#ifndef _WIN32
    if (!isRegular_) {
        const std::size_t read = readStream(fileno(file_.get()), into, size);
        if (read == refused) refuse();
        return read;
    }
#endif
    const std::size_t count = std::fread(into, 1, size, file_.get());
    if (count == 0 && std::ferror(file_.get())) refuse();
    return count;
}

std::string_view ByteReader::getPlain(char end) {
    if (peek() == endOfData) return {};
    const auto begin = block_.begin() + static_cast<std::ptrdiff_t>(at_);
    const auto isLast = [end](char byte) { return byte == end || byte == '\n' || byte == '\r'; };
    const auto count = static_cast<std::size_t>(std::find_if(begin, block_.end(), isLast) - begin);
    const std::string_view plain(block_.data() + at_, count);
    if (count > 0) wasReturn_ = false;
    at_ += count;
    return plain;
}

// Leaves the block as it is at the end of the data.
bool ByteReader::refill() {
    if (!isStarted_) {
        takeMark();
        if (at_ < block_.size()) return true;
    }
    const std::uint64_t next = offset_ + block_.size();
    std::string block(blockSize, '\0');
    block.resize(readSome(block.data(), block.size()));
    if (block.empty() && halfUnits_.empty()) return false;
    block_ = std::move(block);
    at_ = 0;
    offset_ = next;
    if (form_ != Form::bytes) takeUtf8();
    return !block_.empty();
}

void ByteReader::takeMark() {
    isStarted_ = true;
    refill();
    const std::string_view block = block_;
    if (block.starts_with("\xEF\xBB\xBF")) {
        at_ = 3;
    } else if (block.starts_with("\xFF\xFE") || block.starts_with("\xFE\xFF")) {
        form_ = block.starts_with("\xFF") ? Form::utf16 : Form::utf16BigEndian;
        block_.erase(0, 2);
        takeUtf8();
    }
    hasMark_ = at_ > 0 || form_ != Form::bytes;
}

// Turns the block from UTF-16 into UTF-8. Half a unit, and the first half of a pair, wait for the next block; at the
// end of the data they become what toUtf8 makes of them.
void ByteReader::takeUtf8() {
    const bool isEnd = block_.empty();
    const std::string bytes = std::exchange(halfUnits_, {}) + block_;
    if (isEnd && bytes.size() % 2 != 0) {
        throw Failure(exitFile, inputName(name_) + " is not UTF-16 text: it ends with half a character");
    }
    std::u16string text = fromUtf16(bytes, form_ == Form::utf16BigEndian);
    const bool isSplit = !text.empty() && text.back() >= 0xD800 && text.back() < 0xDC00 && !isEnd;
    if (isSplit) text.pop_back();
    halfUnits_ = isEnd ? "" : bytes.substr(text.size() * 2);
    block_ = toUtf8(text);
}

bool ByteReader::goBack(const Place& place) {
    if (place.offset >= offset_) {
        at_ = static_cast<std::size_t>(place.offset - offset_);
    } else {
        if (!isRegular_ || form_ != Form::bytes) return false;
#ifdef _WIN32
        const bool isThere = _fseeki64(file_.get(), static_cast<long long>(place.offset), SEEK_SET) == 0;
#else
        const bool isThere = fseeko(file_.get(), static_cast<off_t>(place.offset), SEEK_SET) == 0;
#endif
        if (!isThere) refuse();
        block_.clear();
        at_ = 0;
        offset_ = place.offset;
    }
    line_ = place.line;
    wasReturn_ = false;
    return true;
}

void ByteReader::skipLine() {
    int byte = get();
    while (byte != endOfData && byte != '\n' && byte != '\r') byte = get();
    if (byte == '\r' && peek() == '\n') get();
}

std::string_view ByteReader::sample() {
    peek();
    return std::string_view(block_).substr(at_);
}

std::optional<double> ByteReader::progress() const noexcept {
    if (!isRegular_ || size_ == 0) return std::nullopt;
    const double read = static_cast<double>(offset_ + at_) * (form_ == Form::bytes ? 1 : 2);
    return read < static_cast<double>(size_) ? read / static_cast<double>(size_) : 1;
}

}  // namespace velmor::cli
