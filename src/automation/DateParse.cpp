#include <array>
#include <cmath>
#include <ctime>
#include <vector>

#include "automation/Convert.h"
#include "automation/NumberText.h"
#include "automation/Portable.h"
#include "text/Characters.h"
#include "text/Compare.h"

namespace velmor::automation::portable {

namespace {

constexpr std::array<std::u16string_view, 7> weekdays{u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                                      u"Thursday", u"Friday", u"Saturday"};
constexpr std::size_t longestText = 100;  // the longest date

struct Token {
    enum class Kind { number, month, weekday, morning, afternoon, separator } kind;
    int value = 0;   // a number, a month from 1, a separator: one of : / - . ,
    int digits = 0;  // of a number
};
using Kind = Token::Kind;

// The 0-based entry whose whole name or first three letters the word is.
template <std::size_t N>
std::optional<int> entryOf(const std::array<std::u16string_view, N>& names, std::u16string_view word) {
    for (std::size_t each = 0; each < N; ++each) {
        if (equalIgnoringCase(word, names[each]) || equalIgnoringCase(word, names[each].substr(0, 3))) {
            return static_cast<int>(each);
        }
    }
    return std::nullopt;
}

std::optional<Token> wordToken(std::u16string_view word) {
    if (equalIgnoringCase(word, u"AM") || equalIgnoringCase(word, u"A")) return Token{Kind::morning};
    if (equalIgnoringCase(word, u"PM") || equalIgnoringCase(word, u"P")) return Token{Kind::afternoon};
    if (const auto month = entryOf(monthNames, word)) return Token{Kind::month, *month + 1};
    if (entryOf(weekdays, word)) return Token{Kind::weekday};
    return std::nullopt;
}

// Nothing when the text contains a part that is not a date's.
std::optional<std::vector<Token>> tokensOf(std::u16string_view text) {
    std::vector<Token> tokens;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        if (isDigit(text[at])) {
            Token number{Kind::number};
            for (; at < text.size() && isDigit(text[at]); ++at)
                number.value = number.value % 100000 * 10 + (text[at] - u'0');
            number.digits = static_cast<int>(at - start);
            if (number.digits > 4) return std::nullopt;
            tokens.push_back(number);
        } else if (isLetter(text[at])) {
            while (at < text.size() && isLetter(text[at])) ++at;
            const auto word = wordToken(text.substr(start, at - start));
            if (!word) return std::nullopt;
            tokens.push_back(*word);
        } else if (isNumberBlank(text[at])) {
            ++at;
        } else if (std::u16string_view(u":/-.,").find(text[at]) != std::u16string_view::npos) {
            tokens.push_back({Kind::separator, text[at++]});
        } else {
            return std::nullopt;
        }
    }
    return tokens;
}

constinit thread_local int assumedYear = 0;

class DateReader {
public:
    explicit DateReader(std::vector<Token> tokens) : tokens_(std::move(tokens)) {}

    std::optional<Date> read() {
        if (tokens_.empty()) return std::nullopt;
        while (at_ < tokens_.size()) {
            if (startsTime() ? !readTime() : !readDay()) return std::nullopt;
        }
        return dateFromFields(fields_);
    }

private:
    bool is(std::size_t at, Kind kind) const { return at < tokens_.size() && tokens_[at].kind == kind; }
    bool isSeparator(std::size_t at, char16_t separator) const {
        return is(at, Kind::separator) && tokens_[at].value == separator;
    }
    bool isMeridiem(std::size_t at) const { return is(at, Kind::morning) || is(at, Kind::afternoon); }
    // Between two numbers a point separates hours and minutes, too.
    bool separatesTime(std::size_t at) const {
        return isSeparator(at, u':') || (isSeparator(at, u'.') && is(at + 1, Kind::number));
    }
    bool startsTime() const { return is(at_, Kind::number) && (separatesTime(at_ + 1) || isMeridiem(at_ + 1)); }

    // h AM, h:nn, h:nn:ss, each with or without AM or PM after it.
    bool readTime() {
        if (hasTime_) return false;
        hasTime_ = true;
        int* const parts[] = {&fields_.hour, &fields_.minute, &fields_.second};
        for (std::size_t part = 0; part < std::size(parts); ++part) {
            if (!is(at_, Kind::number) || tokens_[at_].digits > 2) return false;
            *parts[part] = tokens_[at_++].value;
            if (part == 2 || !separatesTime(at_)) break;
            ++at_;
        }
        return !isMeridiem(at_) || applyMeridiem(tokens_[at_++].kind);
    }

