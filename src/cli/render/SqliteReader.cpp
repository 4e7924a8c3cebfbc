#include "cli/render/RecordReader.h"

#include "cli/Failure.h"

#ifdef _WIN32

namespace velmor::cli {

std::unique_ptr<RecordReader> openSqlite(const std::string&, const std::string&) {
    throw Failure(exitUsage, "velmor for Windows does not read SQLite; export the records as CSV or JSON");
}

}  // namespace velmor::cli

#else

#include <sqlite3.h>

#include <cstring>

#include "cli/DataFile.h"
#include "cli/LineText.h"
#include "cli/Streams.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

struct CloseDatabase {
    void operator()(sqlite3* handle) const noexcept { sqlite3_close_v2(handle); }
};
struct CloseQuery {
    void operator()(sqlite3_stmt* handle) const noexcept { sqlite3_finalize(handle); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Query = std::unique_ptr<sqlite3_stmt, CloseQuery>;

Database openDatabase(const std::string& name) {
    sqlite3* handle = nullptr;
    const int outcome = sqlite3_open_v2(name.c_str(), &handle, SQLITE_OPEN_READONLY, nullptr);
    Database database(handle);
    if (outcome == SQLITE_OK) return database;
    throw Failure(exitFile, "cannot read " + inputName(name) + ": " + (handle ? sqlite3_errmsg(handle) : "no memory"));
}

Query prepare(sqlite3* database, const std::string& name, const std::string& sql) {
    sqlite3_stmt* handle = nullptr;
    const char* rest = nullptr;
    const int outcome = sqlite3_prepare_v2(database, sql.c_str(), -1, &handle, &rest);
    Query query(handle);
    if (outcome != SQLITE_OK) throw Failure(exitFile, inputName(name) + ": --sql: " + sqlite3_errmsg(database));
    const bool isOne = std::string_view(rest).find_first_not_of(" \t\r\n;") == std::string_view::npos;
    if (!query || !isOne || sqlite3_column_count(handle) == 0 || sqlite3_stmt_readonly(handle) == 0) {
        throw Failure(exitUsage, "--sql must be one query that only reads");
    }
    return query;
}

template <class Number>
void appendNumber(std::string& bytes, Number number) {
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

template <class Number>
Number numberOf(std::string_view bytes) {
    Number number{};
    std::memcpy(&number, bytes.data(), sizeof number);
    return number;
}

class SqliteReader final : public RecordReader {
public:
    SqliteReader(const std::string& name, const std::string& sql)
        : name_(name), database_(openDatabase(name)), query_(prepare(database_.get(), name, sql)) {
        std::set<std::u16string> known;
        for (int i = 0; i < sqlite3_column_count(query_.get()); ++i) {
            const std::string column = sqlite3_column_name(query_.get(), i);
            names_.push_back(fromUtf8(column));
            if (!known.insert(lowerCase(names_.back())).second) {
                throw Failure(exitFile, "--sql gives two columns '" + column + "'");
            }
            if (setsRules(names_.back())) unused_.insert(unusedRule(names_.back()));
        }
    }

    bool next(Record& record) override {
        record.clear();
        const int outcome = sqlite3_step(query_.get());
        if (outcome == SQLITE_DONE) return false;
        if (outcome != SQLITE_ROW) {
            throw Failure(exitFile, inputName(name_) + ": " + sqlite3_errmsg(database_.get()));
        }
        for (int i = 0; i < static_cast<int>(names_.size()); ++i) addCell(record, i);
        return true;
    }

    void addTo(privProperties& properties, const Record& record) const override {
        for (std::size_t i = 0; i < names_.size(); ++i) {
            if (!setsRules(names_[i])) properties.Add(names_[i], valueOf(record, i), true);
        }
    }

    std::set<std::string> unusedColumns() const override { return unused_; }

private:
    void addCell(Record& record, int index) const {
        CellType type = CellType::text;
        switch (sqlite3_column_type(query_.get(), index)) {
            case SQLITE_INTEGER:
                type = CellType::integer;
                appendNumber<std::int64_t>(record.bytes, sqlite3_column_int64(query_.get(), index));
                break;
            case SQLITE_FLOAT:
                type = CellType::real;
                appendNumber<double>(record.bytes, sqlite3_column_double(query_.get(), index));
                break;
            case SQLITE_NULL:
                type = CellType::null;
                break;
            case SQLITE_BLOB:
                record.failure = "the value of '" + shown(names_[static_cast<std::size_t>(index)]) + "' is binary data";
                break;
            default:
                addText(record, index);
        }
        record.cells.push_back({record.bytes.size(), type});
    }

    void addText(Record& record, int index) const {
        const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(query_.get(), index));
        const auto size = static_cast<std::size_t>(sqlite3_column_bytes(query_.get(), index));
        if (record.bytes.size() + size > longestRecord) {
            record.failure = tooLong;
        } else if (text != nullptr) {
            record.bytes.append(text, size);
        }
    }

    automation::Variant valueOf(const Record& record, std::size_t index) const {
        const std::string_view bytes = record.cell(index);
        switch (record.cells[index].type) {
            case CellType::integer:
                return wholeNumber(numberOf<std::int64_t>(bytes));
            case CellType::real:
                return numberOf<double>(bytes);
            case CellType::null:
                return automation::Null{};
            case CellType::text:
                break;
        }
        auto text = textOfUtf8(bytes);
        if (!text) throw RecordFailure("the value of '" + shown(names_[index]) + "' is not UTF-8");
        return *std::move(text);
    }

    const std::string name_;
    const Database database_;
    const Query query_;
    std::vector<std::u16string> names_;
    std::set<std::string> unused_;
};

}  // namespace

std::unique_ptr<RecordReader> openSqlite(const std::string& name, const std::string& sql) {
    if (sql.empty()) throw Failure(exitUsage, "SQLite data need --sql");
    return std::make_unique<SqliteReader>(name, sql);
}

}  // namespace velmor::cli

#endif
