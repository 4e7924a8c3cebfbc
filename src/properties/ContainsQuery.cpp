// Search conditions: from what a user types to terms, and to the normalised condition.

#include "properties/KeyedItems.h"
#include "properties/privProperties.h"
#include "text/Compare.h"

namespace velmor {
namespace {

// Takes a search string character by character and adds its terms. A quote within a word does not
// end the word, and white space other than a blank is part of it.
class SearchTerms {
public:
    explicit SearchTerms(privProperties& target) : target_(target) {}

    void take(char16_t unit) {
        if (unit == u'"') {
            if (inQuotes_) endPhrase();
            inQuotes_ = !inQuotes_;
        } else if (unit == u' ' && !inQuotes_) {
            endWord();
        } else {
            word_ += unit;
        }
    }

    // An unclosed phrase ends here as well.
    void finish() { take(inQuotes_ ? u'"' : u' '); }

private:
    void endPhrase() {
        if (word_.empty()) return;
        word_ = u'"' + word_ + u'"';
        addTerm();
    }

    void endWord() {
        if (word_.empty()) return;
        const std::u16string upper = upperCase(word_);
        if (upper == u"NOT") {
            negate();
        } else if (upper == u"AND" || upper == u"OR" || upper == u"NEAR") {
            if (pending_.empty()) pending_ = upper;
        } else {
            return addTerm();
        }
        word_.clear();
    }

    void negate() {
        if (pending_.empty()) {
            pending_ = u"NOT";
        } else if (pending_ == u"AND" || pending_ == u"OR") {
            pending_ += u" NOT";
        }
    }

    void addTerm() {
        if (target_.Count() == 0) {
            target_.AddLng(word_, 0);
        } else if (pending_.empty()) {
            target_.AddStr(word_, u"OR");
        } else {
            target_.AddStr(word_, pending_ == u"NOT" ? u"AND NOT" : pending_);
        }
        word_.clear();
        pending_.clear();
    }

    privProperties& target_;
    std::u16string word_;
    std::u16string pending_;
    bool inQuotes_ = false;
};

}  // namespace

void privProperties::BuildByContainsQuery(std::u16string_view psSearchString) {
    SearchTerms terms(*this);
    for (const char16_t unit : psSearchString) terms.take(unit);
    terms.finish();
}

std::u16string privProperties::ContainsQuery() const {
    std::u16string condition;
    for (std::size_t i = 0; i < items().size(); ++i) {
        const PropertyRef property = items().at(i);
        const std::u16string joined = property->ValueStr();
        if (joined.size() > 1) condition.append(1, u' ').append(joined);
        condition.append(1, u' ').append(property->Name());
    }
    return condition.empty() ? condition : condition.substr(1);
}

}  // namespace velmor
