#include "cli/render/RecordReader.h"

#include <algorithm>
#include <cctype>

#include "cli/Failure.h"
#include "cli/LineText.h"
#include "cli/Streams.h"
#include "cli/render/ByteReader.h"
#include "cli/render/CsvReader.h"
#include "cli/render/JsonReader.h"
#include "cli/render/SqliteReader.h"
#include "text/Compare.h"

namespace velmor::cli {
namespace {

std::string extensionOf(const std::string& name) {
    const std::size_t dot = name.find_last_of("./\\");
    std::string extension = dot == name.npos || name[dot] != '.' ? "" : name.substr(dot + 1);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char each) { return static_cast<char>(std::tolower(each)); });
    return extension;
}

DataFormat formatOf(const DataSource& source) {
    if (source.format != DataFormat::automatic) return source.format;
    const std::string extension = extensionOf(source.name);
    if (extension == "json") return DataFormat::json;
    if (extension == "jsonl" || extension == "ndjson") return DataFormat::jsonLines;
    if (extension == "sqlite" || extension == "sqlite3" || extension == "db" || !source.sql.empty()) {
        return DataFormat::sqlite;
    }
    return DataFormat::csv;
}

}  // namespace

std::unique_ptr<RecordReader> openRecords(const DataSource& source) {
    const DataFormat format = formatOf(source);
    const auto requireFormat = [&](bool isGiven, const char* option, DataFormat needed) {
        if (isGiven && format != needed) throw Failure(exitUsage, std::string(option) + " is not for these data");
    };
    requireFormat(!source.sql.empty(), "--sql", DataFormat::sqlite);
    requireFormat(source.separator != 0, "--separator", DataFormat::csv);
    requireFormat(source.encoding != DataEncoding::automatic, "--data-encoding", DataFormat::csv);
    switch (format) {
        case DataFormat::json:
            return std::make_unique<JsonArrayReader>(source.name);
        case DataFormat::jsonLines:
            return std::make_unique<JsonLinesReader>(source.name);
        case DataFormat::sqlite:
            return openSqlite(source.name, source.sql);
        default:
            return std::make_unique<CsvReader>(source.name, source.separator, source.encoding);
    }
}

bool setsRules(std::u16string_view name) noexcept {
    constexpr std::u16string_view prefix = u"kvTag.";
    return equalIgnoringCase(name, u"Path") || equalIgnoringCase(name.substr(0, prefix.size()), prefix);
}

std::string unusedRule(std::u16string_view name) {
    return "'" + shown(name) + "', whose name would set a rule of the evaluation";
}

}  // namespace velmor::cli
