#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "cli/Failure.h"
#include "cli/LineText.h"
#include "cli/Streams.h"
#include "cli/render/ByteReader.h"
#include "cli/render/RecordReader.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

constexpr int endOfData = ByteReader::endOfData;
constexpr int unclosed = endOfData - 1;  // the end of the data, within quotes
// Each may read the data to their end: without a limit, a file of nothing but lone quotes would take forever.
constexpr int mostRecoveries = 100;

bool endsLine(int byte) {
    return byte == '\n' || byte == '\r' || byte == endOfData;
}

char separatorIn(std::string_view sample) {
    constexpr std::string_view candidates = ",;\t|";
    std::array<std::size_t, candidates.size()> counts{};
    bool isQuoted = false;
    for (const char each : sample) {
        if (each == '"') isQuoted = !isQuoted;
        if (!isQuoted && endsLine(each)) break;
        const std::size_t found = candidates.find(each);
        if (!isQuoted && found != candidates.npos) ++counts[found];
    }
    const auto most = std::max_element(counts.begin(), counts.end());
    return candidates[static_cast<std::size_t>(most - counts.begin())];
}

// Counts the characters beyond ASCII that are valid UTF-8, and the bytes that are not.
bool isMostlyAnsi(std::string_view sample) {
    constexpr char16_t broken = u'\uFFFD';
    while (!sample.empty() && static_cast<unsigned char>(sample.back()) >= 0x80) sample.remove_suffix(1);  // may be cut
    const std::u16string text = fromUtf8(sample);
    const auto isForeign = [](char16_t unit) { return unit >= 0x80; };
    const auto foreign = std::count_if(text.begin(), text.end(), isForeign);
    const auto invalid = std::count(text.begin(), text.end(), broken);
    return invalid > foreign - invalid;
}

bool isAnsi(DataEncoding encoding, ByteReader& bytes) {
    if (encoding != DataEncoding::automatic || bytes.hasMark())
        return encoding == DataEncoding::ansi && !bytes.hasMark();
    return isMostlyAnsi(bytes.sample());
}

void append(Record& record, std::string_view bytes) {
    const bool isUsable = record.failure.empty();
    const std::size_t before = record.bytes.size();
    record.append(bytes);
    if (isUsable && record.bytes.find('\0', before) != record.bytes.npos) record.failure = "the record holds a NUL";
}

