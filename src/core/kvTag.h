#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "automation/Object.h"
#include "automation/Variant.h"
#include "core/Collection.h"
#include "core/TagContext.h"
#include "direct/DirectOwner.h"
#include "platform/Services.h"
#include "text/privStrCat.h"

namespace velmor {

class CompiledTemplate;
class Evaluation;
class kvDirectTag;
class kvTags;
class privProperties;
struct CleanOptions;
struct TopLevelTags;

// One template or one tag under evaluation.
//
// A template: make one, set Database, Properties and Variables, then Value, read Result. A single
// tag: set Name ("HANDLER>COMMAND:parameter:"), read Result. Result is evaluated once; setting
// Value or Name arms it again. Evaluation takes time linear in template plus output.
//
// Set Value last: child tags keep the collections, database and protection that their parent had
// when its value was set.
//
// Markup: "<KV:" handler ">" command ":" parameters "</KV>", markers without regard to case, tags
// within parameters included. An opening marker without its closing one is text.
//
// No member raises: a tag that fails gives what it had produced so far, and an entry in ErrorLog.
// A value that finds no memory is not set. (A getter may raise std::bad_alloc for the copy that it
// returns.) Always held by shared_ptr (make_shared); a running member keeps its tag alive, whatever
// a handler lets go. One thread at a time.
class kvTag final : public automation::Object, public ResultSource, public DirectOwner {
public:
    explicit kvTag(platform::Services& services);
    ~kvTag() override;
    kvTag(const kvTag&) = delete;
    kvTag& operator=(const kvTag&) = delete;

    // --- the members of the public class, in its order (get and let by the same name) ---

    std::u16string Name() const { return name_; }
    void Name(std::u16string_view psName);  // appends ":" when it does not end in one

    std::u16string Value() const { return *value_; }
    // Brackets tables, finds the top-level tags; "{\rtf1" at its start turns ProtectRTF on.
    void Value(std::u16string psValue);

    // While the evaluation of this very tag is running: the text as far as it has come.
    std::u16string Result();

    // Created on first read. A host's own collection comes back as the same object.
    Collection Properties() { return ensure(&TagContext::properties); }
    void Properties(const Collection& collection) { ownContext().properties = collection; }
    // The text of a property, evaluated when it holds an opening marker (in exact case).
    std::u16string GetProcessedPropertiesValue(std::u16string_view psName, std::u16string_view psDefault = {});

    Collection Variables() { return ensure(&TagContext::variables); }
    void Variables(const Collection& collection) { ownContext().variables = collection; }
    std::u16string GetProcessedVariablesValue(std::u16string_view psName, std::u16string_view psDefault = {});

    void BuildTagCollection();

    // The parsed name, built on first read after Name was set.
    std::shared_ptr<privProperties> Elements();
    std::u16string GetProcessedElementsValue(std::u16string_view psName,
                                             const automation::Variant& pvDefault = automation::Variant(u""));

    std::u16string HandlerName();
    std::u16string CommandName();
    automation::Variant CommandValue();
    std::u16string CommandValueProcessed();

    automation::ObjectRef Database() const { return context_->database; }
    void Database(automation::ObjectRef database) { ownContext().database = std::move(database); }

    void ProtectRTFCode(std::u16string& psValue) const;
    bool ProtectRTF() const { return context_->protectRtf; }
    void ProtectRTF(bool pbProtect);

    // See rtf/clean/CleanRTF.h. CleanRTF cleans in place, CleanRTFByVal a copy, CleanRTFFile a file. The
    // property "kvTag.RTF Tolerant" (false when absent) chooses tolerant cleaning, "kvTag.Styles" what becomes of
    // styles of equal name: "rename" (any other value means it), "host" or "keep".
    bool CleanRTFFile(std::u16string_view psFileName, std::u16string_view psSaveFileName = {});
    bool CleanRTFMergeMode() const { return cleanMergeMode_; }
    void CleanRTFMergeMode(bool pbMergeMode) { cleanMergeMode_ = pbMergeMode; }
    void CleanRTF(std::u16string& psRTF);
    std::u16string CleanRTFByVal(std::u16string psRTF);

    std::shared_ptr<kvTag> NewTag();
    std::u16string ProcessValue(std::u16string_view psValue);
    std::u16string ProcessName(std::u16string_view psName);

    // Null before the first build.
    std::shared_ptr<kvTags> Tags() const { return tags_; }

    // Created on first read. It does not keep the tag alive, and does nothing once the tag is gone.
    std::shared_ptr<kvDirectTag> Direct();

