#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "check/DiagnosticList.h"
#include "check/Suggestion.h"
#include "check/TagParts.h"
#include "properties/privProperties.h"
#include "text/Compare.h"

namespace velmor {

// A property that a template reads.
struct PropertyUse {
    std::u16string name;   // as the template first writes it
    bool isSet = false;    // by the template itself
    PropertyRef standard;  // the first default, tags in it not evaluated; null when none is given
};

// Notes the properties that a template reads and sets; finds, when all of its files are read, those that nothing sets.
class PropertyCheck {
public:
    // `given`: the properties that the host sets; null when they are not known. Nothing is then reported.
    PropertyCheck(platform::Services& services, std::shared_ptr<privProperties> given, DiagnosticList& found)
        : services_(services), given_(std::move(given)), found_(found) {}

    void read(const TagParts& tag) {
        if (!tag.parameters().empty()) reads_.push_back({&tag.file(), &tag.tag()});
    }

    void set(const TagParts& tag) {
        if (tag.parameters().empty()) return;
        const std::u16string name = tag.parameters().front().name();
        if (isLiteral(name)) set_.insert(upperCase(name));
    }

    // The properties of a list's entries, and of the lists in them: a tag that repeats a template sets them.
    void setByRows(privProperties& list) {
        for (const char16_t* const name : {u"INDEX", u"COUNT", u"FIRST", u"LAST", u"VALUE"}) set_.insert(name);
        setByRows(list, 0);
    }

    bool knowsGiven() const noexcept { return given_ != nullptr; }

    // The property that the host sets; null when it is not known, or the template sets one of the name.
    PropertyRef known(std::u16string_view name) const {
        return given_ && !isSetByTemplate(name) ? given_->Item(name) : nullptr;
    }

    bool isSetByTemplate(std::u16string_view name) const { return set_.count(upperCase(name)) != 0; }

    // Each file that a tag came from must still be there.
    void reportUnset() {
        if (!given_) return;
        std::vector<std::u16string> names(set_.begin(), set_.end());
        for (std::int32_t index = 1; index <= given_->Count(); ++index) names.push_back(given_->Item(index)->Name());
        std::map<std::u16string, std::u16string> hints;
        for (const Read& read : reads_) {
            const TagParts tag(*read.file, *read.tag);
            const TagElement& parameter = tag.parameters().front();
            if (!isUnset(parameter)) continue;
            const auto [hint, isNew] = hints.try_emplace(parameter.name());
            if (isNew) hint->second = didYouMean(hint->first, names);
            if (parameter.hasValue() && hint->second.empty()) continue;
            const auto code = parameter.hasValue() ? DiagnosticCode::similarPropertySet : DiagnosticCode::unsetProperty;
            found_.add(code, tag, u"nothing sets the property " + hint->first, hint->second);
        }
    }

    // In the order of their first use, each name once, without regard to case. Each file that a tag came from must
    // still be there.
    std::vector<PropertyUse> uses() const {
        std::vector<PropertyUse> uses;
        std::set<std::u16string> seen;
        for (const Read& read : reads_) {
            const TagParts tag(*read.file, *read.tag);
            const TagElement& parameter = tag.parameters().front();
            const std::u16string name = parameter.name();
            if (name.empty() || !isLiteral(name) || !seen.insert(upperCase(name)).second) continue;
            uses.push_back({name, isSetByTemplate(name), parameter.hasValue() ? parameter.read(services_) : nullptr});
        }
        return uses;
    }

private:
    struct Read {
        const TemplateFile* file;
        const TemplateTag* tag;
    };

    void setByRows(privProperties& list, int level) {
        if (level > privProperties::maximumNesting) return;
        for (std::int32_t index = 1; index <= list.Count(); ++index) {
            const PropertyRef property = list.Item(index);
            if (level > 0) set_.insert(upperCase(property->Name()));
            if (property->HasProperties()) setByRows(*property->Properties(), level + 1);
        }
    }

    // Of a property without a default, or with an empty one.
    bool isUnset(const TagElement& parameter) const {
        const std::u16string name = parameter.name();
        const bool isRequired = !parameter.hasValue() || parameter.isEmptyText();
        return isRequired && isLiteral(name) && !name.empty() && !isSetByTemplate(name) && !given_->Item(name);
    }

    platform::Services& services_;
    std::shared_ptr<privProperties> given_;
    DiagnosticList& found_;
    std::vector<Read> reads_;
    std::set<std::u16string> set_;  // in upper case
};

}  // namespace velmor
