#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/Documents.h"
#include "platform/Services.h"
#include "properties/privProperties.h"

namespace velmor::cli {

// The machine's folders, except that the template's folder replaces the component's: files without a
// path are searched there.
class TemplateFolders final : public platform::Folders {
public:
    TemplateFolders(const platform::Folders& machine, std::u16string folder)
        : machine_(machine), folder_(std::move(folder)) {}

    std::u16string commonData() const override { return machine_.commonData(); }
    std::u16string temporary() const override { return machine_.temporary(); }
    std::u16string component() const override { return folder_; }
    std::u16string machineName() const override { return machine_.machineName(); }
    char16_t separator() const override { return machine_.separator(); }

private:
    const platform::Folders& machine_;
    std::u16string folder_;
};

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

    bool namesProperties() const noexcept { return !propertyFile.empty() || !dataFile.empty() || !properties.empty(); }
};

// Reads a template. While it lives, included files are decoded as the template is. When the property "Path" is absent,
// they are searched in the template's folder (for standard input, in the current folder). Throws Failure (exitFile).
class TemplateInput {
public:
    TemplateInput(platform::Services& machine, const TemplateOptions& options);
    TemplateInput(const TemplateInput&) = delete;
    TemplateInput& operator=(const TemplateInput&) = delete;

    // The machine's, with the template's folder.
    platform::Services& services() noexcept { return services_; }
    Document& document() noexcept { return document_; }
    // Adds the properties, and "kvTag.RTF Tolerant" when it is absent.
    void addProperties(privProperties& properties) const;

private:
    void addSandbox(privProperties& properties) const;

    const TemplateOptions& options_;
    TemplateFolders folders_;
    platform::Services services_;
    Document document_;
};

}  // namespace velmor::cli
