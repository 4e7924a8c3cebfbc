#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "platform/Services.h"
#include "rtf/tables/TableMarkers.h"

namespace velmor::test {

class CountedGuids : public platform::Guids {
public:
    std::u16string next() override {
        const std::string digits = std::to_string(1000000000000 + ++count_).substr(1);
        return u"{00000000-0000-0000-0000-" + std::u16string(digits.begin(), digits.end()) + u"}";
    }

private:
    std::int64_t count_ = 0;
};

// The text with its identifiers numbered in order of appearance: the order in which tables got them does
// not matter.
inline std::u16string withNumberedIdentities(std::u16string text) {
    std::map<std::u16string, std::u16string> numbers;
    CountedGuids guids;
    for (const std::u16string_view marker : {startTableMarker, endTableMarker}) {
        for (std::size_t at = 0; (at = text.find(marker, at)) != std::u16string::npos;) {
            at += marker.size();
            if (text.find_first_not_of(u"{}-0123456789", at) < at + 39) continue;
            std::u16string& number = numbers[text.substr(at, 38)];
            if (number.empty()) number = guids.next();
            text.replace(at, 38, number);
        }
    }
    return text;
}

}  // namespace velmor::test
