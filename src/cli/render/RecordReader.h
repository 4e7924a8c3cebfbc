#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "cli/render/Record.h"
#include "properties/privProperties.h"

namespace velmor::cli {

enum class DataFormat { automatic, csv, json, jsonLines, sqlite };
enum class DataEncoding { automatic, ansi, utf8 };

// What a file of records holds, as the command line says. UTF-8.
struct DataForm {
    DataFormat format = DataFormat::automatic;
    DataEncoding encoding = DataEncoding::automatic;  // of CSV
    char separator = 0;                               // of CSV; 0: the first line shows it
    std::string sql;                                  // of SQLite
};

// Reads the records of a data file one after another, and holds no more than one.
class RecordReader {
public:
    virtual ~RecordReader() = default;

    // False at the end of the data. Sets everything but the number. A record that cannot be used has a failure, and
    // reading goes on after it where the data allows. Throws Failure when the data cannot be read at all.
    virtual bool next(Record& record) = 0;
    // Sets the properties of a record that has no failure; they replace those of the same names. Throws RecordFailure.
    // Any number of threads may call it, while another one reads.
    virtual void addTo(privProperties& properties, const Record& record) const = 0;
    // The part of the data that was read, from 0 to 1; nothing if nobody knows.
    virtual std::optional<double> progress() const { return std::nullopt; }
    // The columns met so far that give no property, for messages.
    virtual std::set<std::string> unusedColumns() const = 0;
};

// Throws Failure when the data cannot be opened, or has no records that anything could be made of. The name "-" is
// standard input.
std::unique_ptr<RecordReader> openRecords(const std::string& name, const DataForm& form);

// Those of one format.
std::unique_ptr<RecordReader> openCsv(const std::string& name, const DataForm& form);
std::unique_ptr<RecordReader> openJson(const std::string& name, bool isLines);
// The rows of a query on a file that is opened for reading alone. An integer is a whole number, a real number a double,
// a text a text, NULL is Null; a row with binary data fails. Throws Failure where SQLite is not built in.
std::unique_ptr<RecordReader> openSqlite(const std::string& name, const std::string& sql);

// Whether a value of that name would set the rules of the evaluation ("Path", "kvTag.Missing" and so on). Data set no
// rules: such a column gives no property.
bool setsRules(std::u16string_view name) noexcept;
// What unusedColumns says of it.
std::string unusedRule(std::u16string_view name);

}  // namespace velmor::cli
