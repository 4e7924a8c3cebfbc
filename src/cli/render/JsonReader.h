#pragma once

#include <mutex>
#include <string>

#include "cli/render/ByteReader.h"
#include "cli/render/RecordReader.h"

namespace velmor::cli {

// Makes properties of records that are JSON objects, as `eval --data` does.
class JsonRecords : public RecordReader {
public:
    void addTo(privProperties& properties, const Record& record) const override;
    std::optional<double> progress() const override { return bytes_.progress(); }
    std::set<std::string> unusedColumns() const override;

protected:
    explicit JsonRecords(const std::string& name) : bytes_(name) {}

    ByteReader bytes_;

private:
    bool leavesOut(std::u16string_view name) const;

    mutable std::mutex mutex_;
    mutable std::set<std::string> unused_;
};

// An array of objects, or one object. Its elements are found by their braces, so that a faulty one does not end the
// data. One whose braces do not match takes what follows with it.
class JsonArrayReader final : public JsonRecords {
public:
    explicit JsonArrayReader(const std::string& name) : JsonRecords(name) {}

    bool next(Record& record) override;

private:
    enum class State { begin, elements, last, end };

    int skipBlanks();
    bool begin(Record& record);
    bool nextElement(Record& record);
    bool endAfter(Record& record, const char* failure);
    void readElement(Record& record);
    void readScalar(Record& record);
    void readString(Record& record);

    State state_ = State::begin;
    bool isFirst_ = true;
};

// One object on each line. An empty line is no record.
class JsonLinesReader final : public JsonRecords {
public:
    explicit JsonLinesReader(const std::string& name) : JsonRecords(name) {}

    bool next(Record& record) override;
};

}  // namespace velmor::cli
