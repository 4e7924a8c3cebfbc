#include "core/LiteralTags.h"

namespace velmor::literal {

namespace {

constexpr std::size_t kOpeningLength = 4;
constexpr std::size_t kClosingLength = 5;

char16_t fold(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

bool replaceFirst(std::u16string& text, const std::u16string& sought, const std::u16string& name, bool protect,
                  const Answer& answer) {
    const std::size_t position = findPlace(text, sought, 1);
    if (position == 0) return false;
    text.erase(position - 1, sought.size());
    const std::u16string value = answer(name, protect);
    text.insert(position - 1, evaluate(value, protect, answer));
    return true;
}

}  // namespace

std::size_t findPlace(const std::u16string& text, std::u16string_view sought, std::size_t start) {
    for (std::size_t at = start; at + sought.size() <= text.size() + 1; ++at) {
        std::size_t same = 0;
        while (same < sought.size() && fold(text[at - 1 + same]) == fold(sought[same])) ++same;
        if (same == sought.size()) return at;
    }
    return 0;
}

std::size_t findTagEnd(const std::u16string& text, std::size_t start) {
    int depth = 0;
    std::size_t close = 0;
    do {
        close = findPlace(text, u"</KV>", start);
        const std::size_t open = findPlace(text, u"<KV:", start);
        if (close == 0) return 0;
        if (open != 0 && open < close) {
            ++depth;
            start = open + 1;
        } else {
            --depth;
            start = close + 1;
        }
    } while (depth != -1);
    return close;
}

std::vector<Tag> topLevelTags(const std::u16string& text) {
    std::vector<Tag> tags;
    std::size_t position = findPlace(text, u"<KV:", 1);
    while (position != 0) {
        const std::size_t end = findTagEnd(text, position + 1);
        if (end != 0) {
            tags.push_back({position, end});
            position = end;
        }
        position = findPlace(text, u"<KV:", position + kClosingLength);
    }
    return tags;
}

std::u16string storedName(const std::u16string& text, const Tag& tag) {
    std::u16string name = text.substr(tag.open - 1 + kOpeningLength, tag.close - tag.open - kOpeningLength);
    if (!name.ends_with(u':')) name += u':';
    return name;
}

std::u16string evaluate(const std::u16string& value, bool protect, const Answer& answer) {
    std::u16string text = value;
    for (const Tag& tag : topLevelTags(value)) {
        const std::u16string name = storedName(value, tag);
        if (replaceFirst(text, u"<KV:" + name + u"</KV>", name, protect, answer)) continue;
        const std::u16string shorter = name.substr(0, name.size() - 1);
        replaceFirst(text, u"<KV:" + shorter + u"</KV>", name, protect, answer);
    }
    return text;
}

}  // namespace velmor::literal
