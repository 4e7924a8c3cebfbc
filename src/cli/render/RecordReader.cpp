#include "cli/render/RecordReader.h"

#include <algorithm>
#include <cctype>

#include "cli/Failure.h"
#include "cli/LineText.h"
#include "cli/Streams.h"
#include "core/Options.h"
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

DataFormat formatOf(const std::string& name, const DataForm& form) {
    if (form.format != DataFormat::automatic) return form.format;
    const std::string extension = extensionOf(name);
    if (extension == "json") return DataFormat::json;
    if (extension == "jsonl" || extension == "ndjson") return DataFormat::jsonLines;
    if (extension == "sqlite" || extension == "sqlite3" || extension == "db" || !form.sql.empty()) {
        return DataFormat::sqlite;
    }
    return DataFormat::csv;
}

}  // namespace

std::unique_ptr<RecordReader> openRecords(const std::string& name, const DataForm& form) {
    const DataFormat format = formatOf(name, form);
    const auto requireFormat = [&](bool isGiven, const char* option, DataFormat needed) {
        if (isGiven && format != needed) throw Failure(exitUsage, std::string(option) + " is not for these data");
    };
    requireFormat(!form.sql.empty(), "--sql", DataFormat::sqlite);
    requireFormat(form.separator != 0, "--separator", DataFormat::csv);
    requireFormat(form.encoding != DataEncoding::automatic, "--data-encoding", DataFormat::csv);
    switch (format) {
        case DataFormat::json:
        case DataFormat::jsonLines:
            return openJson(name, format == DataFormat::jsonLines);
        case DataFormat::sqlite:
            return openSqlite(name, form.sql);
        default:
            return openCsv(name, form);
    }
}

bool setsRules(std::u16string_view name) noexcept {
    return equalIgnoringCase(name, u"Path") || isOption(name);
}

std::string unusedRule(std::u16string_view name) {
    return "'" + shown(name) + "', whose name would set a rule of the evaluation";
}

}  // namespace velmor::cli
