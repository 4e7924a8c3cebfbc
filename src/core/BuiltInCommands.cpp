#include "core/BuiltInCommands.h"

#include "automation/Convert.h"
#include "common/TextFile.h"
#include "core/ErrorLog.h"
#include "core/Evaluation.h"
#include "core/EvaluationRules.h"
#include "core/Markup.h"
#include "core/Options.h"
#include "core/Version.h"
#include "properties/privProperties.h"
#include "rtf/read/RtfReader.h"
#include "text/Compare.h"

namespace velmor {

using automation::Variant;

namespace {

constexpr std::u16string_view pathProperty = u"Path";
constexpr std::size_t copiesOfName = 4;  // of its parts, while a command runs

#define VELMOR_WIDE_TEXT(text) u##text
#define VELMOR_WIDE(text) VELMOR_WIDE_TEXT(text)
constexpr std::u16string_view versionText = VELMOR_WIDE(VELMOR_VERSION_TEXT);

bool isAbsolute(std::u16string_view path, char16_t separator) noexcept {
    if (path.starts_with(u"\\\\")) return true;
    if (separator == u'/' && path.starts_with(u'/')) return true;
    return path.size() > 2 && path[1] == u':' && (path[2] == u'\\' || path[2] == u'/');
}

constexpr std::u16string_view whiteSpaceAndNul(u" \t\r\n\v\f\0", 7);

// "{\rtf" with another version number, or none, becomes "{\rtf1".
void giveVersion(std::u16string& text) {
    const std::size_t word = rtfStart.size() - 1;
    const std::size_t end = std::min(text.find_first_not_of(u"0123456789", word), text.size());
    const bool isWholeWord = end == text.size() || (text[end] | 0x20) < u'a' || (text[end] | 0x20) > u'z';
    if (isWholeWord) text.replace(word, end - word, u"1");
}

// The commands, for one tag.
class BuiltInCommands {
public:
    BuiltInCommands(platform::Services& services, const ContextRef& context, std::u16string_view psName)
        : services_(services), context_(context), name_(psName) {}

    // With elements built from the name.
    CommandAnswer run() const {
        const HeldText held(copiesOfName * name_.size());
        if (!held.fits()) {
            reportLimit(services_, *context_, EvaluationLimit::held, builtInHandler, name_);
            return {};
        }
        privProperties elements(services_);
        return build(elements, name_, true) ? run(elements) : CommandAnswer();
    }

    CommandAnswer run(privProperties& elements) const {
        const PropertyRef first = elements.Item(handlerElement);
        if (!first || upperCase(first->Name()) != builtInHandler) return std::u16string(u"!Incorrect Handler!");
        const PropertyRef name = elements.Item(commandElement);
        const std::u16string sought = name ? upperCase(name->Name()) : std::u16string();
        const auto command = std::find_if(commands().begin(), commands().end(),
                                          [&](const Command& each) { return each.name == sought; });
        if (command == commands().end()) return {};
        if (command->answer == nullptr) return std::u16string(command->text);
        return (this->*command->answer)(elements);
    }

    std::optional<std::u16string> fileText(std::u16string_view psFile) const {
        std::u16string folder = context_->properties.getText(pathProperty, Variant(services_.folders.component()));
        const std::u16string path = includedPath(psFile, std::move(folder), services_.folders.separator());
        if (!mayInclude(path)) return std::nullopt;
        std::optional<std::u16string> text = readTextFile(services_.files, path);
        if (!text) {
            logError(u"The file could not be read", path);
        } else if (!isListFile(psFile)) {
            text = onlyDocument(*std::move(text), path);
        }
        return text;
    }

    // A command with a fixed text, or with a member that answers it.
    struct Command {
        std::u16string_view name;
        std::u16string_view text;
        CommandAnswer (BuiltInCommands::*answer)(privProperties& elements) const;
    };

