#include "cli/DataFile.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "cli/JsonFile.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

using automation::Variant;

constexpr std::string_view blanks = " \t\r\n";

Variant wholeNumberOf(bool negative, std::uint64_t amount) {
    constexpr std::uint64_t exact = std::uint64_t{1} << 53;
    if (amount > exact) return Variant(automation::Decimal{0, amount, 0, negative});
    const auto number = negative ? -static_cast<std::int64_t>(amount) : static_cast<std::int64_t>(amount);
    using Long = std::numeric_limits<std::int32_t>;
    if (number < Long::min() || number > Long::max()) return Variant(static_cast<double>(number));
    return Variant(static_cast<std::int32_t>(number));
}

// Hears of the parts of one JSON value in their order, and adds them to a collection.
class ObjectReader final : public nlohmann::json_sax<Json> {
public:
    ObjectReader(privProperties& into, const std::function<bool(std::u16string_view)>& leavesOut)
        : into_(into), leavesOut_(leavesOut) {}

    const std::string& reason() const noexcept { return reason_; }
    std::size_t mistake() const noexcept { return mistake_; }

    bool null() override { return add(Variant(automation::Null{})); }
    bool boolean(bool value) override { return add(Variant(value)); }
    bool number_integer(std::int64_t value) override { return add(wholeNumber(value)); }
    bool number_unsigned(std::uint64_t value) override { return add(wholeNumberOf(false, value)); }
    bool number_float(double value, const std::string&) override { return add(Variant(value)); }
    bool string(std::string& value) override { return add(Variant(fromUtf8(value))); }
    bool binary(Json::binary_t&) override { return refuse(noJson); }
    bool key(std::string& name) override {
        levels_.back().name = fromUtf8(name);
        levels_.back().isLeftOut = levels_.size() == 1 && leavesOut_ && leavesOut_(levels_.back().name);
        return true;
    }
    bool start_object(std::size_t) override { return start(false); }
    bool end_object() override { return end(); }
    bool start_array(std::size_t) override { return start(true); }
    bool end_array() override { return end(); }
    bool parse_error(std::size_t position, const std::string&, const nlohmann::detail::exception&) override {
        mistake_ = position > 0 ? position - 1 : 0;  // it counts from 1
        return refuse(noJson);
    }

private:
    struct Level {
        privProperties* properties;  // null: left out
        bool isArray;
        bool isLeftOut = false;  // the member that comes next
        std::int32_t index = 0;
        std::u16string name;
    };

    static constexpr const char* noJson = "this is not JSON";

    bool refuse(const char* reason) {
        reason_ = reason;
        return false;
    }
    // Null for a member that is left out.
    PropertyRef addProperty(Variant value) {
        Level& level = levels_.back();
        if (level.properties == nullptr || level.isLeftOut) return nullptr;
        if (level.isArray) level.name = fromUtf8(std::to_string(++level.index));
        return level.properties->Add(level.name, std::move(value), true);
    }
    bool add(Variant value) {
        if (levels_.empty()) return refuse("this is not a JSON object");
        addProperty(std::move(value));
        return true;
    }
    bool start(bool isArray) {
        if (levels_.empty()) {
            if (isArray) return refuse("this is not a JSON object");
            levels_.push_back({&into_, false, false, 0, {}});
            return true;
        }
        if (levels_.size() > privProperties::maximumNesting) return refuse("the data nests deeper than 100 levels");
        const PropertyRef property = addProperty(Variant(std::u16string()));
        levels_.push_back({property ? property->Properties().get() : nullptr, isArray, false, 0, {}});
        return true;
    }
    bool end() {
        levels_.pop_back();
        return true;
    }

    privProperties& into_;
    const std::function<bool(std::u16string_view)>& leavesOut_;
    std::vector<Level> levels_;
    std::string reason_;
    std::size_t mistake_ = 0;
};

}  // namespace

Variant wholeNumber(std::int64_t number) {
    const auto bits = static_cast<std::uint64_t>(number);
    return wholeNumberOf(number < 0, number < 0 ? 0 - bits : bits);
}

std::optional<JsonMistake> addObject(privProperties& into, std::string_view json,
                                     const std::function<bool(std::u16string_view)>& leavesOut) {
    ObjectReader reader(into, leavesOut);
    if (Json::sax_parse(json, &reader, Json::input_format_t::json, false)) return std::nullopt;
    return JsonMistake{std::min(reader.mistake(), json.size()), reader.reason()};
}

void addData(privProperties& into, std::string_view bytes, const std::string& name) {
    const JsonFile file = JsonFile::parse(bytes, name);
    const std::string& text = file.text;
    std::size_t begin = std::min(text.find_first_not_of(blanks), text.size());
    if (file.json.is_array()) begin = std::min(text.find_first_not_of(blanks, begin + 1), text.size());
    if (file.json.is_array() && file.json.empty()) file.refuse(begin, "the array is empty");
    if (const auto mistake = addObject(into, std::string_view(text).substr(begin))) file.refuse(begin, mistake->reason);
}

}  // namespace velmor::cli
