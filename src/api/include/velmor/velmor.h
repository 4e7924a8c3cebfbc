#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

// The library of document templates: it evaluates the tags of a template, finds a template's mistakes, and cleans and
// joins RTF documents.
//
//     velmor::Properties properties;
//     properties.setText("Name", "Ada Lovelace");
//     velmor::Engine engine = velmor::Engine::make().value();
//     velmor::Evaluated letter = engine.evaluate("Dear <KV:TAG>PROPERTY:Name=customer:</KV>,", properties);
//     std::string bytes = velmor::utf8(letter.text);
//
// Texts are UTF-16 and positions count UTF-16 code units from 1, as in the component and in velmor's output. Where a
// text is given, UTF-8 is taken, too (TextIn). Errors that a caller can expect are values (Outcome); only lack of
// memory raises (std::bad_alloc).
//
// Several threads may use one Engine at the same time, each with Properties of its own.

namespace velmor {

struct PreparedTemplate;
class kvTag;

inline namespace v1 {

// UTF-8 from UTF-16 and back. Halves of surrogate pairs and bytes that are not UTF-8 become U+FFFD.
std::string utf8(std::u16string_view text);
std::u16string utf16(std::string_view bytes);

// The text of a document's or a template's bytes. RTF is in the ANSI code page; so is plain text without a byte order
// mark, unless it is UTF-8. The mark is left out.
std::u16string documentText(std::string_view bytes);
// The bytes of a document; no character is lost. RTF is in the ANSI code page, with \uN for other characters; plain
// text is in UTF-8. Linear.
std::string documentBytes(std::u16string_view text);

// A text that a caller gives, in UTF-16 or UTF-8. It is only a parameter: a text in UTF-16 must last for the call.
class TextIn {
public:
    TextIn(std::u16string_view text) : view_(text) {}
    TextIn(const std::u16string& text) : view_(text) {}
    TextIn(const char16_t* text) : view_(text) {}
    TextIn(std::string_view bytes) : own_(utf16(bytes)), view_(own_) {}
    TextIn(const std::string& bytes) : TextIn(std::string_view(bytes)) {}
    TextIn(const char* bytes) : TextIn(std::string_view(bytes)) {}
    TextIn(const TextIn&) = delete;
    TextIn& operator=(const TextIn&) = delete;

    std::u16string_view view() const noexcept { return view_; }

private:
    std::u16string own_;
    std::u16string_view view_;
};

// Why something could not be done.
struct Failure {
    std::int32_t number = 0;  // as in the component: 53 for a file, 5 for a value, ...
    std::u16string message;
};

// A value, or why there is none. value() of a failure raises std::bad_variant_access.
template <typename Value>
class Outcome {
public:
    Outcome(Value value) : state_(std::move(value)) {}
    Outcome(Failure failure) : state_(std::move(failure)) {}

    bool ok() const noexcept { return state_.index() == 0; }
    explicit operator bool() const noexcept { return ok(); }
    Value& value() & { return std::get<0>(state_); }
    const Value& value() const& { return std::get<0>(state_); }
    Value&& value() && { return std::get<0>(std::move(state_)); }
    const Failure& failure() const { return std::get<1>(state_); }

private:
    std::variant<Value, Failure> state_;
};

// An ordered collection of named, typed values. Names match without regard to case. One thread at a time.
class Properties {
public:
    Properties();
    ~Properties();
    Properties(Properties&&) noexcept;
    Properties& operator=(Properties&&) noexcept;

    // Each takes the place of the property of that name, or adds one at the end.
    void setText(const TextIn& name, const TextIn& value);
    void setNumber(const TextIn& name, std::int32_t value);
    void setNumber(const TextIn& name, double value);
    void setTruth(const TextIn& name, bool value);
    // Days since 30 December 1899. The fraction is the time of the day, also of negative dates: -1.25 is 29 December
    // at 6 o'clock.
    void setDate(const TextIn& name, double days);
    // A decimal number such as "-12.50", kept to its last digit. False, and nothing is set, for any other text and for
    // more than 28 digits.
    bool setDecimal(const TextIn& name, const TextIn& digits);
    // A value that is not known, as null in JSON.
    void setNull(const TextIn& name);
    // A copy of a collection as the children of an empty text; linear in its text form.
    void setProperties(const TextIn& name, const Properties& value);
    // An empty text, and its children to be set. They belong to this collection, whatever becomes of the returned one.
    Properties addChild(const TextIn& name);
    // False if there is none of that name.
    bool remove(const TextIn& name);

    // The value as text; nothing if there is none of that name.
    std::optional<std::u16string> text(const TextIn& name) const;
    std::size_t size() const noexcept;
    // The name of the property at a 0-based index below size().
    std::u16string nameAt(std::size_t index) const;

    // The text form, "name=value:name=value:"; linear in the text. Reading never fails: what is no entry is left out.
    std::u16string toText() const;
    static Properties fromText(const TextIn& text);
    // A file of that form, enciphered if there is a password. Failure 53.
    static Outcome<Properties> fromFile(const TextIn& path, const TextIn& password = u"");

private:
    friend class Engine;
    struct Parts;
    explicit Properties(std::unique_ptr<Parts> parts) noexcept;
    std::unique_ptr<Parts> parts_;
};

// A tag that a handler of the program is asked to answer. It lasts for the call.
class TagCall {
public:
    std::u16string command() const;
    // The command's value and a parameter, their tags evaluated.
    std::u16string commandValue() const;
    std::u16string parameter(const TextIn& name, const TextIn& otherwise = u"") const;
    // A property of the template as text; nothing if it is absent.
    std::optional<std::u16string> property(const TextIn& name) const;
    void setProperty(const TextIn& name, const TextIn& value) const;
    // A text with its tags evaluated.
    std::u16string evaluate(const TextIn& text) const;
    // Whether the answer goes into an RTF document. Plain text is escaped for it by the engine.
    bool isForRtf() const;
    void logError(const TextIn& message) const;

    // For the engine alone.
    explicit TagCall(kvTag& tag) noexcept : tag_(tag) {}

private:
    kvTag& tag_;
};

// Gives the text for a tag: plain, or a document that begins with "{\rtf1". Tags in it are evaluated. An exception
// derived from std::exception becomes an entry with the number 440 in the errors, and the tag yields "".
using Answer = std::function<std::u16string(const TagCall&)>;

// Something that went wrong while a template was evaluated. The result is complete all the same.
struct LogEntry {
    std::u16string handler;
    std::u16string message;
    std::int32_t number = 0;
    std::u16string tag;        // the tag's text, or a part of it
    std::u16string data;       // what the message is about
    std::size_t tagIndex = 0;  // of the outermost tag that led to it, from 1; 0 if none did
    // Of that tag in the template, all from 1; 0 if there is none.
    std::size_t position = 0;
    std::size_t line = 0;
    std::size_t column = 0;
};

// What a tag gave while a template was evaluated.
struct TracedTag {
    std::size_t parent = 0;  // whose answer holds it, from 1 in the list; 0 if the template holds it
    std::u16string origin;   // of the text that holds it: "template", "include", "property" or "handler"
    std::u16string handler;  // upper case; empty if it names none
    std::u16string command;
    std::u16string name;       // as it is written between its markers, its first 60 units
    std::size_t position = 0;  // in the text that holds it, from 1; 0 for a tag that a handler evaluates by itself
    std::size_t length = 0;    // of what it gave
    std::optional<std::size_t> place;  // of that in the result, from 1; none if it is not there, or has moved
    double seconds = 0;                // until it was answered, the tags within it included
};

struct Evaluated {
    std::u16string text;
    std::vector<LogEntry> errors;
    bool failed = false;           // Missing::fail, and something was missing: the text is empty
    std::vector<TracedTag> trace;  // as the tags began, if EvaluateOptions asks for it: the first million
};

// What becomes of a tag whose property, file, entry or handler is absent.
enum class Missing { empty, keep, mark, fail };
// What becomes of tags in values that come from data and handlers.
enum class DataTags { allow, report, refuse };

struct EvaluateOptions {
    std::u16string includePath;  // where files without a path are included from; empty: the current folder
    std::optional<std::u16string> includeRoot;  // files outside of it are not included
    bool exact = false;                         // RTF is read exactly as the component does by default, not tolerantly
    Missing missing = Missing::empty;
    DataTags dataTags = DataTags::allow;
    bool trace = false;  // Evaluated::trace is filled
};

struct EngineOptions {
    std::optional<std::u16string> registryFile;  // a .reg file that names handlers, in place of the registry
    // Without a file: the machine's registry, or that of the user on Linux; else there are the program's handlers
    // alone.
    bool useMachineRegistry = false;
    std::vector<std::u16string> handlerFolders;  // on Linux: where the libraries of handlers are searched
};

// A tag of a template as it is written.
struct TagPlace {
    std::size_t position = 0;  // of its opening marker, from 1
    std::size_t length = 0;    // with both markers
    std::u16string handler;    // upper case; empty if it names none
    std::u16string command;
    std::vector<std::pair<std::u16string, std::u16string>> parameters;
    std::vector<TagPlace> tags;  // within its parameters, at most 100 levels
};

// A template whose tags have been found (Engine::compile). It does not change: copies share it, and several threads may
// evaluate it at once.
class Template {
public:
    // As it was given. It lasts as long as a copy of the template.
    std::u16string_view text() const noexcept { return *text_; }

    // For the engine alone.
    Template(std::shared_ptr<const PreparedTemplate> prepared, std::shared_ptr<const std::u16string> text) noexcept
        : prepared_(std::move(prepared)), text_(std::move(text)) {}

private:
    friend class Engine;
    std::shared_ptr<const PreparedTemplate> prepared_;
    std::shared_ptr<const std::u16string> text_;
};

// A mistake that a check finds, or what may be one. docs/diagnostics.md describes each code.
struct Mistake {
    struct Place {
        std::u16string file;  // empty: the template itself
        // All from 1.
        std::size_t position = 0;
        std::size_t line = 0;
        std::size_t column = 0;
    };

    std::u16string code;   // "KV201"
    bool isError = false;  // else a warning
    std::u16string message;
    std::u16string hint;  // "did you mean FORMAT?"; empty if there is none
    Place place;
    std::size_t length = 0;           // of the faulty part, at least 1
    std::u16string seenAt;            // "page text, paragraph 4", as an author sees the place; empty in plain text
    std::u16string context;           // the text around it, as an author sees it
    std::vector<Place> includedFrom;  // the tags that included the file, the nearest first
};

struct Checked {
    std::vector<Mistake> mistakes;  // file by file, each in the order of its text: the first thousand
    std::size_t more = 0;           // that were found and are not among them
};

class Engine {
public:
    // Failure 53 for a registry file that cannot be read.
    static Outcome<Engine> make(const EngineOptions& options = {});
    ~Engine();
    Engine(Engine&&) noexcept;
    Engine& operator=(Engine&&) noexcept;

    // A handler of this program; it precedes a registered one of that name. Set handlers before other threads use the
    // engine. Answers are called on the thread that evaluates.
    void setHandler(const TextIn& name, Answer answer);

    // The template with its tags answered; linear in template and result. Handlers may change the properties; those
    // that hold the options are there only meanwhile.
    Evaluated evaluate(const TextIn& text, Properties& properties, const EvaluateOptions& options = {}) const;

    // For a template that is evaluated more than once: its tags are found here. Linear in the text.
    Template compile(const TextIn& text) const;
    // The same as that of the template's text. Texts that it includes, and values, are read each time.
    Evaluated evaluate(const Template& compiled, Properties& properties, const EvaluateOptions& options = {}) const;

    // An RTF document with the documents in it merged into one. Any other text comes back as it is.
    std::u16string clean(const TextIn& rtf, bool exact = false) const;
    // Several documents as one, each from a new page. Failure 5 for a text that is no complete RTF document.
    Outcome<std::u16string> join(const std::vector<std::u16string>& documents, bool exact = false) const;

    // The outermost tags of a template, in order. Nothing is evaluated.
    std::vector<TagPlace> tags(const TextIn& text) const;

    // The mistakes of a template and of the files that it includes. Nothing is evaluated; handlers are asked for their
    // catalogue alone. `properties`: those that the program will set. Null: they are not known; properties that nothing
    // sets are then not reported, and of the options includePath alone counts. Failure 5 for a property that asks
    // something impossible of an evaluation ("kvTag.Missing" and the like). Linear.
    Outcome<Checked> check(const TextIn& text, Properties* properties = nullptr,
                           const EvaluateOptions& options = {}) const;
    // A JSON Schema (2020-12) of the properties that a template and the files that it includes read. A property without
    // a default is required unless the template sets it. Linear.
    std::u16string schema(const TextIn& text, const EvaluateOptions& options = {}) const;

private:
    struct Parts;
    explicit Engine(std::unique_ptr<Parts> parts) noexcept;
    std::unique_ptr<Parts> parts_;
};

// The library's version, as "3.0.1".
std::string_view version() noexcept;

}  // namespace v1
}  // namespace velmor
