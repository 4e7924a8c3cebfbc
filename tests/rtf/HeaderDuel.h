#pragma once

#include <string>
#include <vector>

#include "SectionReader.h"
#include "rtf/merge/UnwrapNestedDocuments.h"
#include "rtf/pages/HeaderWords.h"
#include "rtf/pages/KeepSectionWords.h"
#include "rtf/pages/MergePageBreaks.h"
#include "text/Encoding.h"

namespace velmor::test {

// Joined documents made up from `choose(n)`, a number below n: the sections of all of them alone, and
// those of the text that joining them gives.
template <typename Choose>
class JoinedDuel {
public:
    JoinedDuel(Choose choose, bool tolerant) : choose_(choose), tolerant_(tolerant) {
        std::u16string text;
        for (unsigned count = 2 + choose_(3); count > 0; --count) {
            const std::u16string document = u"{\\rtf1" + body() + u"}";
            const auto sections = SectionReader::of(document);
            alone.insert(alone.end(), sections.begin(), sections.end());
            if (text.empty()) {
                text = choose_(4) == 0 ? u"{\\rtf1" + document : document.substr(0, document.size() - 1);
            } else {
                text += std::u16string(Module1::mergePageBreakMarker) + document;
            }
        }
        before = text += u"}";
        CleanOptions options;
        options.mergeMode = true;
        options.tolerant = tolerant;
        Module1::ApplyMergePageBreaks(text, options);
        if (tolerant) Module1::KeepSectionWords(text, options);
        Module1::UnwrapNestedDocuments(text, options);
        after = text;
        joined = SectionReader::of(text);
    }

    std::u16string before, after;
    std::vector<SectionReader::Section> alone, joined;

private:
    std::u16string number() {
        const std::string digits = std::to_string(++number_);
        return {digits.begin(), digits.end()};
    }

    std::u16string group() {
        constexpr std::u16string_view shapes[] = {u"\\pard ", u"{\\b x}", u"\\{", u"{\\headerl y}", u""};
        const HeaderName name{headerKinds[choose_(2)], static_cast<HeaderPages>(choose_(4))};
        return std::u16string(name.opening()) + u" " + std::u16string(shapes[choose_(5)]) + number() + u"}";
    }

    std::u16string body() {
        std::u16string text = choose_(3) == 0 ? u"\\facingp" : u"";
        if (choose_(4) == 0) text += u"{\\*\\pgdsctbl{\\header no}}";
        for (unsigned section = 0, count = 1 + choose_(3); section < count; ++section) {
            if (section > 0) text += u"\\sect";
            // Without it, the break alone does not keep the words of the section in front from this one.
            const bool keepsApart = section == 0 && !tolerant_;
            if (choose_(2) == 0 || keepsApart) text += u"\\sectd";
            if (choose_(3) == 0) text += u"\\titlepg";
            if (choose_(4) == 0) text += (choose_(2) == 0 ? u"\\headery" : u"\\footery") + number();
            if (choose_(6) == 0) text += choose_(2) == 0 ? u"\\pgbrdrhead" : u"\\pgbrdrfoot";
            for (unsigned groups = choose_(4); groups > 0; --groups) text += group();
            text += u"\\pard t" + number() + u"\\page ";
        }
        return text;
    }

    Choose choose_;
    bool tolerant_;
    unsigned number_ = 0;
};

}  // namespace velmor::test
