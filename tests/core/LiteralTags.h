#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

// The model of the engine: the described procedures, step by step on flat strings. Positions are
// 1-based, 0 when absent; case is ignored.
namespace velmor::literal {

struct Tag {
    std::size_t open;   // of the opening marker
    std::size_t close;  // of the closing marker
    bool operator==(const Tag&) const = default;
};

inline char16_t fold(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

inline std::size_t findPlace(const std::u16string& text, std::u16string_view sought, std::size_t start) {
    for (std::size_t at = start; at + sought.size() <= text.size() + 1; ++at) {
        std::size_t same = 0;
        while (same < sought.size() && fold(text[at - 1 + same]) == fold(sought[same])) ++same;
        if (same == sought.size()) return at;
    }
    return 0;
}

// The position of the closing marker that belongs to the opening marker one before `start`.
inline std::size_t findTagEnd(const std::u16string& text, std::size_t start) {
    for (int depth = 0;;) {
        const std::size_t close = findPlace(text, u"</KV>", start);
        const std::size_t open = findPlace(text, u"<KV:", start);
        if (close == 0) return 0;
        const bool opens = open != 0 && open < close;
        depth += opens ? 1 : -1;
        if (depth == -1) return close;
        start = (opens ? open : close) + 1;
    }
}

inline std::vector<Tag> topLevelTags(const std::u16string& text) {
    std::vector<Tag> tags;
    for (std::size_t at = findPlace(text, u"<KV:", 1); at != 0; at = findPlace(text, u"<KV:", at + 5)) {
        const std::size_t end = findTagEnd(text, at + 1);
        if (end == 0) continue;
        tags.push_back({at, end});
        at = end;
    }
    return tags;
}

// Answers one tag by its stored name: the tag's value as it is inserted, not yet scanned for tags.
// `protect` is the parent's protection on entry and the tag's own on return.
using Answer = std::function<std::u16string(const std::u16string& name, bool& protect)>;

// The evaluation loop. `answer` is asked in the loop's order.
inline std::u16string evaluate(const std::u16string& value, bool protect, const Answer& answer) {
    std::u16string text = value;
    for (const Tag& tag : topLevelTags(value)) {
        std::u16string name = value.substr(tag.open + 3, tag.close - tag.open - 4);
        if (!name.ends_with(u':')) name += u':';
        for (const std::size_t length : {name.size(), name.size() - 1}) {  // with its last colon, and without
            const std::u16string sought = u"<KV:" + name.substr(0, length) + u"</KV>";
            const std::size_t place = findPlace(text, sought, 1);
            if (place == 0) continue;
            text.erase(place - 1, sought.size());
            bool own = protect;
            const std::u16string result = answer(name, own);
            text.insert(place - 1, evaluate(result, own, answer));
            break;
        }
    }
    return text;
}

}  // namespace velmor::literal
