#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "LiteralBuilder.h"
#include "text/privStrCat.h"

namespace velmor::test {

// Bytes read as numbers and texts; zeros when they are used up.
class DuelInput {
public:
    DuelInput(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {}

    bool empty() const { return data_ == end_; }
    std::uint8_t byte() { return empty() ? 0 : *data_++; }
    bool flag() { return (byte() & 1) != 0; }

    // Mostly a place in or about the content, sometimes an extreme.
    std::int32_t number(std::int32_t length) {
        const std::uint8_t kind = byte();
        if (kind < 8) return extremes[kind];
        const std::int32_t wide = byte() * 256 + byte();
        return kind < 200 ? wide % (length + 3) : wide % (length + 7) - 3;
    }
    std::u16string text() {
        const std::uint8_t kind = byte();
        const std::size_t length = kind < 200 ? kind % 6 : kind < 250 ? kind % 40 : kind < 255 ? 700 + kind : 6000;
        std::u16string text;
        unsigned unit = byte();
        for (std::size_t i = 0; i < length; ++i, unit = i < 40 ? byte() : unit * 5 + 1) {
            text += alphabet[unit % alphabet.size()];
        }
        return text;
    }

private:
    static constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    static constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    static constexpr std::int32_t extremes[8] = {lowest, lowest + 1, -2, -1, 0, 1, highest - 1, highest};
    static constexpr std::u16string_view alphabet = u"aabbAB  \\\\{{}}\u00E9\u00C9\u0120\u8041\xD800k\u212A\n";

    const std::uint8_t* data_;
    const std::uint8_t* end_;
};

// A tag's result whose builder is of another length, as it should not be.
struct FixedResult : ResultSource {
    FixedResult(std::u16string builderText, std::u16string resultText)
        : width(std::move(builderText)), text(std::move(resultText)) {
        builder.Append(width);
    }
    const privStrCat& resultBuilder() override { return builder; }
    std::u16string result() override { return text; }

    std::u16string width;
    std::u16string text;
    privStrCat builder;
};

// Holds privStrCat against LiteralBuilder over a sequence of calls that bytes stand for.
class BuilderDuel {
public:
    BuilderDuel(const std::uint8_t* data, std::size_t size) : in_(data, size) {}

    // What differed first, with the calls that led there; empty when nothing did.
    std::string run() {
        while (!in_.empty() && fault_.empty()) {
            step(in_.byte() % 36);
            compareState();
        }
        return fault_;
    }

private:
    // The result of a call, or the number of the error that it raised.
    template <typename Call>
    static std::u16string outcome(Call call) {
        try {
            return show(call());
        } catch (const Error& error) {
            return u"error " + show(error.number());
        }
    }
    static std::u16string show(std::int32_t value) { return fromUtf8(std::to_string(value)); }
    static std::u16string show(const std::u16string& value) { return u"\"" + value + u"\""; }
    static std::u16string show(std::pair<std::int32_t, std::int32_t> value) {
        return show(value.first) + u", " + show(value.second);
    }

    template <typename Fast, typename Slow>
    void both(const std::string& call, Fast fast, Slow slow) {
        calls_ += call + "\n";
        compare("result", outcome(fast), outcome(slow));
    }
    void compare(const std::string& what, const std::u16string& got, const std::u16string& expected) {
        if (got == expected || !fault_.empty()) return;
        fault_ = calls_ + what + " " + toUtf8(got) + " instead of " + toUtf8(expected);
    }
    template <typename Call>  // call(builder), alike for both
    void same(const std::string& name, Call call) {
        both(
            name, [&] { return call(fast_); }, [&] { return call(slow_); });
    }
    template <typename Call>  // ... that returns nothing
    void edit(const std::string& name, Call call) {
        same(name, [&](auto& builder) {
            call(builder);
            return builder.Length();
        });
    }
    void compareState() {
        compare("content", fast_.ReturnVal(), slow_.ReturnVal());
        compare("tail", fast_.spareTail(), slow_.spareTail());
        compare("capacity", show(fast_.BufferLength()), show(slow_.BufferLength()));
        compare("growth rate", show(fast_.GrowthRate()), show(slow_.GrowthRate()));
    }

    static std::string quoted(const std::u16string& text) { return "\"" + toUtf8(text) + "\""; }
    std::int32_t number() { return in_.number(slow_.Length()); }

    void step(int operation);

