#include "rtf/clean/RemoveBackground.h"

#include <algorithm>
#include <string_view>

#include "rtf/edit/TextEdits.h"
#include "rtf/read/RtfReader.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::u16string_view backgroundOpening = u"{\\*\\background";

// Moves the text left over the removed parts: [0, done_) is finished, [next_, end) is unread.
class Removal {
public:
    Removal(std::u16string& text, bool tolerant) : text_(text), tolerant_(tolerant) {}

    void run() {
        for (std::size_t at = 0;
             !stopped_ && (at = RtfSearch(text_).find(backgroundOpening, next_, Comparison::text)) != nowhere;) {
            const std::size_t end = findGroupEnd(text_, at + backgroundOpening.size(), tolerant_);
            if (end == noGroupEnd) break;
            keep(at);
            next_ = end + 1;
            while (removeJoined()) continue;
        }
        keep(text_.size());
        text_.resize(done_);
    }

private:
    void keep(std::size_t end) {
        std::char_traits<char16_t>::move(text_.data() + done_, text_.data() + next_, end - next_);
        done_ += end - next_;
        next_ = end;
    }

    std::u16string_view finished() const noexcept { return std::u16string_view(text_).substr(0, done_); }

    // A removal may join the parts of an opening, whose group is removed as well.
    bool removeJoined() {
        if (next_ < text_.size() && wordTakesIn(finished(), text_[next_])) text_[done_++] = u' ';
        const std::size_t before = std::min(done_, backgroundOpening.size() - 1);
        const std::u16string_view behind = std::u16string_view(text_).substr(next_, backgroundOpening.size() - 1);
        const std::u16string seam = std::u16string(finished().substr(done_ - before)).append(behind);
        const std::size_t found = findText(seam, backgroundOpening, 0, Comparison::text);
        if (found >= before || isEscaped(finished(), done_ - before + found)) return false;
        const std::size_t end = findGroupEnd(text_, next_ + backgroundOpening.size() - (before - found), tolerant_);
        stopped_ = end == noGroupEnd;
        if (stopped_) return false;
        done_ -= before - found;
        next_ = end + 1;
        return true;
    }

    std::u16string& text_;
    bool tolerant_;
    std::size_t done_ = 0;
    std::size_t next_ = 0;
    bool stopped_ = false;  // at a group without its end
};

}  // namespace

void Module1::RemoveBackground(std::u16string& psText, const CleanOptions& options) {
    Removal(psText, options.tolerant).run();
}

}  // namespace velmor