    void LogError(std::u16string_view psTagHandler, std::u16string_view psError, std::int32_t& plErrorNumber,
                  std::u16string_view psTagData = {}, std::u16string_view psErrorData = {});
    void LogError(std::u16string_view psTagHandler, std::u16string_view psError);
    std::shared_ptr<privProperties> ErrorLog() { return ensure(&TagContext::errorLog); }

    // The companion library (common/kvLibrary.h); a new object on every read.
    automation::ObjectRef Library() const;

    void AddTableStartEndControlWords();
    void RemoveExtraTrowd(std::int32_t& plTableStart, std::int32_t& plTableEnd);

    void Dispose(bool pbDisposeProperties = true);

    // --- late binding ---

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"kvTag"; }

    // --- ResultSource (text/privStrCat.h) ---

    // The result without a copy; stays as it is when the tag goes on to another value.
    std::shared_ptr<const privStrCat> resultBuilder() override;
    std::u16string result() override { return Result(); }

    // --- direct/DirectOwner.h ---

    platform::Services& directServices() const override { return services_; }
    automation::ObjectRef directProperties() override { return Properties().object(); }
    automation::ObjectRef directDatabase() override { return Database(); }
    std::shared_ptr<privProperties> directErrorLog() override { return ErrorLog(); }
    std::u16string directElement(std::u16string_view psName) override;

    // --- for the engine's other rooms ---

    // Appends the result, for which it makes no builder of its own. Raises std::bad_alloc.
    void appendResult(privStrCat& target);
    // The same as Value, without the search for tags.
    void Value(const CompiledTemplate& compiled);
    // What the tag hands down to its child tags; every collection is there.
    std::shared_ptr<const TagContext> sharedContext();
    // The elements, if somebody may have changed them; else null.
    std::shared_ptr<privProperties> changedElements() const { return elements_; }
    // Whether a rule ("kvTag.Missing") had the evaluation fail; the result is empty then.
    bool hasFailed() const noexcept { return hasFailed_; }
    // True for a tag made by another tag.
    bool isChild() const { return isChild_; }
    // The internal collection that PRIVVAR and PRIVSTRCATDUMP read; created on first use.
    std::shared_ptr<privProperties> privateVariables() { return ensure(&TagContext::privateVariables); }
    platform::Services& services() const { return services_; }

private:
    friend class TagList;

    // To be held by each member that calls handlers or objects of the host: they may let go of the tag.
    std::shared_ptr<Object> keep() { return weak_from_this().lock(); }
    // Calls what may raise; enters what it raises in the error log.
    template <class Call>
    void guarded(Call&& call) noexcept;

    void becomeChild(std::shared_ptr<const TagContext> context);
    void adoptOutcome(TextRef value, std::shared_ptr<kvTags> tags, TextRef result);
    // Lets go what it shares with its parent, its own tags first.
    void releaseShared();
    void releaseDirect() noexcept;

    TagContext& ownContext();  // for changes: a copy when others hold the same one
    const std::shared_ptr<privProperties>& ensure(std::shared_ptr<privProperties> TagContext::*member);
    const Collection& ensure(Collection TagContext::*member);
    std::u16string processed(std::u16string text);
    std::shared_ptr<const TagContext> contextFor(std::u16string_view text);

    bool isRunning() const { return answering_ && evaluation_ != nullptr; }
    // `isHeard`: a TagListener has heard of the tag.
    void ensureResult(bool isHeard = false);
    void evaluate();
    void evaluateValue();
    void finishResult();
    void answerItself();
    void takeResult(TextRef result);
    void forgetEmptyTags();
    void enterFailure() noexcept;
    std::shared_ptr<kvTags> listTags(const TextRef& value, const TopLevelTags& found);

    platform::Services& services_;
    std::u16string name_;
    TextRef value_;
    std::shared_ptr<kvTags> tags_;
    std::shared_ptr<TagContext> context_;
    std::shared_ptr<privProperties> elements_;
    std::shared_ptr<kvDirectTag> direct_;
    TextRef result_;                          // of a value without tags; null when the builder holds it
    BuilderRef resultBuilder_;                // null until evaluation or somebody makes it
    const Evaluation* evaluation_ = nullptr;  // while it runs
    std::uint32_t changes_ = 0;               // of name and value
    bool tagsBuilt_ = false;
    bool resultGenerated_ = false;
    bool answering_ = false;  // the evaluation of this tag is running
    bool isChild_ = false;
    bool hasFailed_ = false;
    bool cleanMergeMode_ = false;
};

// Cleans in place as a new tag with these options does, with its line in the timing log.
void cleanAsTag(platform::Services& services, std::u16string& text, const CleanOptions& options) noexcept;

}  // namespace velmor
