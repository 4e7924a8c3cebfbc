#include "cli/TemplateInput.h"

#include <utility>

#include "cli/DataFile.h"
#include "cli/Streams.h"
#include "common/TextFile.h"
#include "core/Options.h"
#include "properties/privProperty.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

void setProperty(privProperties& properties, const std::string& assignment) {
    const auto equals = assignment.find('=');
    properties.AddStr(fromUtf8(assignment.substr(0, equals)), fromUtf8(assignment.substr(equals + 1)), true);
}

std::u16string folderOf(const std::string& input, char16_t separator) {
    const std::u16string path = input == "-" ? u"" : fromUtf8(input);
    const auto last = path.find_last_of(separator == u'\\' ? u"\\/:" : u"/");
    if (last == path.npos) return u".";
    const bool isRoot = last == 0 || path[last] == u':' || (last > 0 && path[last - 1] == u':');
    return path.substr(0, isRoot ? last + 1 : last);
}

}  // namespace

TemplateFiles TemplateFiles::read(const platform::Files& files, const TemplateOptions& options) {
    if (options.includePath) requireFolder(*options.includePath);
    if (const auto root = options.rules.find("kvTag.Include Root"); root != options.rules.end()) {
        requireFolder(root->second);
    }
    TemplateFiles read{readAll(files, options.input), {}, {}};
    if (!options.propertyFile.empty()) {
        read.properties = readPropertyText(files, {options.propertyFile, options.passwordFile, options.encoding});
    }
    if (!options.dataFile.empty()) read.data = readAll(files, options.dataFile);
    return read;
}

TemplateInput::TemplateInput(platform::Services& machine, const TemplateOptions& options, TemplateFiles files)
    : options_(options),
      files_(std::move(files)),
      folders_(machine.folders, folderOf(options.input, machine.folders.separator())),
      services_{machine.registry, machine.files,    machine.clock, folders_,
                machine.objects,  machine.pictures, machine.guids} {
    if (options.encoding != EncodingChoice::ansi) useTextFileDecoder(&decodeTextFileOrUtf8);
    document_ = decodeTemplate(files_.document, options.encoding, inputName(options.input));
    std::string().swap(files_.document);
    if (files_.properties) {
        privProperties properties(services_);
        addPropertyText(properties, *files_.properties);
        requireProperties(properties, *files_.properties, options_.propertyFile);
    }
}

std::shared_ptr<privProperties> TemplateInput::makeProperties(platform::Services& services,
                                                              const AddRecord& addRecord) const {
    auto made = std::make_shared<privProperties>(services);
    privProperties& properties = *made;
    if (files_.properties) addPropertyText(properties, *files_.properties);
    if (files_.data) addData(properties, *files_.data, options_.dataFile);
    if (addRecord) addRecord(properties);
    for (const auto& assignment : options_.properties) setProperty(properties, assignment);
    // A value that the properties set stays, unless `exact`.
    if (options_.exact || !properties.Item(tolerantProperty)) {
        properties.AddBoolean(tolerantProperty, !options_.exact, true);
    }
    if (options_.sandbox) addSandbox(properties, services.folders);
    for (const auto& [name, value] : options_.rules) properties.AddStr(fromUtf8(name), fromUtf8(value), true);
    if (options_.includePath) properties.AddStr(u"Path", fromUtf8(*options_.includePath), true);
    return made;
}

std::shared_ptr<kvTag> TemplateInput::makeTag(platform::Services& services) const {
    auto tag = std::make_shared<kvTag>(services);
    tag->Properties(Collection(makeProperties(services)));
    return tag;
}

TemplateCheck TemplateInput::makeCheck(bool isComplete) {
    const auto properties = makeProperties(services_);
    const bool areKnown = isComplete || options_.namesProperties();
    return {services_, areKnown ? properties : nullptr, EvaluationRules::of(Collection(properties))};
}

// For templates and data that nobody has read: tags in data are text, and only files of the template's folder are
// included. (The registry is that of the command line alone: see main.)
void TemplateInput::addSandbox(privProperties& properties, const platform::Folders& folders) const {
    properties.AddStr(u"kvTag.Data Tags", u"refuse", true);
    properties.AddStr(u"kvTag.Include Root",
                      options_.includePath ? fromUtf8(*options_.includePath) : folders.component(), true);
}

}  // namespace velmor::cli
