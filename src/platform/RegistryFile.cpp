#include "platform/RegistryFile.h"

#include <algorithm>
#include <set>
#include <utility>

#include "text/Characters.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor::platform {
namespace {

using View = std::u16string_view;

constexpr View narrowParts[] = {u"SOFTWARE\\WOW6432Node", u"SOFTWARE\\Classes\\WOW6432Node"};
constexpr std::size_t narrowPartLength = View(u"\\WOW6432Node").size();

// Removes the WOW6432Node part of the key; false if it has none.
bool takeNarrowPart(std::u16string& key) {
    for (const View part : narrowParts) {
        const bool below = key.size() == part.size() || (key.size() > part.size() && key[part.size()] == u'\\');
        if (!below || !equalIgnoringCase(View(key).substr(0, part.size()), part)) continue;
        key.erase(part.size() - narrowPartLength, narrowPartLength);
        return true;
    }
    return false;
}

std::u16string plainKey(View key) {
    std::u16string plain(key);
    takeNarrowPart(plain);
    return plain;
}

constexpr View fileHeader = u"Windows Registry Editor Version 5.00";
constexpr View oldHeader = u"REGEDIT4";
constexpr std::string_view oldHeaderBytes = "REGEDIT4";
constexpr View blanks = u" \t";
constexpr std::size_t mostWarnings = 20;

struct Root {
    View name;
    View key;  // its path below HKEY_LOCAL_MACHINE
};
constexpr Root roots[] = {
    {u"HKEY_LOCAL_MACHINE", u""},
    {u"HKLM", u""},
    {u"HKEY_CLASSES_ROOT", u"SOFTWARE\\Classes"},
    {u"HKCR", u"SOFTWARE\\Classes"},
};

std::u16string decodeScript(std::string_view bytes) {
    if (auto marked = decodeMarked(bytes)) return std::move(*marked);
    if (bytes.starts_with(oldHeaderBytes)) return fromAnsi(bytes);
    if (bytes.size() >= 2 && bytes[0] != '\0' && bytes[1] == '\0') return fromUtf16(bytes, false);
    return textOfUtf8(bytes).value_or(fromAnsi(bytes));
}

// Ends the reading of one line.
struct Failure {
    View reason;
};

// Applies the lines of a script to a registry, in order: a later line wins.
class Reader {
public:
    // `narrow` takes the keys of the 32-bit part, without that part.
    Reader(View text, RegistryTree& narrow, RegistryTree& wide) : text_(text), narrow_(narrow), wide_(wide) {}

    std::vector<std::u16string> run() {
        if (!readHeader()) return std::move(warnings_);
        for (skipLine(); at_ < text_.size(); skipLine()) {
            lineStart_ = at_;
            try {
                readLine();
            } catch (const Failure& failure) {
                warn(failure.reason);
                at_ = lineStart_;
            }
        }
        return std::move(warnings_);
    }

private:
    // A file without the header may be anything, so nothing is taken from it.
    bool readHeader() {
        lineStart_ = at_ = std::min(text_.find_first_not_of(u" \t\r\n"), text_.size());
        const View header = trimmed(restOfLine(), blanks);
        old_ = header == oldHeader;
        if (old_ || header == fileHeader) return true;
        if (!header.empty()) warn(u"the file does not begin as a registry file does");
        return false;
    }

    void readLine() {
        if (atEnd()) return;
        if (text_[at_] == u'[') {
            readKey();
        } else if (text_[at_] == u'@' || text_[at_] == u'"') {
            readValue();
        } else {
            throw Failure{u"neither a key, a value nor a comment"};
        }
    }

    void readKey() {
        const View line = restOfLine();
        inKey_ = false;
        View path = line.substr(1, closingBracket(line) - 1);
        const bool removes = path.starts_with(u'-');
        if (removes) path.remove_prefix(1);
        tree_ = treeOf(path);
        inKey_ = !removes;
        if (tree_ == nullptr) return;
        if (!removes) return tree_->addKey(key_);
        if (key_.empty()) throw Failure{u"a whole root cannot be deleted"};
        tree_->removeKey(key_);
    }

    // Names may hold brackets. The closing one is followed by the end of the line or a comment.
    static std::size_t closingBracket(View line) {
        for (std::size_t at = line.find(u']'); at != View::npos; at = line.find(u']', at + 1)) {
            const std::size_t next = line.find_first_not_of(blanks, at + 1);
            if (next == View::npos || line[next] == u';') return at;
        }
        throw Failure{u"the key has no closing bracket"};
    }

    // Sets key_; null for a root that is not read.
    RegistryTree* treeOf(View path) {
        if (path.find(u'\0') != View::npos) throw Failure{u"the key's name holds a zero character"};
        const std::size_t end = std::min(path.find(u'\\'), path.size());
        for (const Root& root : roots) {
            if (!equalIgnoringCase(path.substr(0, end), root.name)) continue;
            const View rest = path.substr(std::min(end + 1, path.size()));
            key_ = root.key;
            if (!root.key.empty() && !rest.empty()) key_ += u'\\';
            key_ += rest;
            return takeNarrowPart(key_) ? &narrow_ : &wide_;
        }
        return nullptr;
    }

    void readValue() {
        std::u16string name;
        if (text_[at_] == u'@') {
            ++at_;
        } else {
            name = readQuoted();
        }
        if (atEnd() || text_[at_] != u'=') throw Failure{u"the value's name is not followed by \"=\""};
        ++at_;
        const std::optional<std::u16string> value = readData();
        if (!inKey_) throw Failure{u"the value belongs to no key"};
        if (tree_ == nullptr) return;
        if (value) {
            tree_->set(key_, name, *value);
        } else {
            tree_->removeValue(key_, name);
        }
    }

