#include "cli/Commands.h"

#include <memory>

#include "cli/ErrorReport.h"
#include "cli/PropertyFile.h"
#include "cli/Streams.h"
#include "common/TextFile.h"
#include "core/kvTag.h"
#include "properties/privProperties.h"
#include "properties/privProperty.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

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

void setProperty(privProperties& properties, const std::string& assignment) {
    const auto equals = assignment.find('=');
    properties.AddStr(fromUtf8(assignment.substr(0, equals)), fromUtf8(assignment.substr(equals + 1)), true);
}

// Does not change a value that the properties set, unless `exact`.
void makeTolerant(privProperties& properties, bool exact) {
    constexpr std::u16string_view name = u"kvTag.RTF Tolerant";
    if (exact || !properties.Item(name)) properties.AddBoolean(name, !exact, true);
}

std::u16string folderOf(std::u16string_view path, char16_t separator) {
    const auto last = path.find_last_of(separator == u'\\' ? u"\\/:" : u"/");
    if (last == path.npos) return u".";
    const bool isRoot = last == 0 || path[last] == u':' || (last > 0 && path[last - 1] == u':');
    return std::u16string(path.substr(0, isRoot ? last + 1 : last));
}

}  // namespace

ExitCode runEval(platform::Services& services, const EvalOptions& options) {
    const std::u16string inputPath = options.input == "-" ? u"" : fromUtf8(options.input);
    TemplateFolders folders(services.folders, folderOf(inputPath, services.folders.separator()));
    platform::Services here{services.registry, services.files,    services.clock, folders,
                            services.objects,  services.pictures, services.guids};

    if (options.encoding != EncodingChoice::ansi) useTextFileDecoder(&decodeIncluded);
    Document document =
        decodeTemplate(readAll(services.files, options.input), options.encoding, inputName(options.input));
    const auto tag = std::make_shared<kvTag>(here);
    const auto properties = tag->Properties().own();
    if (!options.propertyFile.empty()) {
        readPropertyFile(*properties, services.files, {options.propertyFile, options.passwordFile, options.encoding});
    }
    for (const auto& assignment : options.properties) setProperty(*properties, assignment);
    makeTolerant(*properties, options.exact);
    if (options.includePath) requireFolder(*options.includePath);
    if (options.includePath) properties->AddStr(u"Path", fromUtf8(*options.includePath), true);

    ErrorReport errors(inputName(options.input), document.text);
    tag->Value(std::move(document.text));
    const std::u16string result = tag->Result();
    const bool reported = errors.print();
    writeAll(services.files, options.output, encodeResult(result, document.encoding));
    tag->Dispose();
    return reported ? exitReported : exitDone;
}

}  // namespace velmor::cli
