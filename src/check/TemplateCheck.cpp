#include "check/TemplateCheck.h"

#include <algorithm>
#include <utility>

#include "automation/Convert.h"
#include "check/MarkupCheck.h"
#include "check/RtfCheck.h"
#include "check/Suggestion.h"
#include "common/TextFile.h"
#include "core/BuiltInCommands.h"
#include "handlers/ITag4.h"
#include "text/Compare.h"

namespace velmor {

using automation::Variant;

namespace {

constexpr std::u16string_view pathProperty = u"Path";
constexpr std::size_t bytesToLookAt = 512;

// Of a file that nobody would include as text.
std::u16string binaryKind(std::string_view bytes) {
    struct Beginning {
        std::string_view bytes;
        std::u16string_view kind;
    };
    static constexpr Beginning beginnings[] = {
        {"\x89PNG", u"a PNG picture"},
        {"\xFF\xD8\xFF", u"a JPEG picture"},
        {"GIF8", u"a GIF picture"},
        {"BM", u"a bitmap"},
        {"%PDF", u"a PDF document"},
        {"PK\x03\x04", u"a ZIP archive"},
        {"\xD0\xCF\x11\xE0", u"a binary document"},
    };
    for (const Beginning& each : beginnings) {
        if (bytes.starts_with(each.bytes) && (each.bytes.size() > 2 || bytes.find('\0') < bytesToLookAt)) {
            return std::u16string(each.kind);
        }
    }
    const bool isUtf16 = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
    const bool isText = bytes.starts_with("{\\rtf") || isUtf16 || bytes.find('\0') >= bytesToLookAt;
    return isText ? std::u16string() : u"a binary file";
}

// A tag's answer is a level below that of the text in which it lies. The template's text is level 1.
constexpr std::int64_t levelsOfTag = 2;

// The characters of a text outside of its tags. None in RTF: evaluation writes it in another form.
class OutermostText {
public:
    explicit OutermostText(const TemplateFile& file)
        : end_(documentStandsAt(file.source(), 0) ? 0 : file.source().size()) {}

