#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "LiteralBuilder.h"
#include "text/privStrCat.h"

namespace velmor::test {

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

// A tag's result whose builder has a wrong length.
struct FixedResult : ResultSource {
    FixedResult(std::u16string_view width, std::u16string_view result) : text(result) { builder->Append(width); }
    std::shared_ptr<const privStrCat> resultBuilder() override { return builder; }
    std::u16string result() override { return text; }

    std::shared_ptr<privStrCat> builder = std::make_shared<privStrCat>();
    std::u16string text;
};

// A call of a builder's member, with as many operands as it takes.
struct Call {
    std::string_view name = {};
    std::int32_t x = 0, y = 0;
    std::u16string a = {}, b = {};
    bool binary = true, rtf = false;
};

inline std::string show(const Call& call) {
    const auto quoted = [](const std::u16string& text) { return ", \"" + toUtf8(text) + "\""; };
    return std::string(call.name) + "(" + std::to_string(call.x) + ", " + std::to_string(call.y) + quoted(call.a) +
           quoted(call.b) + (call.binary ? ", binary" : "") + (call.rtf ? ", rtf)\n" : ")\n");
}
inline std::u16string show(std::int32_t value) {
    return fromUtf8(std::to_string(value));
}

// Members that are called often are listed more than once.
// clang-format off
constexpr std::string_view kMembers[] = {
    "Append", "Append", "AppendVal", "Prepend", "Surround", "DumpVal", "Reset", "GrowthRate", "Find", "Find",
    "FindReverse", "FindContains", "FindCount", "WordCount", "Ascii", "FindBraceGroupEnd", "ScanBraceGroupEnd",
    "FindBraceGroupStart", "SubString", "MidStr", "LeftStr", "RightStr", "LeftStrLessBy", "TrimStr", "TrimLeftStr",
    "TrimRightStr", "Insert", "Insert", "InsertTagResult", "Remove", "Remove", "RemoveFromTo", "Replace", "Replace",
    "ModifyMidStr", "ModifyTrimStr", "ModifyTrimLeftStr", "ModifyTrimRightStr", "ModifyUCaseStr", "ModifyLCaseStr"};
// clang-format on

// Makes the call and describes its result.
template <typename Builder>
std::u16string perform(Builder& to, const Call& call) {
    const auto& [name, x, y, a, b, binary, rtf] = call;
    std::int32_t from = x, end = y, limit = y;
    const auto pair = [&] { return show(from) + u", " + show(end); };
    if (name == "Append") return to.Append(a), u"";
    if (name == "AppendVal") return to.AppendVal(a), u"";
    if (name == "Prepend") return to.Prepend(a), u"";
    if (name == "Surround") return to.Surround(a, b), u"";
    if (name == "DumpVal") return to.DumpVal();
    if (name == "Reset") return to.Reset(), u"";
    if (name == "GrowthRate") return to.GrowthRate(x), u"";
    if (name == "Find") return show(to.Find(a, x, binary));
    if (name == "FindReverse") return show(to.FindReverse(a, x, binary));
    if (name == "FindContains") return show(to.FindContains(a, x, binary));
    if (name == "FindCount") return show(to.FindCount(a, x, y, binary, rtf));
    if (name == "WordCount") return show(to.WordCount());
    if (name == "Ascii") return show(to.Ascii(x));
    if (name == "FindBraceGroupEnd") return to.FindBraceGroupEnd(x, a, y, from, end), pair();
    if (name == "ScanBraceGroupEnd") return to.ScanBraceGroupEnd(x, a, y, from, end), pair();
    if (name == "FindBraceGroupStart") return to.FindBraceGroupStart(x, from), show(from);
    if (name == "SubString") return to.SubString(x, y);
    if (name == "MidStr") return to.MidStr(x, y);
    if (name == "LeftStr") return to.LeftStr(x);
    if (name == "RightStr") return to.RightStr(x);
    if (name == "LeftStrLessBy") return to.LeftStrLessBy(x);
    if (name == "TrimStr") return to.TrimStr();
    if (name == "TrimLeftStr") return to.TrimLeftStr();
    if (name == "TrimRightStr") return to.TrimRightStr();
    if (name == "Insert") return show(to.Insert(a, x));
    if (name == "Remove") return show(to.Remove(x, y));
    if (name == "RemoveFromTo") return show(to.RemoveFromTo(x, y));
    if (name == "Replace") return end = to.Replace(a, b, from, limit, binary), pair();
    if (name == "ModifyMidStr") return to.ModifyMidStr(x, a), u"";
    if (name == "ModifyTrimStr") return to.ModifyTrimStr(a), u"";
    if (name == "ModifyTrimLeftStr") return to.ModifyTrimLeftStr(a), u"";
    if (name == "ModifyTrimRightStr") return to.ModifyTrimRightStr(a), u"";
    if (name == "ModifyUCaseStr") return to.ModifyUCaseStr(x, y), u"";
    if (name == "ModifyLCaseStr") return to.ModifyLCaseStr(x, y), u"";
    if (name != "InsertTagResult") return u"no such member";
    FixedResult source(b, a);
    return show(to.InsertTagResult(source, x));
}

// ... or the error that it raised.
template <typename Builder>
std::u16string outcome(Builder& builder, const Call& call) {
    try {
        return perform(builder, call);
    } catch (const Error& error) {
        return error.source() + u" " + show(error.number());
    }
}

// Compares privStrCat with LiteralBuilder in a sequence of calls that the bytes select.
class BuilderDuel {
public:
    BuilderDuel(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {}

    // The first difference, with the calls that led to it; empty without one.
    std::string run() {
        while (data_ != end_ && fault_.empty()) {
            const Call call = next();
            calls_ += show(call);
            compare("result", outcome(fast_, call), outcome(slow_, call));
            compare("content", fast_.ReturnVal(), slow_.ReturnVal());
            compare("tail", fast_.spareTail(), slow_.spareTail());
            compare("capacity", show(fast_.BufferLength()), show(slow_.BufferLength()));
            compare("growth rate", show(fast_.GrowthRate()), show(slow_.GrowthRate()));
        }
        return fault_;
    }

private:
    void compare(const std::string& what, const std::u16string& got, const std::u16string& expected) {
        if (got == expected || !fault_.empty()) return;
        fault_ = calls_ + what + " \"" + toUtf8(got) + "\" instead of \"" + toUtf8(expected) + "\"";
    }

    Call next() {
        Call call{kMembers[byte() % std::size(kMembers)]};
        const unsigned flags = byte();
        call.binary = flags % 2 == 0;
        call.rtf = flags / 2 % 2 == 0;
        call.x = number();
        call.y = flags / 4 % 2 == 0 ? number() : byte() % 6 - 2;
        call.a = text();
        if (call.name.find("BraceGroup") != call.name.npos) call.a = u"{" + call.a.substr(0, 1);
        if (call.name == "Replace" || call.name == "Surround" || call.name == "InsertTagResult") call.b = text();
        return call;
    }
    unsigned byte() { return data_ == end_ ? 0u : *data_++; }
    // Mostly a place in or near the content, sometimes an extreme.
    std::int32_t number() {
        static constexpr std::int32_t extremes[] = {lowest, lowest + 1, -2, -1, 0, 1, highest - 1, highest};
        const unsigned kind = byte();
        if (kind < 8) return extremes[kind];
        const auto wide = static_cast<std::int32_t>(byte() * 256 + byte());
        return kind < 200 ? wide % (slow_.Length() + 3) : wide % (slow_.Length() + 7) - 3;
    }
    std::u16string text() {
        static constexpr std::u16string_view alphabet = u"aabbAB  \\\\{{}}\u00E9\u00C9\u0120\u8041\xD800k\u212A\n";
        const unsigned kind = byte();
        const std::size_t length = kind < 200 ? kind % 6 : kind < 250 ? kind % 40 : kind < 255 ? 700 + kind : 6000;
        std::u16string text;
        for (unsigned unit = byte(); text.size() < length; unit = text.size() < 40 ? byte() : unit * 5 + 1) {
            text += alphabet[unit % alphabet.size()];
        }
        return text;
    }

    const std::uint8_t* data_;
    const std::uint8_t* end_;
    privStrCat fast_;
    LiteralBuilder slow_;
    std::string calls_;
    std::string fault_;
};

}  // namespace velmor::test
