#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/render/RecordReader.h"

namespace velmor::cli {

// The rows of a query on an SQLite file, which is opened for reading alone. An integer is a whole number, a real number
// a double, a text a text, NULL is Null; a row with binary data fails. Throws Failure where SQLite is not built in.
std::unique_ptr<RecordReader> openSqlite(const std::string& name, const std::string& sql);

}  // namespace velmor::cli
