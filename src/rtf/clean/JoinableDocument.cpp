#include "rtf/clean/JoinableDocument.h"

#include <utility>

#include "rtf/clean/JoinDocuments.h"

namespace velmor {

JoinableDocument::JoinableDocument(std::u16string text, bool tolerant, const std::string& name)
    : text_(std::move(text)) {
    requireDocument(text_, true, name);
    range_ = documentIn(text_, name);
    facts_ = JoinedFacts::of(document(), tolerant);
    countOutside_ = velmor::countOutside(text_, range_);
}

}  // namespace velmor
