// Reads any text as a text form: the reader never fails, and what it reads is the same after writing and
// reading again.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "platform/MemoryServices.h"
#include "properties/EntryName.h"
#include "properties/privProperties.h"
#include "text/Encoding.h"

namespace {

using velmor::privProperties;

constexpr std::u16string_view kDelimiters[] = {u":", u":", u":", u";", u"||", u"\"", u"=", u"", u"~", u"#"};

// Random bytes contain no markers; these pieces do. A byte below their count selects one.
// clang-format off
constexpr std::u16string_view kPieces[] = {
    u":", u"=", u"\"", u"\":", u"a", u"b", u"~64\"", u"~HX\"", u"~GZ\"", u"~CE\"", u"\u00B5", u"~KV\"", u"~RO~",
    u"~AT\"", u"~PR\"", u"-", u"+", u"NUL", u"#", u"##", u"5", u"1.5", u"&", u"%", u"!", u"$", u"&H1F", u"True",
    u"<KV:", u"</KV>", u">", u"C:\\", u"!@", u"!s!", u"\r\n", u"YWI6YyI6", u"6162", u"Picture", u"kvProperties\"",
    u"5 Mar 2004 2:07:09 PM", u"YT0xOg==", u"eJwDAAAAAAE=", u"1E5", u" "};
// clang-format on

std::u16string textOf(const std::uint8_t* data, std::size_t size) {
    std::u16string text;
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t piece = data[i] % 64;
        if (piece < std::size(kPieces)) {
            text += kPieces[piece];
        } else {
            text += static_cast<char16_t>(data[i] * (data[i] % 3 == 0 ? 0x101 : 1));
        }
    }
    return text;
}

// Names are written as they are, so a name with a delimiter, or one that reading shortens, is different
// after reading.
bool namesComeBack(const privProperties& collection) {
    for (std::int32_t i = 1; i <= collection.Count(); ++i) {
        const velmor::PropertyRef property = collection.Item(i);
        const std::u16string& name = property->Name();
        if (name.find_first_of(u":=") != name.npos || velmor::cleanName(name) != name) return false;
        const auto* nested = dynamic_cast<const privProperties*>(property->Value().object().get());
        if (nested != nullptr && !namesComeBack(*nested)) return false;
    }
    return true;
}

void require(bool holds, const char* what, std::u16string_view text) {
    if (holds) return;
    std::fprintf(stderr, "%s: %s\n", what, velmor::toUtf8(text).c_str());
    std::abort();
}

void readAndWrite(const std::uint8_t* data, std::size_t size) {
    velmor::platform::MemoryServices services;
    services.pictures.failLoading = true;  // a picture is written without its bytes
    const std::u16string_view delimiter = kDelimiters[data[0] % std::size(kDelimiters)];
    const auto first = std::make_shared<privProperties>(services);
    const auto second = std::make_shared<privProperties>(services);
    const std::u16string text = textOf(data + 2, size - 2);
    first->Build(text, false, data[1] % 2 == 1, delimiter);
    const bool isBlank = text.find_first_not_of(u" \t\r\n") == text.npos;
    require(isBlank || first->Count() > 0, "lost all entries", text);
    first->CountTotal();
    first->TagCommand();
    first->Delimited();
    first->Sort();

    second->Build(first->Stored());
    const std::u16string stored = second->Stored();
    first->Build(stored);
    if (namesComeBack(*second)) require(first->Stored() == stored, "not stable", stored);
}

}  // namespace

// The whole input, and its short parts: a long text always has such a name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size >= 2) readAndWrite(data, size);
    for (std::size_t begin = 0, part; begin + 2 < size; begin += part) {
        part = std::min<std::size_t>(size - begin, data[begin] % 32 + 3u);
        if (part >= 2) readAndWrite(data + begin, part);
    }
    return 0;
}
