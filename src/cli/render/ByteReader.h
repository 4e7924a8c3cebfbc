#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace velmor::cli {

// The bytes of a data file or of standard input, one after another, with the number of the line. UTF-16 with a byte
// order mark comes as UTF-8; a byte order mark is left out. A line ends with LF, CR or both. Throws Failure when
// something cannot be read.
class ByteReader {
public:
    static constexpr int endOfData = -1;
    struct Place {
        std::uint64_t offset = 0;
        std::uint64_t line = 1;
    };

    // "-" is standard input.
    explicit ByteReader(const std::string& name);

    // The next byte; endOfData at the end.
    int get() {
        if (at_ == block_.size() && !refill()) return endOfData;
        const auto byte = static_cast<unsigned char>(block_[at_++]);
        if (byte == '\r' || (byte == '\n' && !wasReturn_)) ++line_;
        wasReturn_ = byte == '\r';
        return byte;
    }
    // The next bytes before `end` and before the end of a line, as many as are at hand: none when one of the two, or
    // the end of the data, comes next. Valid until the next call.
    std::string_view getPlain(char end);
    int peek() { return at_ < block_.size() || refill() ? static_cast<unsigned char>(block_[at_]) : endOfData; }
    // Of the next byte. (Between CR and LF it is the next line already.)
    Place place() const noexcept { return {offset_ + at_, line_}; }
    // Goes back. False, and nothing is done, where the data do not allow it: they come from a pipe, or are UTF-16.
    bool goBack(const Place& place);
    // After the end of the line.
    void skipLine();

    // The first bytes, as many as tell what the data is; all if they are few. To be called before anything is read.
    std::string_view sample();
    // Whether a byte order mark says how the data is encoded.
    bool hasMark() const noexcept { return hasMark_; }
    std::optional<double> progress() const noexcept;

private:
    using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
    enum class Form { bytes, utf16, utf16BigEndian };

    [[noreturn]] void refuse() const;
    std::size_t readSome(char* into, std::size_t size);
    bool refill();
    void takeMark();
    void takeUtf8();

    const std::string name_;
    File file_;
    bool isRegular_ = false;
    std::uint64_t size_ = 0;  // of a regular file
    Form form_ = Form::bytes;
    bool hasMark_ = false;
    bool isStarted_ = false;
    std::string halfUnits_;  // of UTF-16: bytes before the next block
    std::string block_;
    std::size_t at_ = 0;
    std::uint64_t offset_ = 0;  // of the block
    std::uint64_t line_ = 1;
    bool wasReturn_ = false;
};

}  // namespace velmor::cli