    DuelInput in_;
    privStrCat fast_;
    LiteralBuilder slow_;
    std::string calls_;
    std::string fault_;
};

// One long table: an operation a row.
inline void BuilderDuel::step(int operation) {
    const std::u16string a = in_.text();
    const std::int32_t x = number();
    const auto args = [&](auto... numbers) {
        std::string list = "(" + quoted(a);
        ((list += ", " + std::to_string(numbers)), ...);
        return list + ")";
    };
    switch (operation) {
        case 0:
        case 1:
            return edit("Append" + args(), [&](auto& b) { b.Append(a); });
        case 2:
            return edit("Prepend" + args(), [&](auto& b) { b.Prepend(a); });
        case 3: {
            const std::u16string c = in_.text();
            return edit("Surround" + args() + quoted(c), [&](auto& b) { b.Surround(a, c); });
        }
        case 4:
            return both(
                "AppendVal" + args(), [&] { return fast_.AppendVal(a), 0; }, [&] { return slow_.Append(a), 0; });
        case 5:
            return same("DumpVal", [](auto& b) { return b.DumpVal(); });
        case 6:
            return edit("Reset", [](auto& b) { b.Reset(); });
        case 7:
            return edit("GrowthRate" + args(x), [&](auto& b) { b.GrowthRate(x); });
        case 8:
        case 9: {
            const bool binary = in_.flag();
            return same("Find" + args(x, binary), [&](auto& b) { return b.Find(a, x, binary); });
        }
        case 10: {
            const bool binary = in_.flag();
            return same("FindReverse" + args(x, binary), [&](auto& b) { return b.FindReverse(a, x, binary); });
        }
        case 11: {
            const bool binary = in_.flag();
            return same("FindContains" + args(x, binary), [&](auto& b) { return b.FindContains(a, x, binary); });
        }
        case 12: {
            const std::int32_t y = number();
            const bool binary = in_.flag();
            const bool rtf = in_.flag();
            return same("FindCount" + args(x, y, binary, rtf),
                        [&](auto& b) { return b.FindCount(a, x, y, binary, rtf); });
        }
        case 13:
            return same("WordCount", [](auto& b) { return b.WordCount(); });
        case 14:
            return same("Ascii" + args(x), [&](auto& b) { return b.Ascii(x); });
        case 15:
        case 16: {
            const std::int32_t limit = number();
            const auto sought = u"{" + a.substr(0, 1);
            const auto member = operation == 15 ? &privStrCat::FindBraceGroupEnd : &privStrCat::ScanBraceGroupEnd;
            return both(
                "FindBraceGroupEnd" + args(x, limit),
                [&] {
                    std::pair<std::int32_t, std::int32_t> found;
                    (fast_.*member)(x, sought, limit, found.first, found.second);
                    return found;
                },
                [&] { return slow_.FindBraceGroupEnd(x, sought, limit); });
        }
        case 17:
            return both(
                "FindBraceGroupStart" + args(x),
                [&] {
                    std::int32_t found;
                    fast_.FindBraceGroupStart(x, found);
                    return found;
                },
                [&] { return slow_.FindBraceGroupStart(x); });
        case 18: {
            const std::int32_t y = number();
            return same("SubString" + args(x, y), [&](auto& b) { return b.SubString(x, y); });
        }
        case 19: {
            const std::int32_t y = number();
            return same("MidStr" + args(x, y), [&](auto& b) { return b.MidStr(x, y); });
        }
        case 20:
            return same("LeftStr" + args(x), [&](auto& b) { return b.LeftStr(x); });
        case 21:
            return same("RightStr" + args(x), [&](auto& b) { return b.RightStr(x); });
        case 22:
            return same("LeftStrLessBy" + args(x), [&](auto& b) { return b.LeftStrLessBy(x); });
        case 23:
            return same("Trims",
                        [](auto& b) { return b.TrimStr() + u"|" + b.TrimLeftStr() + u"|" + b.TrimRightStr(); });
        case 24:
        case 25:
            return same("Insert" + args(x), [&](auto& b) { return b.Insert(a, x); });
        case 26:
        case 27: {
            const std::int32_t y = operation == 26 ? number() : in_.byte() % 4;
            return same("Remove" + args(x, y), [&](auto& b) { return b.Remove(x, y); });
        }
        case 28: {
            const std::int32_t y = number();
            return same("RemoveFromTo" + args(x, y), [&](auto& b) { return b.RemoveFromTo(x, y); });
        }
        case 29:
        case 30: {
            const std::u16string c = in_.text();
            const std::int32_t limit = in_.byte() % 5 - 2;
            const bool binary = in_.flag();
            return same("Replace" + args(x, limit, binary) + quoted(c), [&](auto& b) {
                std::int32_t start = x;
                std::int32_t count = limit;
                return std::pair(b.Replace(a, c, start, count, binary), start);
            });
        }
        case 31:
            return edit("ModifyMidStr" + args(x), [&](auto& b) { b.ModifyMidStr(x, a); });
        case 32:
            return edit("ModifyTrims" + args(x), [&](auto& b) {
                if (x % 3 == 0) b.ModifyTrimLeftStr(a);
                if (x % 3 == 1) b.ModifyTrimRightStr(a);
                if (x % 3 == 2) b.ModifyTrimStr(a);
            });
        case 33: {
            FixedResult source(in_.text(), a);
            return both(
                "InsertTagResult" + args(x) + quoted(source.width), [&] { return fast_.InsertTagResult(source, x); },
                [&] { return slow_.InsertTagResult(static_cast<std::int32_t>(source.width.size()), a, x); });
        }
        default: {
            const std::int32_t y = number();
            const bool upper = in_.flag();
            return both(
                "ModifyCase" + args(x, y, upper),
                [&] { return (upper ? fast_.ModifyUCaseStr(x, y) : fast_.ModifyLCaseStr(x, y)), 0; },
                [&] { return slow_.ModifyCase(x, y, upper), 0; });
        }
    }
}

}  // namespace velmor::test
