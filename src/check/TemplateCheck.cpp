#include "check/TemplateCheck.h"

#include <algorithm>

#include "automation/Convert.h"
#include "check/MarkupCheck.h"
#include "check/RtfCheck.h"
#include "check/Suggestion.h"
#include "common/TextFile.h"
#include "core/BuiltInCommands.h"
#include "core/EvaluationRun.h"
#include "text/Compare.h"

namespace velmor {

using automation::Variant;

namespace {

constexpr std::u16string_view kPathProperty = u"Path";
constexpr std::u16string_view kWhiteSpaceAndNul(u" \t\r\n\v\f\0", 7);
constexpr std::size_t kBytesToLookAt = 512;

// Of a file that nobody would include as text.
std::u16string binaryKind(std::string_view bytes) {
    struct Beginning {
        std::string_view bytes;
        std::u16string_view kind;
    };
    static constexpr Beginning kBeginnings[] = {
        {"\x89PNG", u"a PNG picture"},
        {"\xFF\xD8\xFF", u"a JPEG picture"},
        {"GIF8", u"a GIF picture"},
        {"BM", u"a bitmap"},
        {"%PDF", u"a PDF document"},
        {"PK\x03\x04", u"a ZIP archive"},
        {"\xD0\xCF\x11\xE0", u"a binary document"},
    };
    for (const Beginning& each : kBeginnings) {
        if (bytes.starts_with(each.bytes) && (each.bytes.size() > 2 || bytes.find('\0') < kBytesToLookAt)) {
            return std::u16string(each.kind);
        }
    }
    const bool isUtf16 = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
    const bool isText = bytes.starts_with("{\\rtf") || isUtf16 || bytes.find('\0') >= kBytesToLookAt;
    return isText ? std::u16string() : u"a binary file";
}

bool contains(const std::vector<std::u16string>& texts, std::u16string_view text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

}  // namespace

CheckResult TemplateCheck::run(std::u16string name, std::u16string text) {
    checkFile(std::move(name), std::move(text), {});
    properties_.reportUnset();
    CheckResult result{std::move(found_).take(), found_.more()};
    const auto fileOrder = [&](const Diagnostic& each) {
        return std::find_if(files_.begin(), files_.end(),
                            [&](const TemplateFile& file) { return file.name() == each.place.file; }) -
               files_.begin();
    };
    std::stable_sort(result.diagnostics.begin(), result.diagnostics.end(), [&](const auto& left, const auto& right) {
        if (left.place.file != right.place.file) return fileOrder(left) < fileOrder(right);
        return left.place.offset < right.place.offset;
    });
    return result;
}

void TemplateCheck::checkFile(std::u16string name, std::u16string text, std::vector<SourcePlace> includedFrom) {
    const TemplateFile& file = files_.emplace_back(std::move(name), std::move(text), std::move(includedFrom));
    checkRtf(file, found_);
    const std::vector<bool> isSound = checkMarkup(file, found_);
    for (std::size_t index = 0; index < file.tags().size(); ++index) {
        const TemplateTag& tag = file.tags()[index];
        if (tag.depth + file.includedFrom().size() == kMaximumLevels) {
            found_.add(DiagnosticCode::tooDeep, file, tag, u"tags are nested deeper than evaluation goes");
        }
        if (isSound[index] && tag.depth < kMaximumLevels) checkTag(TagParts(file, tag));
    }
}

void TemplateCheck::checkTag(const TagParts& tag) {
    handlers_.check(tag);
    if (tag.handler() != BuiltInCommands::handler) return;
    if (tag.command() == u"PROPERTY") properties_.read(tag);
    if (tag.command() == u"SETPROPERTY") {
        properties_.set(tag);
        checkPreprocess(tag);
    }
    if (tag.command() == u"SETPATH") setPath(tag);
    if (tag.command() == u"INCLUDE") checkInclude(tag);
}

// A value that is no truth value counts as False, which those that mean it do as well.
void TemplateCheck::checkPreprocess(const TagParts& tag) {
    const TagElement* const element = tag.find(u"PREPROCESS");
    const PropertyRef value = element != nullptr ? element->read(services_) : nullptr;
    if (!value || !isLiteral(value->ValueStr())) return;
    const std::u16string lower = lowerCase(value->ValueStr());
    const bool isTruthValue = value->ValueBoolean() || automation::toBoolean(value->Value()) || lower == u"no" ||
                              lower == u"n" || lower == u"f" || lower == u"off";
    if (isTruthValue) return;
    found_.add(DiagnosticCode::unsuitableValue, tag.file(), tag.tag(),
               u"PREPROCESS is neither True nor False: " + value->ValueStr());
}

// ---- Included files

// A text whose only tags read properties that are known.
std::optional<std::u16string> TemplateCheck::knownText(std::u16string text) const {
    const TopLevelTags found = findTopLevelTags(text);
    std::u16string known;
    std::size_t at = 0;
    for (const TagSpan& span : found.tags) {
        constexpr std::u16string_view kReads = u"TAG>PROPERTY:";
        const std::u16string_view inner = span.inner(text);
        if (!equalIgnoringCase(inner.substr(0, kReads.size()), kReads)) return std::nullopt;
        const std::u16string_view name =
            inner.substr(kReads.size(), inner.find_first_of(u"=:", kReads.size()) - kReads.size());
        const std::optional<std::u16string> value = properties_.knownValue(name);
        if (!value) return std::nullopt;
        known.append(text, at, span.open - at).append(*value);
        at = span.end();
    }
    known.append(text, at);
    return isLiteral(known) ? std::optional(known) : std::nullopt;
}

void TemplateCheck::setPath(const TagParts& tag) {
    path_ = knownText(tag.commandValue(services_));
    isPathKnown_ = path_.has_value();
}

// Nothing when the template has set the folder to what is not known.
std::optional<std::u16string> TemplateCheck::fullPath(std::u16string_view file) const {
    if (!isPathKnown_ || properties_.isSetByTemplate(kPathProperty)) return std::nullopt;
    const std::u16string folder =
        path_ ? *path_ : properties_.knownValue(kPathProperty).value_or(services_.folders.component());
    return BuiltInCommands::pathOf(file, folder, services_.folders.separator());
}

void TemplateCheck::checkInclude(const TagParts& tag) {
    const std::optional<std::u16string> file = knownText(tag.commandValue(services_));
    if (!file) return;
    if (file->empty()) {
        found_.add(DiagnosticCode::missingInclude, tag.file(), tag.tag(), u"the tag names no file");
        return;
    }
    const std::optional<std::u16string> path = fullPath(*file);
    if (!path) return;
    if (!services_.files.exists(*path)) {
        found_.add(DiagnosticCode::missingInclude, tag.file(), tag.tag(), u"the file " + *path + u" does not exist");
        return;
    }
    if (contains(including_, *path)) {
        found_.add(DiagnosticCode::includeCircle, tag.file(), tag.tag(), u"the file " + *path + u" includes itself");
        return;
    }
    checkIncludedFile(tag, *path);
}

void TemplateCheck::checkIncludedFile(const TagParts& tag, const std::u16string& path) {
    const std::optional<std::string> bytes = services_.files.read(path);
    if (!bytes) {
        found_.add(DiagnosticCode::missingInclude, tag.file(), tag.tag(), u"the file " + path + u" cannot be read");
        return;
    }
    if (const std::u16string kind = binaryKind(*bytes); !kind.empty()) {
        found_.add(DiagnosticCode::binaryInclude, tag.file(), tag.tag(), u"the file " + path + u" is " + kind);
        return;
    }
    std::u16string text = readTextFile(services_.files, path).value_or(std::u16string());
    if (BuiltInCommands::isListFile(path)) checkListFile(tag, path, text);
    if (!checked_.insert(path).second) return;
    if (including_.size() >= static_cast<std::size_t>(kMaximumLevels)) {
        found_.add(DiagnosticCode::tooDeep, tag.file(), tag.tag(),
                   u"files include each other deeper than evaluation goes");
        return;
    }
    std::vector<SourcePlace> includedFrom = tag.file().includedFrom();
    includedFrom.insert(includedFrom.begin(), tag.file().placeOf(tag.tag()));
    including_.push_back(path);
    checkFile(path.starts_with(u"./") ? path.substr(2) : path, std::move(text), std::move(includedFrom));
    including_.pop_back();
}

void TemplateCheck::checkListFile(const TagParts& tag, const std::u16string& path, std::u16string_view text) {
    privProperties list(services_);
    list.BuildList(text);
    const TagElement* const index = tag.find(u"INDEX");
    const TagElement* const choice = index != nullptr ? index : tag.find(u"KEY");
    if (choice == nullptr) return;
    const std::optional<std::u16string> value = knownText(choice->value(services_));
    if (!value) return;
    const std::optional<std::int32_t> position = index ? automation::toLong(Variant(*value)) : std::nullopt;
    if (index && !position) {
        found_.add(DiagnosticCode::unsuitableValue, tag.file(), tag.tag(), u"INDEX is not a number: " + *value);
        return;
    }
    if (index ? list.Item(*position) != nullptr : list.Item(*value) != nullptr) return;
    std::vector<std::u16string> names;
    for (std::int32_t i = 1; !index && i <= list.Count(); ++i) names.push_back(list.Item(i)->Name());
    found_.add(DiagnosticCode::missingEntry, tag.file(), tag.tag(),
               u"the list file " + path + u" has no entry " + *value, didYouMean(*value, names));
}

}  // namespace velmor
