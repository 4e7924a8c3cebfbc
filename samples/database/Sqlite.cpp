#include "Sqlite.h"

#include "text/Encoding.h"
#include "text/Error.h"

namespace sample {

namespace {

[[noreturn]] void raise(sqlite3* handle) {
    throw velmor::Error(5, u"Sample.Database", velmor::fromUtf8(handle ? sqlite3_errmsg(handle) : "out of memory"));
}

}  // namespace

Connection::Connection(std::u16string_view path) {
    sqlite3* handle = nullptr;
    const int outcome = sqlite3_open(velmor::toUtf8(path).c_str(), &handle);
    handle_.reset(handle);
    if (outcome != SQLITE_OK) raise(handle);
}

void Connection::execute(const char* sql) {
    if (sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) raise(handle());
}

Statement::Statement(const Connection& connection, const char* sql) : connection_(connection.handle()) {
    sqlite3_stmt* handle = nullptr;
    const int outcome = sqlite3_prepare_v2(connection_, sql, -1, &handle, nullptr);
    handle_.reset(handle);
    check(outcome);
}

void Statement::check(int outcome) const {
    if (outcome != SQLITE_OK) raise(connection_);
}

Statement& Statement::bind(int parameter, std::int64_t value) {
    check(sqlite3_bind_int64(handle_.get(), parameter + 1, value));
    return *this;
}

Statement& Statement::bind(int parameter, std::u16string_view value) {
    const int bytes = static_cast<int>(value.size() * sizeof(char16_t));
    check(sqlite3_bind_text16(handle_.get(), parameter + 1, value.data(), bytes, SQLITE_TRANSIENT));
    return *this;
}

bool Statement::step() {
    const int outcome = sqlite3_step(handle_.get());
    if (outcome != SQLITE_ROW && outcome != SQLITE_DONE) raise(connection_);
    return outcome == SQLITE_ROW;
}

std::int32_t Statement::number(int column) const {
    return sqlite3_column_int(handle_.get(), column);
}

std::u16string Statement::text(int column) const {
    const auto* const units = static_cast<const char16_t*>(sqlite3_column_text16(handle_.get(), column));
    if (units == nullptr) return {};
    return {units, static_cast<std::size_t>(sqlite3_column_bytes16(handle_.get(), column)) / sizeof(char16_t)};
}

}  // namespace sample
