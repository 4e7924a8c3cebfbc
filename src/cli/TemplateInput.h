#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "check/TemplateCheck.h"
#include "cli/Documents.h"
#include "cli/PropertyFile.h"
#include "core/kvTag.h"
#include "platform/TemplateFolders.h"
#include "properties/privProperties.h"

namespace velmor::cli {

// A template and the properties that it is evaluated with, as the command line names them. UTF-8.
struct TemplateOptions {
    std::string input;  // empty or "-": standard input
    EncodingChoice encoding = EncodingChoice::automatic;
    std::string propertyFile;                  // in the text form of a property collection; empty: none
    std::string passwordFile;                  // of the property file; empty: none
    std::string dataFile;                      // JSON; its properties replace those of the property file; empty: none
    std::vector<std::string> properties;       // "name=value": texts, which replace those of the files
    std::optional<std::string> includePath;    // the property "Path", which replaces either
    bool exact = false;                        // not tolerant, whatever the properties are
    std::map<std::string, std::string> rules;  // properties that replace all others, as core/EvaluationRules.h has them
    bool sandbox = false;                      // see addSandbox

    bool namesProperties() const noexcept {
        return !propertyFile.empty() || !dataFile.empty() || !properties.empty() || includePath;
    }
};

// What the files that the options name hold.
struct TemplateFiles {
    std::string document;                    // bytes
    std::optional<PropertyText> properties;  // if a property file is named
    std::optional<std::string> data;         // bytes, if a data file is named

    // Throws Failure (exitFile), also for a folder of included files that does not exist.
    static TemplateFiles read(const platform::Files& files, const TemplateOptions& options);
};

// Takes a template. While it lives, included files are decoded as the template is. When the property "Path" is absent,
// they are searched in the template's folder (for standard input, in the current folder). Throws Failure (exitFile).
class TemplateInput {
public:
    TemplateInput(platform::Services& machine, const TemplateOptions& options)
        : TemplateInput(machine, options, TemplateFiles::read(machine.files, options)) {}
    // The options must last.
    TemplateInput(platform::Services& machine, const TemplateOptions& options, TemplateFiles files);
    TemplateInput(const TemplateInput&) = delete;
    TemplateInput& operator=(const TemplateInput&) = delete;

    // The machine's, with the template's folder.
    platform::Services& services() noexcept { return services_; }
    Document& document() noexcept { return document_; }
    // Those that the options give, and "kvTag.RTF Tolerant" when it is absent. `addRecord` adds a record's properties
    // where those of a data file would be added. Any number of threads may call it, each with its own services, which
    // replace this template's.
    using AddRecord = std::function<void(privProperties&)>;
    std::shared_ptr<privProperties> makeProperties(platform::Services& services, const AddRecord& addRecord = {}) const;
    // One with these properties and no value.
    std::shared_ptr<kvTag> makeTag() { return makeTag(services_); }
    std::shared_ptr<kvTag> makeTag(platform::Services& services) const;
    // A check under the rules and with the properties that the options name. If they name none, nobody knows what is
    // set, unless `isComplete`.
    TemplateCheck makeCheck(bool isComplete = false);

private:
    void addSandbox(privProperties& properties, const platform::Folders& folders) const;

    const TemplateOptions& options_;
    TemplateFiles files_;  // without the document
    platform::TemplateFolders folders_;
    platform::Services services_;
    Document document_;
};

}  // namespace velmor::cli
