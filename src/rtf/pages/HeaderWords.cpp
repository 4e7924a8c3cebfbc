#include "rtf/pages/HeaderWords.h"

#include "rtf/read/RtfReader.h"

namespace velmor {

void appendGroup(std::u16string& text, HeaderName name, std::u16string_view group) {
    text += name.opening();
    if (group.empty()) {
        text += u"\\pard\\plain\\fs2\\par}";  // a low line, which moves nothing
        return;
    }
    std::size_t behindName = 2;
    while (behindName < group.size() && isLetter(group[behindName])) ++behindName;
    text += group.substr(behindName);
}

}  // namespace velmor
