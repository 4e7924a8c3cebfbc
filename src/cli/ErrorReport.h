#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "check/TemplatePlaces.h"
#include "core/ErrorLog.h"

namespace velmor::cli {

// Collects the entries of the error log while a template is evaluated, and reports them: the place of
// the outermost tag that led to an entry, that tag, and the error. Entries that differ in the tag alone
// share a line, with the place of the first and a count.
class ErrorReport final : public ErrorListener {
public:
    // `name` is the template's, for messages. The places must last.
    ErrorReport(std::string name, const TemplatePlaces& places) : name_(std::move(name)), places_(places) {}

    void heard(const ErrorLogEntry& entry, const OutermostTag& tag) override;
    // Returns whether there was anything to report.
    bool print() const;
    // A message for each line.
    std::vector<std::string> messages() const;
    // Nothing if no tag is being answered.
    std::optional<TemplatePlaces::Place> placeOf(const OutermostTag& tag) const;
    // "TEMPLATE:LINE:COLUMN", or the template's name alone.
    std::string textOf(const std::optional<TemplatePlaces::Place>& place) const;

    // Equal errors.
    struct Line {
        std::optional<TemplatePlaces::Place> place;  // of the first one's tag, if the template has it
        std::string text;
        std::size_t count = 0;
    };
    const std::vector<Line>& lines() const noexcept { return lines_; }
    // Errors beyond the lines that are kept.
    std::size_t others() const noexcept { return others_; }

private:
    std::string name_;
    const TemplatePlaces& places_;
    std::vector<Line> lines_;
    std::unordered_map<std::u16string, std::size_t> known_;  // the line of each error
    std::size_t others_ = 0;
};

}  // namespace velmor::cli
