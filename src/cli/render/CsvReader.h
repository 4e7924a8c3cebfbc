#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/render/ByteReader.h"
#include "cli/render/RecordReader.h"

namespace velmor::cli {

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
    CsvReader(const std::string& name, char separator, DataEncoding encoding);

    bool next(Record& record) override;
    void addTo(privProperties& properties, const Record& record) const override;
    std::optional<double> progress() const override { return bytes_.progress(); }
    std::set<std::string> unusedColumns() const override { return unused_; }

private:
    struct Column {
        std::u16string name;
        bool isUsed = true;
    };

    void readHeader();
    bool readRow(Record& record);
    int readCell(Record& record);
    int readQuoted(Record& record);
    bool recover(const ByteReader::Place& begin);
    // False if the bytes are not in the data's encoding.
    bool decode(std::string_view bytes, std::u16string& text) const;

    const std::string name_;
    ByteReader bytes_;
    const bool isAnsi_;
    const int separator_;
    std::vector<Column> columns_;
    std::set<std::string> unused_;
    int recoveries_ = 0;
};

}  // namespace velmor::cli
