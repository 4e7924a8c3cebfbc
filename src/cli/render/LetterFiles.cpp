#include "cli/render/Destination.h"
#include "platform/SystemServices.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

// Of 64 bits (FNV-1a) also on machines whose own hashes have 32, which would soon be equal by chance.
std::uint64_t hashOf(std::u16string_view path) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char16_t unit : path) hash = (hash ^ foldUnit(unit)) * 0x100000001b3;
    return hash;
}

}  // namespace

void LetterFiles::admit(Letter& letter) {
    if (names_.insert(hashOf(letter.path)).second) return;
    letter.isThere = false;
    letter.failure = "a record before it has the same file name, '" + toUtf8(letter.path) + "'";
}

void LetterFiles::write(Letter& letter) {
    if (files_.write(letter.path, letter.bytes)) return;
    const std::size_t end = letter.path.find_last_of(u"/\\");
    const bool hasFolder = end != letter.path.npos && files_.makeFolder(letter.path.substr(0, end));
    if (hasFolder && files_.write(letter.path, letter.bytes)) return;
    letter.failure = "cannot write '" + toUtf8(letter.path) + "': " + platform::lastSystemError();
}

}  // namespace velmor::cli
