#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace sample {

// An open database file. An error of SQLite is raised as error 5 with SQLite's message.
class Connection {
public:
    explicit Connection(std::u16string_view path);  // makes an absent file

    void execute(const char* sql);
    sqlite3* handle() const noexcept { return handle_.get(); }

private:
    struct Close {
        void operator()(sqlite3* handle) const noexcept { sqlite3_close_v2(handle); }
    };
    std::unique_ptr<sqlite3, Close> handle_;
};

// One statement; parameters and columns are counted from 0.
class Statement {
public:
    Statement(const Connection& connection, const char* sql);

    Statement& bind(int parameter, std::int64_t value);
    Statement& bind(int parameter, std::u16string_view value);
    bool step();  // true when a row can be read
    std::int32_t number(int column) const;
    std::u16string text(int column) const;

private:
    struct Finish {
        void operator()(sqlite3_stmt* handle) const noexcept { sqlite3_finalize(handle); }
    };
    void check(int outcome) const;

    sqlite3* connection_;
    std::unique_ptr<sqlite3_stmt, Finish> handle_;
};

}  // namespace sample