    bool applyMeridiem(Kind kind) {
        if (kind == Kind::morning && fields_.hour > 12) return false;
        if (kind == Kind::morning && fields_.hour == 12) fields_.hour = 0;
        if (kind == Kind::afternoon && fields_.hour < 12) fields_.hour += 12;
        return true;
    }

    // Numbers and at most one month name, at most one separator between two of them.
    bool readDay() {
        if (hasDay_) return false;
        hasDay_ = true;
        skipWeekday();
        bool separated = true;
        for (; at_ < tokens_.size() && !startsTime(); ++at_) {
            const Token& token = tokens_[at_];
            if (token.kind == Kind::separator) {
                if (separated || token.value == u':') return false;
                separated = true;
                continue;
            }
            if (token.kind == Kind::weekday) break;
            if (!takeElement(token)) return false;
            separated = false;
        }
        skipWeekday();
        return !endsSeparated(separated) && assignDay();
    }

    // A comma may separate the day and the time.
    bool endsSeparated(bool separated) const {
        return separated && !(at_ < tokens_.size() && isSeparator(at_ - 1, u',') && count_ > 0);
    }

    void skipWeekday() {
        if (!is(at_, Kind::weekday)) return;
        ++at_;
        if (isSeparator(at_, u',')) ++at_;
    }

    bool takeElement(const Token& token) {
        if (token.kind == Kind::month && !month_) {
            month_ = token;
            return true;
        }
        if (token.kind != Kind::number || count_ == numbers_.size()) return false;
        numbers_[count_++] = token;
        return true;
    }

    bool assignDay() {
        const auto& [a, b, c] = numbers_;
        const Token first{Kind::number, 1, 1}, thisYear{Kind::number, currentYear(), 4};
        if (month_) {
            if (count_ == 1) return accept(thisYear, *month_, a) || accept(a, *month_, first);
            return count_ == 2 && (accept(b, *month_, a) || accept(a, *month_, b));
        }
        if (count_ == 2) {
            return accept(thisYear, a, b) || accept(thisYear, b, a) || accept(b, a, first) || accept(a, b, first);
        }
        if (count_ != 3) return false;
        return accept(c, a, b) || accept(c, b, a) || accept(a, b, c) || accept(a, c, b);
    }

    bool accept(const Token& year, const Token& month, const Token& day) {
        if (month.digits > 2 || day.digits > 2) return false;
        DateFields fields = fields_;
        fields.year = year.digits > 2 ? year.value : year.value + (year.value < 30 ? 2000 : 1900);
        fields.month = month.value;
        fields.day = day.value;
        if (!dateFromFields({fields.year, fields.month, fields.day})) return false;
        fields_ = fields;
        return true;
    }

    std::vector<Token> tokens_;
    std::size_t at_ = 0;
    DateFields fields_;
    bool hasTime_ = false, hasDay_ = false;
    std::array<Token, 3> numbers_{};
    std::size_t count_ = 0;
    std::optional<Token> month_;  // by its name
};

}  // namespace

int currentYear() {
    if (assumedYear != 0) return assumedYear;
    const std::time_t now = std::time(nullptr);
    const std::tm* local = std::localtime(&now);
    return local == nullptr ? 1970 : local->tm_year + 1900;
}

void assumeYear(int year) noexcept {
    assumedYear = year;
}

std::optional<Date> parseDate(std::u16string_view text, std::uint32_t flags) {
    constexpr std::uint32_t timeOnly = 1;
    constexpr std::uint32_t dayOnly = 2;
    if (text.size() > longestText) return std::nullopt;
    auto tokens = tokensOf(text);
    if (!tokens) return std::nullopt;
    auto date = DateReader(*std::move(tokens)).read();
    if (!date) return std::nullopt;
    const double day = std::trunc(date->days);
    if ((flags & timeOnly) != 0) return Date{std::fabs(date->days - day)};
    if ((flags & dayOnly) != 0) return Date{day};
    return date;
}

}  // namespace velmor::automation::portable
