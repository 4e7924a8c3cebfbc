#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/MemoryServices.h"
#include "properties/EntryName.h"
#include "properties/privProperties.h"
#include "text/Encoding.h"

namespace velmor::test {

inline constexpr std::u16string_view textFormDelimiters[] = {u":",  u":", u":", u";", u"||",
                                                             u"\"", u"=", u"",  u"~", u"#"};

// Random bytes contain no markers; these pieces do. A byte below their count selects one.
// clang-format off
inline constexpr std::u16string_view textFormPieces[] = {
    u":", u"=", u"\"", u"\":", u"a", u"b", u"~64\"", u"~HX\"", u"~GZ\"", u"~CE\"", u"\u00B5", u"~KV\"", u"~RO~",
    u"~AT\"", u"~PR\"", u"-", u"+", u"NUL", u"#", u"##", u"5", u"1.5", u"&", u"%", u"!", u"$", u"&H1F", u"True",
    u"<KV:", u"</KV>", u">", u"C:\\", u"!@", u"!s!", u"\r\n", u"YWI6YyI6", u"6162", u"Picture", u"kvProperties\"",
    u"5 Mar 2004 2:07:09 PM", u"YT0xOg==", u"eJwDAAAAAAE=", u"1E5", u" "};
// clang-format on

inline std::u16string textForm(const std::uint8_t* data, std::size_t size) {
    std::u16string text;
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t piece = data[i] % 64;
        if (piece < std::size(textFormPieces)) {
            text += textFormPieces[piece];
        } else {
            text += static_cast<char16_t>(data[i] * (data[i] % 3 == 0 ? 0x101 : 1));
        }
    }
    return text;
}

// Names are written as they are, so a name with a delimiter, or one that reading shortens, is different
// after reading.
inline bool namesComeBack(const privProperties& collection) {
    for (std::int32_t i = 1; i <= collection.Count(); ++i) {
        const PropertyRef property = collection.Item(i);
        const std::u16string& name = property->Name();
        if (name.find_first_of(u":=") != name.npos || cleanName(name) != name) return false;
        const auto* nested = dynamic_cast<const privProperties*>(property->Value().object().get());
        if (nested != nullptr && !namesComeBack(*nested)) return false;
    }
    return true;
}

// Reads a text that the bytes select as a text form. Empty, or what is wrong: entries are lost, or what is read is not
// the same after writing and reading again.
inline std::string faultOfTextForm(const std::uint8_t* data, std::size_t size) {
    platform::MemoryServices services;
    services.pictures.failLoading = true;  // a picture is written without its bytes
    const std::u16string_view delimiter = textFormDelimiters[data[0] % std::size(textFormDelimiters)];
    const auto first = std::make_shared<privProperties>(services);
    const auto second = std::make_shared<privProperties>(services);
    const std::u16string text = textForm(data + 2, size - 2);
    first->Build(text, false, data[1] % 2 == 1, delimiter);
    const bool isBlank = text.find_first_not_of(u" \t\r\n") == text.npos;
    if (!isBlank && first->Count() == 0) return "lost all entries: " + toUtf8(text);
    first->CountTotal();
    first->TagCommand();
    first->Delimited();
    first->Sort();

    second->Build(first->Stored());
    const std::u16string stored = second->Stored();
    first->Build(stored);
    return !namesComeBack(*second) || first->Stored() == stored ? "" : "not stable: " + toUtf8(stored);
}

}  // namespace velmor::test