    static const std::vector<Command>& commands() {
        static const std::vector<Command> all = {
            {u"@DESCRIPTION", u"Pellmar Quillmarc", nullptr},  // the "c" is meant
            {u"@VERSION", u"1", nullptr},
            {u"@DLL VERSION", versionText, nullptr},
            {u"@COPYRIGHT", u"Copyright Pellmar", nullptr},
            {u"@TRADEMARKS", u"Quillmark is a trademark of Pellmar", nullptr},
            {u"@AUTHOR", u"Pellmar", nullptr},
            {u"SETPROPERTY", u"", &BuiltInCommands::setProperty},
            {u"PROPERTY", u"", &BuiltInCommands::property},
            {u"INCLUDE", u"", &BuiltInCommands::include},
            {u"SETPATH", u"", &BuiltInCommands::setPath},
            {u"TRKEEPFOLLOW", u"{\\rtf1\\trkeepfollow}", nullptr},
            {u"TRKEEPNEXT", u"{\\rtf1\\trkeepfollow}", nullptr},  // the same group, on purpose
            {u"PRIVVAR", u"", &BuiltInCommands::privateVariable<&privProperties::GetValueStr>},
            {u"PRIVSTRCATDUMP", u"", &BuiltInCommands::privateVariable<&privProperties::GetValueStrCatDump>},
        };
        return all;
    }

private:
    CommandAnswer setProperty(privProperties& elements) const {
        const PropertyRef parameter = elements.Item(firstParameter);
        if (!parameter) return {};
        Variant value = parameter->Value();
        const auto* const text = value.get<std::u16string>();
        const bool hasTags = text != nullptr && text->find(openingMarker) != std::u16string::npos;
        if (hasTags && elements.GetValueBoolean(u"PREPROCESS", true)) value = Variant(processed(*text));
        if (EvaluationRules::isRule(parameter->Name())) {
            logError(u"A tag does not set this property", parameter->Name());
        } else {
            put(parameter->Name(), std::move(value));
        }
        return {};
    }

    CommandAnswer property(privProperties& elements) const {
        const PropertyRef parameter = elements.Item(firstParameter);
        if (!parameter) return {};
        const Collection& properties = context_->properties;
        CommandAnswer answer(properties.getText(parameter->Name(), parameter->Value()));
        const EvaluationRun& run = EvaluationRun::current();
        if (!run.tracksOrigins()) return answer;
        const bool mayBeMissing = run.rules().missing != EvaluationRules::Missing::empty;
        if (properties.find(parameter->Name())) {
            answer.origin = Origin::property;
        } else if (mayBeMissing && (answer.text.empty() || name_.find(u'=') == name_.npos)) {
            return CommandAnswer::missing(asWritten(parameter->Name()));
        }
        return answer;
    }

    CommandAnswer include(privProperties& elements) const {
        const std::u16string file = commandValue(elements);
        std::optional<std::u16string> text = fileText(file);
        if (!text) return CommandAnswer::missing(file);
        CommandAnswer answer = isListFile(file) ? listEntry(*text, elements) : CommandAnswer(*std::move(text));
        answer.origin = Origin::file;
        return answer;
    }

    CommandAnswer setPath(privProperties& elements) const {
        std::u16string path = commandValue(elements);
        put(pathProperty, Variant(path));
        return path;
    }

    template <auto read>
    CommandAnswer privateVariable(privProperties& elements) const {
        const PropertyRef parameter = elements.Item(firstParameter);
        if (!parameter) return {};
        privProperties& variables = *context_->privateVariables;
        CommandAnswer answer((variables.*read)(parameter->Name(), parameter->ValueStr()));
        if (variables.Item(parameter->Name())) answer.origin = Origin::handler;
        return answer;
    }

    // In tags the reader gives names in upper case.
    std::u16string_view asWritten(const std::u16string& psName) const {
        const std::size_t place = findText(name_, psName, 0, Comparison::text);
        return place == name_.npos ? std::u16string_view(psName) : name_.substr(place, psName.size());
    }

    std::u16string commandValue(privProperties& elements) const {
        const PropertyRef command = elements.Item(commandElement);
        return command ? processed(command->ValueStr()) : std::u16string();
    }