std::string countOf(std::size_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

// Comma-separated values as RFC 4180 has them. The first line names the columns. Every value is a text. An empty line
// is no record. A quote within a value that does not begin with one is a character.
//
// The separator is the one of , ; tab | that occurs most often in the first line. The encoding is that of a byte order
// mark; without one it is UTF-8, unless most characters beyond ASCII at the beginning of the data (256 KB) are no
// UTF-8: then it is ANSI.
//
// After a record whose quotes are wrong, reading goes on with the line after the one in which it begins; in data from a
// pipe, with the line after the mistake.
class CsvReader final : public RecordReader {
public:
    // Throws Failure for a first line that names no columns, or names one twice.
    CsvReader(const std::string& name, const DataForm& form)
        : name_(inputName(name)),
          bytes_(name),
          isAnsi_((bytes_.peek(), isAnsi(form.encoding, bytes_))),
          separator_(static_cast<unsigned char>(form.separator != 0 ? form.separator : separatorIn(bytes_.sample()))) {
        readHeader();
    }

    bool next(Record& record) override {
        while (bytes_.peek() == '\r' || bytes_.peek() == '\n') bytes_.get();
        if (bytes_.peek() == endOfData) return false;
        if (!readRow(record)) return true;
        if (record.failure.empty() && record.cells.size() != columns_.size()) {
            record.failure = countOf(record.cells.size(), "field") + ", but the first line names " +
                             countOf(columns_.size(), "column");
        }
        return true;
    }

    void addTo(privProperties& properties, const Record& record) const override {
        std::u16string text;
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            if (!columns_[i].isUsed) continue;
            if (!decode(record.cell(i), text)) {
                throw RecordFailure("the value of '" + shown(columns_[i].name) +
                                    "' is not UTF-8 (--data-encoding ansi reads the ANSI code page)");
            }
            properties.SetText(columns_[i].name, text);
        }
    }
    std::optional<double> progress() const override { return bytes_.progress(); }
    std::set<std::string> unusedColumns() const override { return unused_; }

private:
    struct Column {
        std::u16string name;
        bool isUsed = true;
    };

    void readHeader() {
        Record header;
        while (bytes_.peek() == '\r' || bytes_.peek() == '\n') bytes_.get();
        if (bytes_.peek() == endOfData)
            throw Failure(exitFile, name_ + " is empty: its first line must name the columns");
        readRow(header);
        const auto refuse = [&](const std::string& reason) {
            throw Failure(exitFile, name_ + ":" + std::to_string(header.line) + ": " + reason);
        };
        if (!header.failure.empty()) refuse(header.failure);
        std::set<std::u16string> known;
        for (std::size_t i = 0; i < header.cells.size(); ++i) {
            Column column;
            if (!decode(header.cell(i), column.name)) refuse("the names of the columns are not UTF-8");
            if (!column.name.empty() && !known.insert(lowerCase(column.name)).second) {
                refuse("there are two columns '" + shown(column.name) + "'");
            }
            column.isUsed = !column.name.empty() && !setsRules(column.name);
            if (column.name.empty()) unused_.insert("column " + std::to_string(i + 1) + ", which has no name");
            if (setsRules(column.name)) unused_.insert(unusedRule(column.name));
            columns_.push_back(std::move(column));
        }
        if (known.empty()) refuse("the first line must name the columns");
    }

    // False when the quotes are wrong; the next line is then the one to go on with.
    bool readRow(Record& record) {
        const ByteReader::Place begin = bytes_.place();
        record.clear();
        record.line = begin.line;
        int byte = separator_;
        while (byte == separator_) {
            byte = readCell(record);
            record.cells.push_back({record.bytes.size()});
        }
        if (byte == '\r' && bytes_.peek() == '\n') bytes_.get();
        if (endsLine(byte)) return true;
        record.failure = byte == unclosed ? "a quote is never closed" : "text follows a closing quote";
        if (!recover(begin)) record.failure += byte == unclosed ? "; what follows it is not read" : "";
        return false;
    }

    // The byte after the cell, which has been read.
    int readCell(Record& record) {
        if (bytes_.peek() == '"') return readQuoted(record);
        const auto separator = static_cast<char>(separator_);
        for (auto plain = bytes_.getPlain(separator); !plain.empty(); plain = bytes_.getPlain(separator)) {
            append(record, plain);
        }
        return bytes_.get();
    }

    int readQuoted(Record& record) {
        bytes_.get();
        for (;;) {
            append(record, bytes_.getPlain('"'));
            const int byte = bytes_.get();
            if (byte == endOfData) return unclosed;
            if (byte == '"' && bytes_.peek() != '"') return bytes_.get();
            if (byte == '"') bytes_.get();
            const auto each = static_cast<char>(byte);
            append(record, {&each, 1});
        }
    }

    // False if the lines that the record has taken remain lost.
    bool recover(const ByteReader::Place& begin) {
        const bool isBack = ++recoveries_ <= mostRecoveries && bytes_.goBack(begin);
        if (bytes_.peek() != endOfData) bytes_.skipLine();
        return isBack;
    }
    // False if the bytes are not in the data's encoding.
    bool decode(std::string_view bytes, std::u16string& text) const {
        if (!isAnsi_ && isAscii(bytes)) {
            text.resize(bytes.size());
            std::copy(bytes.begin(), bytes.end(), text.begin());
            return true;
        }
        std::optional<std::u16string> decoded = isAnsi_ ? fromAnsi(bytes) : textOfUtf8(bytes);
        if (!decoded) return false;
        text = *std::move(decoded);
        return true;
    }

    const std::string name_;
    ByteReader bytes_;
    const bool isAnsi_;
    const int separator_;
    std::vector<Column> columns_;
    std::set<std::string> unused_;
    int recoveries_ = 0;
};

}  // namespace

std::unique_ptr<RecordReader> openCsv(const std::string& name, const DataForm& form) {
    return std::make_unique<CsvReader>(name, form);
}

}  // namespace velmor::cli
