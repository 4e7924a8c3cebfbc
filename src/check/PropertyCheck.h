#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "check/DiagnosticList.h"
#include "check/TagParts.h"
#include "properties/privProperties.h"

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

    void read(const TagParts& tag);
    void set(const TagParts& tag);
    // The properties of a list's entries, and of the lists in them: a tag that repeats a template sets them.
    void setByRows(privProperties& list);

    bool knowsGiven() const noexcept { return given_ != nullptr; }
    // The property that the host sets; null when it is not known, or the template sets one of the name.
    PropertyRef known(std::u16string_view name) const;
    bool isSetByTemplate(std::u16string_view name) const;

    // Each file that a tag came from must still be there.
    void reportUnset();
    // In the order of their first use, each name once, without regard to case. Each file that a tag came from must
    // still be there.
    std::vector<PropertyUse> uses() const;

private:
    struct Read {
        const TemplateFile* file;
        const TemplateTag* tag;
    };

    bool isUnset(const TagElement& parameter) const;
    void setByRows(privProperties& list, int level);

    platform::Services& services_;
    std::shared_ptr<privProperties> given_;
    DiagnosticList& found_;
    std::vector<Read> reads_;
    std::set<std::u16string> set_;  // in upper case
};

}  // namespace velmor
