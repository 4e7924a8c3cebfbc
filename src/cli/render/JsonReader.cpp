#include <mutex>

#include "check/LineIndex.h"
#include "cli/DataFile.h"
#include "cli/LineText.h"
#include "cli/render/ByteReader.h"
#include "cli/render/RecordReader.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

constexpr const char* cut = "the data ends in the middle of this record";

bool isBlank(int byte) {
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}

// The place of a byte of the record in the data's file.
std::string placeOf(const Record& record, std::size_t index) {
    const std::u16string before = fromUtf8(std::string_view(record.bytes).substr(0, index));
    const auto [line, column] = LineIndex(before).at(before.size());
    if (line == 1) return "character " + std::to_string(column) + " of the record";
    return "line " + std::to_string(record.line + line - 1) + ", column " + std::to_string(column);
}

// Makes properties of records that are JSON objects, as `eval --data` does.
class JsonRecords : public RecordReader {
public:
    void addTo(privProperties& properties, const Record& record) const override {
        const auto mistake =
            addObject(properties, record.bytes, [this](std::u16string_view name) { return leavesOut(name); });
        if (!mistake) return;
        const bool isUtf8 = isAscii(record.bytes) || textOfUtf8(record.bytes);
        throw RecordFailure(mistake->reason + (isUtf8 ? "" : " in UTF-8") + " (" + placeOf(record, mistake->index) +
                            ")");
    }
    std::optional<double> progress() const override { return bytes_.progress(); }

    std::set<std::string> unusedColumns() const override {
        const std::scoped_lock lock(mutex_);
        return unused_;
    }

protected:
    explicit JsonRecords(const std::string& name) : bytes_(name) {}

    ByteReader bytes_;

private:
    bool leavesOut(std::u16string_view name) const {
        if (!setsRules(name)) return false;
        const std::scoped_lock lock(mutex_);
        unused_.insert(unusedRule(name));
        return true;
    }

    mutable std::mutex mutex_;
    mutable std::set<std::string> unused_;
};

// An array of objects, or one object. Its elements are found by their braces, so that a faulty one does not end the
// data. One whose braces do not match takes what follows with it.
class JsonArrayReader final : public JsonRecords {
public:
    explicit JsonArrayReader(const std::string& name) : JsonRecords(name) {}

    bool next(Record& record) override {
        record.clear();
        const int byte = skipBlanks();
        record.line = bytes_.place().line;
        switch (state_) {
            case State::begin:
                return begin(record);
            case State::elements:
                return nextElement(record);
            case State::last:
                state_ = State::end;
                if (byte == ByteReader::endOfData) return false;
                record.failure = "text follows the end of the data (JSON lines need --data-format jsonl)";
                return true;
            case State::end:
                break;
        }
        return false;
    }

private:
    enum class State { begin, elements, last, end };

    // The first byte that is no blank, which is still to be read.
    int skipBlanks() {
        while (isBlank(bytes_.peek())) bytes_.get();
        return bytes_.peek();
    }

    bool begin(Record& record) {
        if (bytes_.peek() == '[') {
            bytes_.get();
            state_ = State::elements;
            return next(record);
        }
        if (bytes_.peek() != '{') return endAfter(record, "the data is neither a JSON array nor an object");
        state_ = State::last;
        readElement(record);
        return true;
    }

    bool nextElement(Record& record) {
        int byte = bytes_.peek();
        const bool hasComma = byte == ',';
        if (hasComma && !isFirst_) {
            bytes_.get();
            byte = skipBlanks();
            record.line = bytes_.place().line;
        }
        if (byte == ByteReader::endOfData) return endAfter(record, "the data ends before the array does");
        if (byte == ']') {
            bytes_.get();
            state_ = State::last;
            if (!hasComma) return next(record);
            record.failure = "a comma precedes the end of the array";
            return true;
        }
        readElement(record);
        if (!isFirst_ && !hasComma && record.failure.empty()) record.failure = "a comma is missing before this record";
        isFirst_ = false;
        return true;
    }

    bool endAfter(Record& record, const char* failure) {
        state_ = State::end;
        record.failure = failure;
        return true;
    }

    // Up to the brace that closes the first one.
    void readElement(Record& record) {
        if (bytes_.peek() != '{') return readScalar(record);
        std::size_t depth = 0;
        do {
            const int byte = bytes_.get();
            if (byte == ByteReader::endOfData) {
                endAfter(record, cut);
                return;
            }
            record.append(byte);
            if (byte == '"') readString(record);
            if (byte == '{') ++depth;
            if (byte == '}') --depth;
        } while (depth > 0);
    }

    // Whatever it is, up to the next comma or bracket.
    void readScalar(Record& record) {
        do {
            const int byte = bytes_.get();
            record.append(byte);
            if (byte == '"') readString(record);
        } while (bytes_.peek() != ',' && bytes_.peek() != ']' && bytes_.peek() != ByteReader::endOfData);
    }

    // After the opening quote. A string has no line ends, so one that is never closed ends with its line.
    void readString(Record& record) {
        for (int byte = bytes_.peek(); byte != ByteReader::endOfData && byte != '\n' && byte != '\r';
             byte = bytes_.peek()) {
            record.append(bytes_.get());
            if (byte == '"') return;
            if (byte == '\\' && bytes_.peek() != ByteReader::endOfData) record.append(bytes_.get());
        }
    }

    State state_ = State::begin;
    bool isFirst_ = true;
};

// One object on each line. An empty line is no record.
class JsonLinesReader final : public JsonRecords {
public:
    explicit JsonLinesReader(const std::string& name) : JsonRecords(name) {}

    bool next(Record& record) override {
        do {
            record.clear();
            record.line = bytes_.place().line;
            if (bytes_.peek() == ByteReader::endOfData) return false;
            int byte = bytes_.get();
            for (; byte != ByteReader::endOfData && byte != '\n' && byte != '\r'; byte = bytes_.get())
                record.append(byte);
            if (byte == '\r' && bytes_.peek() == '\n') bytes_.get();
        } while (record.bytes.find_first_not_of(" \t") == record.bytes.npos);
        return true;
    }
};

}  // namespace

std::unique_ptr<RecordReader> openJson(const std::string& name, bool isLines) {
    if (isLines) return std::make_unique<JsonLinesReader>(name);
    return std::make_unique<JsonArrayReader>(name);
}

}  // namespace velmor::cli
