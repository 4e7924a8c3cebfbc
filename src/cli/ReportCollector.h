#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/TraceCollector.h"
#include "properties/privProperties.h"

namespace velmor::cli {

// Keeps the beginnings of values besides what a trace keeps, and which properties tags ask for.
class ReportCollector final : public TraceCollector, public LookupListener {
public:
    static constexpr std::size_t mostTags = 50'000;
    static constexpr std::size_t mostOfName = 1'000;
    static constexpr std::size_t mostOfValue = std::size_t{1} << 16;
    static constexpr std::size_t mostOfValues = std::size_t{1} << 24;  // of all together
    static constexpr std::size_t mostProperties = 10'000;

    struct Property {
        std::u16string name;              // as it was first asked for
        std::vector<std::uint32_t> tags;  // that found it or did not, each once
        std::size_t found = 0;
        std::size_t missed = 0;
        bool isReadElsewhere = false;  // by a tag that is not kept
    };

    // Listens to the collection until it is destroyed itself.
    explicit ReportCollector(std::shared_ptr<privProperties> properties);
    ~ReportCollector() override { properties_->listener(nullptr); }

    void tagEnds(std::size_t start, std::u16string_view result) noexcept override;
    void lookedUp(std::u16string_view psName, bool isFound) noexcept override;

    // As far as it is kept.
    std::u16string_view valueOf(std::size_t tag) const noexcept;
    // In the order in which they were first asked for. Properties that only steer evaluation are not among them.
    const std::vector<Property>& properties() const noexcept { return asked_; }

private:
    struct Value {
        std::size_t start = 0;
        std::size_t length = 0;
    };

    void keepValue(std::size_t tag, std::u16string_view result);
    Property* propertyOf(std::u16string_view name);

    const std::shared_ptr<privProperties> properties_;
    std::vector<Value> kept_;  // by the index of the tag
    std::u16string values_;
    std::vector<Property> asked_;
    std::unordered_map<std::u16string, std::size_t> known_;  // by name in upper case
};

}  // namespace velmor::cli
