#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Variant.h"
#include "core/kvTag.h"
#include "core/kvTags.h"
#include "platform/MemoryServices.h"
#include "properties/privProperties.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::test {

// A handler of any level that answers with a function and records its calls.
class ScriptedHandler final : public automation::Object {
public:
    using Answer = std::function<automation::Variant(kvTag& tag)>;

    ScriptedHandler(std::int32_t level, Answer answer, std::vector<std::string>& calls)
        : level_(level), answer_(std::move(answer)), calls_(calls) {}

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind,
                               std::span<automation::Variant> arguments) override {
        const std::string call(name.begin(), name.end());
        calls_.push_back(call);
        if (call == "Interface") return level_;
        if (call == "GetTagValue") return answer_(dynamic_cast<kvTag&>(*arguments[0].object()));
        if (call == "Dispose" && level_ == failingDispose) throw Error(5, u"Test", u"Dispose failed");
        return {};
    }
    std::u16string typeName() const override { return u"ScriptedHandler"; }

    static constexpr std::int32_t failingDispose = 99;

private:
    std::int32_t level_;
    Answer answer_;
    std::vector<std::string>& calls_;
};

// A template in which "[" and "]" are replaced by "<KV:TAG>" and "</KV>".
inline std::u16string tagged(std::u16string_view shortened) {
    std::u16string text;
    for (const char16_t unit : shortened) {
        if (unit == u'[') {
            text += u"<KV:TAG>";
        } else if (unit == u']') {
            text += u"</KV>";
        } else {
            text += unit;
        }
    }
    return text;
}

// A machine with handlers, and a template on it. Its texts are tagged().
class TagTest {
public:
    void addHandler(std::u16string_view name, std::int32_t level, ScriptedHandler::Answer answer) {
        const std::u16string className = std::u16string(u"Test.").append(name);
        services.registry.set(u"SOFTWARE\\Korvane\\Quillmark\\Handlers", name, className);
        services.objects.add(className,
                             [this, level, answer] { return std::make_shared<ScriptedHandler>(level, answer, calls); });
    }

    void set(std::u16string_view name, std::u16string_view value) { properties->AddStr(name, tagged(value), true); }

    std::shared_ptr<kvTag> make(std::u16string_view text) {
        auto tag = std::make_shared<kvTag>(services);
        tag->Properties(Collection(properties));
        tag->Value(tagged(text));
        return tag;
    }

    std::u16string evaluate(std::u16string_view text) {
        last = make(text);
        return last->Result();
    }

    // "name: message" of each error-log entry of the last evaluation.
    std::vector<std::u16string> errors() {
        std::vector<std::u16string> found;
        const PropertiesRef log = last->ErrorLog();
        for (std::int32_t i = 1; i <= log->Count(); ++i) {
            found.push_back(std::u16string(log->Item(i)->Name()).append(u": ").append(log->Item(i)->ValueStr()));
        }
        return found;
    }

    platform::MemoryServices services;
    PropertiesRef properties = std::make_shared<privProperties>(services);
    std::vector<std::string> calls;
    std::shared_ptr<kvTag> last;
};

}  // namespace velmor::test
