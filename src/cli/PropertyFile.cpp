#include "cli/PropertyFile.h"

#include <utility>

#include "cli/Failure.h"
#include "cli/Streams.h"
#include "common/Cipher.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

using namespace std::string_view_literals;

std::u16string readPassword(const platform::Files& files, const std::string& name) {
    const std::u16string text = decodeText(readAll(files, name), EncodingChoice::utf8, inputName(name));
    std::u16string password = text.substr(0, text.find_first_of(u"\r\n"));
    if (password.empty())
        throw Failure(exitFile, "the first line of " + inputName(name) + " is empty; it must be the password");
    return password;
}

}  // namespace

PropertyText readPropertyText(const platform::Files& files, const PropertyFile& file) {
    const std::string name = inputName(file.name);
    std::u16string text = decodeText(readAll(files, file.name), file.encoding, name);
    if (file.passwordFile.empty()) {
        if (isEnciphered(text)) throw Failure(exitFile, name + " is enciphered; use --password-file");
        return {std::move(text), false};
    }
    if (!isEnciphered(text)) throw Failure(exitFile, name + " is not enciphered; omit --password-file");
    const auto utf8 = deciphered(text, readPassword(files, file.passwordFile));
    if (!utf8) throw Failure(exitFile, "cannot open " + name + ": the password is wrong, or the file is damaged");
    return {fromUtf8(*utf8), true};
}

void addPropertyText(privProperties& into, const PropertyText& from) {
    if (from.isDelimited) return into.BuildByDelimited(from.text);
    into.Build(from.text);
}

// Catches files of another kind, such as JSON or RTF, which would be read as names without values.
void requireProperties(const privProperties& properties, const PropertyText& from, const std::string& name) {
    if (from.isDelimited) return;
    const std::u16string_view text = from.text;
    const auto refuse = [&](std::int32_t entry) {
        throw Failure(exitFile, inputName(name) + " is not a property file: entry " + std::to_string(entry) +
                                    " does not begin with name=value:");
    };
    const auto first = text.find_first_not_of(u" \t\r\n\0"sv);
    const auto end = text.find_first_of(u"=:<\r\n{[\"", first);
    if (first != text.npos && (end == text.npos || end == first || (text[end] != u'=' && text[end] != u':'))) refuse(1);
    for (std::int32_t entry = 1; entry <= properties.Count(); ++entry) {
        if (properties.Item(entry)->Name().find_first_of(u"\r\n") != text.npos) refuse(entry);
    }
}

void readPropertyFile(privProperties& into, const platform::Files& files, const PropertyFile& file) {
    const PropertyText text = readPropertyText(files, file);
    addPropertyText(into, text);
    requireProperties(into, text, file.name);
}

}  // namespace velmor::cli
