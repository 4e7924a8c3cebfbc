#include "cli/render/FileNames.h"

#include <algorithm>
#include <iterator>

#include "cli/Failure.h"
#include "cli/LineText.h"
#include "cli/render/Record.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

[[noreturn]] void refuse(const std::string& reason) {
    throw Failure(exitUsage, "--each: " + reason);
}

std::u16string harmless(std::u16string_view value) {
    constexpr std::u16string_view forbidden = u"<>:\"/\\|?*";
    std::u16string made(value);
    std::replace_if(
        made.begin(), made.end(),
        [&](char16_t unit) { return unit < 32 || unit == 127 || forbidden.find(unit) != forbidden.npos; }, u'_');
    return made;
}

// Windows has devices of these names in every folder, whatever the extension.
bool isDevice(std::u16string_view part) {
    constexpr std::u16string_view names[] = {u"con", u"prn", u"aux", u"nul", u"conin$", u"conout$"};
    std::u16string_view stem = part.substr(0, part.find(u'.'));
    stem = stem.substr(0, stem.find_last_not_of(u' ') + 1);
    const auto isStem = [&](std::u16string_view name) { return equalIgnoringCase(stem, name); };
    if (std::any_of(std::begin(names), std::end(names), isStem)) return true;
    constexpr std::u16string_view digits = u"0123456789\u00b9\u00b2\u00b3";
    const std::u16string_view port = stem.substr(0, 3);
    return stem.size() == 4 && digits.find(stem[3]) != digits.npos &&
           (equalIgnoringCase(port, u"com") || equalIgnoringCase(port, u"lpt"));
}

// Makes a part of the path that came from data a plain name.
void settle(std::u16string& part) {
    constexpr std::size_t longest = 255;
    if (part.empty()) throw RecordFailure("its file name, or a folder's, would be empty");
    if (part.back() == u'.' || part.back() == u' ') part.back() = u'_';
    if (isDevice(part)) part.insert(0, 1, u'_');
    if (toUtf8(part).size() > longest) throw RecordFailure("its file name is too long: " + shown(part));
}

bool endsPart(char16_t unit) {
    return unit == u'/' || unit == u'\\';
}

}  // namespace

FileNames::FileNames(const std::string& pattern) {
    const std::u16string text = fromUtf8(pattern);
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t brace = std::min(text.find_first_of(u"{}", at), text.size());
        addText(std::u16string_view(text).substr(at, brace - at));
        if (brace == text.size()) break;
        if (text.substr(brace, 2) == std::u16string(2, text[brace])) {
            addText(text.substr(brace, 1));
            at = brace + 2;
            continue;
        }
        const std::size_t end = text.find(u'}', brace);
        if (text[brace] == u'}' || end == text.npos) refuse("a brace has no partner in '" + pattern + "'");
        addPlaceholder(std::u16string_view(text).substr(brace + 1, end - brace - 1));
        at = end + 1;
    }
    const auto isText = [](const Piece& piece) { return piece.kind == Piece::Kind::text; };
    if (std::all_of(pieces_.begin(), pieces_.end(), isText)) {
        refuse("'" + pattern + "' names no column, so that all letters would have one name ({Name}, or {#})");
    }
}

void FileNames::addText(std::u16string_view text) {
    if (!text.empty()) pieces_.push_back({Piece::Kind::text, std::u16string(text)});
}

void FileNames::addPlaceholder(std::u16string_view name) {
    if (name.empty()) refuse("a placeholder is empty");
    const bool isNumber = name.find_first_not_of(u'#') == name.npos;
    pieces_.push_back({isNumber ? Piece::Kind::number : Piece::Kind::property, std::u16string(name), name.size()});
}

std::u16string FileNames::of(const privProperties& properties, std::uint64_t record) const {
    std::u16string path;
    std::u16string part;
    bool isFromData = false;
    const auto endPart = [&] {
        if (isFromData) settle(part);
        path += part;
        part.clear();
        isFromData = false;
    };
    for (const Piece& piece : pieces_) {
        if (piece.kind == Piece::Kind::text) {
            for (const char16_t unit : piece.text) {
                if (endsPart(unit)) endPart();
                (endsPart(unit) ? path : part) += unit;
            }
            continue;
        }
        isFromData = true;
        if (piece.kind == Piece::Kind::number) {
            const std::u16string digits = fromUtf8(std::to_string(record));
            part.append(piece.width - std::min(piece.width, digits.size()), u'0').append(digits);
        } else {
            const PropertyRef property = properties.Item(std::u16string_view(piece.text));
            if (!property)
                throw RecordFailure("its file name needs '" + shown(piece.text) + "', which it does not have");
            part += harmless(property->ValueStr());
        }
    }
    endPart();
    return path;
}

}  // namespace velmor::cli