    // Nothing for a deletion and for data that is no string.
    std::optional<std::u16string> readData() {
        skipBlanks();
        const View rest = trimmed(restOfLine(), blanks);
        if (rest.empty()) throw Failure{u"the value has no data"};
        if (rest.starts_with(u'"')) {
            std::u16string value = readQuoted();
            if (!atEnd()) throw Failure{u"text follows the closing quote"};
            return value;
        }
        if (rest.starts_with(u"hex")) {
            std::u16string value = textOf(readBytes());
            const bool isString = rest.starts_with(u"hex(1):") || rest.starts_with(u"hex(2):");
            return isString ? std::optional(std::move(value)) : std::nullopt;
        }
        const bool removes = trimmed(rest.substr(0, rest.find(u';')), blanks) == u"-";
        if (!removes && !rest.starts_with(u"dword:")) throw Failure{u"the data is of no known kind"};
        return std::nullopt;
    }

    // From quote to quote; a backslash takes the next character as it is. A value without a closing
    // quote fails.
    std::u16string readQuoted() {
        std::u16string value;
        for (++at_; at_ < text_.size(); ++at_) {
            char16_t unit = text_[at_];
            if (unit == u'"') {
                ++at_;
                return value;
            }
            if (unit == u'\\' && at_ + 1 < text_.size() && !isLineEnd(text_[at_ + 1])) unit = escaped(text_[++at_]);
            value += unit;
        }
        throw Failure{u"the closing quote is missing"};
    }

    // Some editors write line ends inside a value as they are, some as "\n" and "\r".
    static char16_t escaped(char16_t unit) { return unit == u'n' ? u'\n' : unit == u'r' ? u'\r' : unit; }

    // "xx,xx,..." after the colon; a backslash at the end of a line continues the data on the next.
    std::string readBytes() {
        const std::size_t colon = restOfLine().find(u':');
        if (colon == View::npos) throw Failure{u"the data has no colon"};
        at_ += colon + 1;
        std::string bytes;
        int digits = 0, byte = 0;
        const auto takeByte = [&] {
            if (digits == 0) throw Failure{u"a byte is missing"};
            bytes += static_cast<char>(byte);
            digits = byte = 0;
        };
        for (; !atEnd(); ++at_) {
            if (const int digit = hexadecimalDigit(text_[at_]); digit >= 0) {
                if (++digits > 2) throw Failure{u"a byte has more than two digits"};
                byte = byte * 16 + digit;
            } else if (text_[at_] == u',') {
                takeByte();
            } else if (text_[at_] != u'\\') {
                throw Failure{u"the data holds a character that is no hexadecimal digit"};
            } else if (!continueLine()) {
                throw Failure{u"a backslash within the data"};
            }
        }
        if (digits > 0) takeByte();
        return bytes;
    }

    // Moves to the last unit of the line end; false if the line goes on.
    bool continueLine() {
        std::size_t next = std::min(text_.find_first_not_of(blanks, at_ + 1), text_.size());
        if (next < text_.size() && !isLineEnd(text_[next])) return false;
        if (text_.substr(next).starts_with(u"\r\n")) ++next;
        at_ = std::min(next, text_.size() - 1);
        return true;
    }

    // The registry's strings end with a zero that does not belong to the text.
    std::u16string textOf(std::string_view bytes) const {
        const std::u16string text = old_ ? fromAnsi(bytes) : fromUtf16(bytes, false);
        return text.substr(0, text.find(u'\0'));
    }

    void skipBlanks() { at_ = std::min(text_.find_first_not_of(blanks, at_), text_.size()); }
    // After blanks: whether the line ends, or a comment begins.
    bool atEnd() {
        skipBlanks();
        return at_ == text_.size() || isLineEnd(text_[at_]) || text_[at_] == u';';
    }
    View restOfLine() const { return text_.substr(at_, text_.find_first_of(u"\r\n", at_) - at_); }
    void skipLine() {
        at_ += restOfLine().size();
        if (at_ < text_.size() && text_[at_] == u'\r') ++at_;
        if (at_ < text_.size() && text_[at_] == u'\n') ++at_;
    }

    // Counts lines only for the few warnings that are kept.
    void warn(View reason) {
        if (warnings_.size() == mostWarnings) return;
        const auto feeds = std::ranges::count(text_.substr(0, lineStart_), u'\n');
        warnings_.push_back(u"line " + fromUtf8(std::to_string(feeds + 1)) + u": " + std::u16string(reason));
    }

    View text_;
    RegistryTree& narrow_;
    RegistryTree& wide_;
    std::size_t at_ = 0;
    std::size_t lineStart_ = 0;
    std::u16string key_;
    bool old_ = false;
    bool inKey_ = false;            // a key was read that values may follow
    RegistryTree* tree_ = nullptr;  // of that key; null if its root is not read
    std::vector<std::u16string> warnings_;
};

}  // namespace

RegistryFile::RegistryFile(std::string_view bytes) {
    const std::u16string text = decodeScript(bytes);
    warnings_ = Reader(text, narrow_, wide_).run();
}

std::optional<std::u16string> RegistryFile::value(std::u16string_view key, std::u16string_view name) const {
    const std::u16string plain = plainKey(key);
    auto found = narrow_.value(plain, name);
    return found ? found : wide_.value(plain, name);
}

// Each name once, those of the 32-bit part first.
std::vector<std::u16string> RegistryFile::names(std::u16string_view key, List list) const {
    std::vector<std::u16string> found;
    std::set<std::u16string> known;
    for (const RegistryTree* tree : {&narrow_, &wide_}) {
        for (std::u16string& name : (tree->*list)(plainKey(key))) {
            if (known.insert(lowerCase(name)).second) found.push_back(std::move(name));
        }
    }
    return found;
}

}  // namespace velmor::platform