    // Between the last tag that was asked for and the next one.
    std::int64_t before(const TemplateTag& tag) {
        if (end_ == 0) return 0;
        return static_cast<std::int64_t>(tag.span.open - std::exchange(at_, tag.span.end()));
    }
    std::int64_t rest() const { return static_cast<std::int64_t>(std::max(end_, at_) - at_); }

private:
    std::size_t at_ = 0;
    std::size_t end_;
};

std::u16string shownName(const std::u16string& path) {
    return path.starts_with(u"./") ? path.substr(2) : path;
}

bool contains(const std::vector<std::u16string>& texts, std::u16string_view text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

}  // namespace

CheckResult TemplateCheck::run(std::u16string name, std::u16string text) {
    answering_.push_back(shownName(name));  // a file that includes the template is in a circle with it
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
    reportRtf(file, found_);
    checkTags(file, checkMarkup(file, found_));
}

void TemplateCheck::checkTags(const TemplateFile& file, const std::vector<bool>& isSound) {
    const std::int64_t deepest = rules_.maximumLevels - levelsOfTag;
    OutermostText text(file);
    for (std::size_t index = 0; index < file.tags().size(); ++index) {
        const TemplateTag& tag = file.tags()[index];
        const bool isOutermost = tag.depth == 0 && tag.span.complete();
        if (isOutermost) add(file, tag, {1, text.before(tag)});
        const auto depth = static_cast<std::int64_t>(tag.depth + file.includedFrom().size());
        if (depth == deepest + 1) {
            found_.add(DiagnosticCode::tooDeep, file, tag, u"tags are nested deeper than evaluation goes");
        }
        if (!isSound[index] || depth > deepest) continue;
        count(isOutermost, [&] { checkTag(TagParts(file, tag)); });
    }
    extent_.characters += text.rest();
}

// Runs the step; what it adds is forgotten if evaluation need not come to it.
template <typename Step>
void TemplateCheck::count(bool isCertain, Step step) {
    const Extent before = extent_;
    const bool wasCertain = std::exchange(isCertain_, isCertain_ && isCertain);
    step();
    isCertain_ = wasCertain;
    if (!isCertain) extent_ = before;
}

void TemplateCheck::checkTag(const TagParts& tag) {
    handlers_.check(tag);
    if (tag.handler() == rowsHandler) checkRows(tag);
    if (tag.handler() != builtInHandler) return;
    if (tag.command() == u"PROPERTY") {
        properties_.read(tag);
        checkGivenValue(tag);
    }
    if (tag.command() == u"SETPROPERTY") {
        properties_.set(tag);
        checkPreprocess(tag);
    }
    if (tag.command() == u"SETPATH") setPath(tag);
    if (tag.command() == u"INCLUDE") checkInclude(tag, tag.commandValue(services_));
}

void TemplateCheck::checkRows(const TagParts& tag) {
    const std::optional<std::u16string> name = knownText(tag.commandValue(services_));
    const PropertyRef list = name ? properties_.known(*name) : nullptr;
    if (list) {
        properties_.setByRows(*list->Properties());
    } else if (name && properties_.knowsGiven() && !properties_.isSetByTemplate(*name)) {
        found_.add(DiagnosticCode::unsetProperty, tag, u"nothing sets the property " + *name, {});
    }
    if (const TagElement* const row = tag.find(u"ROW")) checkInclude(tag, row->value(services_));
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
    found_.add(DiagnosticCode::unsuitableValue, tag, u"PREPROCESS is neither True nor False: " + value->ValueStr());
}

// ---- What tags yield

// Checks a text that a tag yields, each once. `name` in the form of checked_.
void TemplateCheck::checkAnswer(const TagParts& tag, const std::u16string& name, std::u16string text) {
    if (contains(answering_, name)) {
        return found_.add(DiagnosticCode::circle, tag, name + u" includes itself");
    }
    const auto [known, isNew] = checked_.try_emplace(name);
    if (!isNew) return add(tag.file(), tag.tag(), known->second);
    std::vector<SourcePlace> includedFrom = tag.file().includedFrom();
    includedFrom.insert(includedFrom.begin(), tag.file().placeOf(tag.tag()));
    const Extent before = extent_;
    answering_.push_back(name);
    checkFile(name, std::move(text), std::move(includedFrom));
    answering_.pop_back();
    known->second = {extent_.tags - before.tags, extent_.characters - before.characters};
    add(tag.file(), tag.tag(), {});
}

// Reports at the tag the limits that evaluation meets there first.
void TemplateCheck::add(const TemplateFile& file, const TemplateTag& tag, Extent more) {
    constexpr std::int64_t beyondLimits = std::int64_t{1} << 40;
    extent_.tags = std::min(extent_.tags + more.tags, beyondLimits);
    extent_.characters = std::min(extent_.characters + more.characters, beyondLimits);
    if (!isCertain_) return;
    if (extent_.tags > rules_.maximumTags && !std::exchange(hasTooManyTags_, true)) {
        found_.add(DiagnosticCode::tooManyTags, file, tag,
                   u"this is beyond the " + decimal(rules_.maximumTags) + u" tags that evaluation takes");
    }
    if (extent_.characters > rules_.maximumOutput && !std::exchange(isTooLong_, true)) {
        found_.add(DiagnosticCode::tooLong, file, tag,
                   u"the result is longer than " + decimal(rules_.maximumOutput) + u" characters");
    }
}

// Evaluation takes tags in values for the template's.
void TemplateCheck::checkGivenValue(const TagParts& tag) {
    if (!properties_.knowsGiven() || tag.parameters().empty()) return;
    const PropertyRef property = properties_.known(tag.parameters().front().name());
    if (!property) return;
    std::u16string value = property->ValueStr();
    if (isLiteral(value) || rules_.dataTags == EvaluationRules::DataTags::refuse) {
        return add(tag.file(), tag.tag(), {0, static_cast<std::int64_t>(value.size())});
    }
    checkAnswer(tag, u"property " + property->Name(), std::move(value));
}

// ---- Included files

// A text whose only tags read properties that are known.
std::optional<std::u16string> TemplateCheck::knownText(std::u16string text) const {
    const TopLevelTags found = findTopLevelTags(text);
    std::u16string known;
    std::size_t at = 0;
    for (const TagSpan& span : found.tags) {
        constexpr std::u16string_view reads = u"TAG>PROPERTY:";
        const std::u16string_view inner = span.inner(text);
        if (!equalIgnoringCase(inner.substr(0, reads.size()), reads)) return std::nullopt;
        const std::u16string_view name =
            inner.substr(reads.size(), inner.find_first_of(u"=:", reads.size()) - reads.size());
        const PropertyRef property = properties_.known(name);
        if (!property) return std::nullopt;
        known.append(text, at, span.open - at).append(property->ValueStr());
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
    if (!isPathKnown_ || properties_.isSetByTemplate(pathProperty)) return std::nullopt;
    const PropertyRef given = properties_.known(pathProperty);
    std::u16string folder = path_ ? *path_ : given ? given->ValueStr() : services_.folders.component();
    return includedPath(file, std::move(folder), services_.folders.separator());
}

// `name` may hold tags.
void TemplateCheck::checkInclude(const TagParts& tag, std::u16string name) {
    const std::optional<std::u16string> file = knownText(std::move(name));
    if (!file) return;
    if (file->empty()) {
        return found_.add(DiagnosticCode::missingInclude, tag, u"the tag names no file");
    }
    const std::optional<std::u16string> path = fullPath(*file);
    if (!path) return;
    const bool exists = rules_.admitsPath(*path) && services_.files.exists(*path);
    if (!rules_.admitsPath(*path) || (exists && !rules_.admitsFile(services_, *path))) {
        return found_.add(DiagnosticCode::outsideRoot, tag,
                          u"the file " + *path + u" is not in the folder that files may be included from");
    }
    if (!exists) {
        return found_.add(DiagnosticCode::missingInclude, tag, u"the file " + *path + u" does not exist");
    }
    checkIncludedFile(tag, *path);
}

void TemplateCheck::checkIncludedFile(const TagParts& tag, const std::u16string& path) {
    const std::optional<std::string> bytes = services_.files.read(path);
    if (!bytes) {
        return found_.add(DiagnosticCode::missingInclude, tag, u"the file " + path + u" cannot be read");
    }
    if (const std::u16string kind = binaryKind(*bytes); !kind.empty()) {
        return found_.add(DiagnosticCode::binaryInclude, tag, u"the file " + path + u" is " + kind);
    }
    std::u16string text = readTextFile(services_.files, path).value_or(std::u16string());
    const bool isList = isListFile(path);
    if (isList) checkListFile(tag, path, text);
    count(!isList,
          [&] { checkAnswer(tag, shownName(path), std::move(text)); });  // a list file yields one of its entries
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
        return found_.add(DiagnosticCode::unsuitableValue, tag, u"INDEX is not a number: " + *value);
    }
    if (index ? list.Item(*position) != nullptr : list.Item(*value) != nullptr) return;
    std::vector<std::u16string> names;
    for (std::int32_t i = 1; !index && i <= list.Count(); ++i) names.push_back(list.Item(i)->Name());
    found_.add(DiagnosticCode::missingEntry, tag, u"the list file " + path + u" has no entry " + *value,
               didYouMean(*value, names));
}

}  // namespace velmor