    CommandAnswer listEntry(std::u16string_view psList, privProperties& elements) const {
        privProperties list(services_);
        if (!build(list, psList, false)) return {};
        const PropertyRef index = elements.Item(std::u16string_view(u"INDEX"));
        const PropertyRef key = index ? nullptr : elements.Item(std::u16string_view(u"KEY"));
        const PropertyRef& given = index ? index : key;
        const std::u16string sought = given ? processed(given->ValueStr()) : u"1";
        const PropertyRef entry =
            key ? list.Item(std::u16string_view(sought)) : list.Item(automation::toLong(Variant(sought)).value_or(0));
        return entry ? CommandAnswer(entry->ValueStr()) : CommandAnswer::missing(sought);
    }

    bool build(privProperties& elements, std::u16string_view text, bool isTag) const {
        const CountedDecoding counted;
        if (isTag) {
            elements.BuildByVal(text, false, true, u":");
        } else {
            elements.BuildList(text);
        }
        if (!CountedDecoding::refused(text)) return true;
        reportLimit(services_, *context_, EvaluationLimit::decoded, builtInHandler, name_);
        return false;
    }

    std::u16string processed(std::u16string text) const {
        if (text.find(openingMarker) == std::u16string::npos) return text;
        return evaluateText(services_, context_, builtInHandler, std::move(text));
    }

    // Of a file that is an RTF document. What follows its closing brace is no part of it.
    std::u16string onlyDocument(std::u16string text, std::u16string_view path) const {
        if (!text.starts_with(u"{\\rtf")) return text;
        const bool tolerant = isTolerant(services_, context_->properties);
        if (tolerant) giveVersion(text);
        if (!text.starts_with(rtfStart)) return text;
        const std::size_t brace = findGroupEnd(text, 1, tolerant);
        if (brace == noGroupEnd) return text;
        if (text.find_first_not_of(whiteSpaceAndNul, brace + 1) != text.npos) {
            logError(u"Text after the end of the document was left out", path);
        }
        text.resize(brace + 1);
        return text;
    }

    // Whether the file exists and may be included.
    bool mayInclude(std::u16string_view path) const {
        const EvaluationRules& rules = EvaluationRun::current().rules();
        if (rules.admitsPath(path)) {
            if (!services_.files.exists(path)) return false;
            if (rules.admitsFile(services_, path)) return true;
        }
        logError(u"The file is not in the folder that files may be included from", path);
        return false;
    }

    void logError(std::u16string_view message, std::u16string_view errorData) const {
        addErrorLogEntry(services_, *context_->errorLog, {builtInHandler, message, 0, name_, errorData});
    }

    void put(std::u16string_view psName, Variant value) const {
        const auto* const text = value.get<std::u16string>();
        const std::size_t size = text != nullptr ? text->size() : 0;
        if (!EvaluationRun::current().store(size, context_->properties.textLength(psName))) {
            reportLimit(services_, *context_, EvaluationLimit::held, builtInHandler, name_);
            return;
        }
        if (context_->properties.put(psName, std::move(value))) return;
        logError(u"The property could not be set", psName);
    }

    platform::Services& services_;
    const ContextRef& context_;
    std::u16string_view name_;
};

}  // namespace

CommandAnswer answerCommand(platform::Services& services, const ContextRef& context, std::u16string_view psName,
                            privProperties* elements) {
    const BuiltInCommands commands(services, context, psName);
    return elements != nullptr ? commands.run(*elements) : commands.run();
}

std::optional<std::u16string> includedText(platform::Services& services, const ContextRef& context,
                                           std::u16string_view psName, std::u16string_view psFile) {
    return BuiltInCommands(services, context, psName).fileText(psFile);
}

std::vector<std::u16string> commandNames() {
    std::vector<std::u16string> names;
    for (const auto& command : BuiltInCommands::commands()) names.emplace_back(command.name);
    return names;
}

std::u16string includedPath(std::u16string_view psFile, std::u16string folder, char16_t separator) {
    if (isAbsolute(psFile, separator)) return std::u16string(psFile);
    if (!folder.ends_with(u'\\') && !folder.ends_with(separator)) folder += separator;
    return folder.append(psFile);
}

bool isListFile(std::u16string_view path) {
    return path.size() >= 4 && equalIgnoringCase(path.substr(path.size() - 4), u".kvl");
}

}  // namespace velmor
