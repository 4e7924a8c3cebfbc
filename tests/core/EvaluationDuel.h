#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "core/BuiltInCommands.h"
#include "core/CompiledTemplate.h"
#include "core/Evaluation.h"
#include "core/LiteralTags.h"
#include "core/kvTag.h"
#include "platform/MemoryServices.h"
#include "properties/privProperties.h"
#include "text/Compare.h"
#include "text/Encoding.h"

namespace velmor::test {

// Compares the engine with the literal loop, on a template and values of its tags that are made of pieces
// that the bytes select.
class EvaluationDuel {
public:
    EvaluationDuel(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {
        const bool loose = byte() % 2 == 0;
        text_ = (byte() % 8 == 0 ? u"{\\rtf1 " : u"") + text(loose, 9);
        for (std::u16string* value : {&p_, &q_, &v_}) *value = text(loose, 3);
    }

    // The difference; empty without one, or if the literal loop would not end.
    std::string run() {
        try {
            const std::u16string slow = slowResult(), fast = fastResult();
            if (!compared_ || (fast == slow && plain_.value_or(fast) == fast)) return {};
            return toUtf8(u"template: " + text_ + u"\np: " + p_ + u"\nq: " + q_ + u"\nv: " + v_ + u"\nfast: " + fast +
                          u"\nslow: " + slow + u"\nplain: " + plain_.value_or(u"(not)"));
        } catch (const TooMuch&) {
            return {};
        }
    }
    bool compared() const { return compared_; }
    bool wasPlain() const { return plain_.has_value(); }

private:
    struct TooMuch {};

    unsigned byte() { return data_ == end_ ? 0u : *data_++; }
    std::u16string text(bool loose, unsigned most) {
        // clang-format off
        static constexpr std::u16string_view pieces[] = {
            u"<KV:TAG>PROPERTY:p=:</KV>", u"<KV:TAG>PROPERTY:p=</KV>", u"<kv:tag>PROPERTY:P=:</kv>",
            u"<KV:TAG>PROPERTY:q=:</KV>", u"<KV:TAG>PROPERTY:q=</KV>", u"<KV:TAG>PRIVVAR:v=:</KV>",
            u"<KV:TAG>PRIVVAR:v=</KV>", u"<KV:TAG>PROPERTY:p=<KV:TAG>PROPERTY:q=:</KV>:</KV>",
            u"<KV:TAG>PROPERTY:p=<KV:TAG>PROPERTY:q=</KV></KV>", u"<KV:TAG>PRIVVAR:z=<KV:TAG>PROPERTY:q=:</KV></KV>",
            u"<KV:", u"<KV:x", u"x</KV>", u"TAG>PROPERTY:q=:", u"1 < 2", u"x",
            // Pieces that can form a marker; with those before, only the index of pairs is used.
            u"<KV:TAG>PROPERTY:z=zz:</KV>", u"<KV:TAG>SETPROPERTY:p=1:</KV>",
            u"<KV:TAG>SETPROPERTY:q=<KV:TAG>PROPERTY:r=:</KV>:</KV>", u"</KV>", u"<K", u"V:", u"<", u"</K", u"V>",
            u"KV:TAG>PROPERTY:p=", u"TAG>PROPERTY:p=", u":", u":</KV>", u"<KV", u"{\\rtf1", u"\\}",
            u"<KV:TAG>PROPERTY:p=<KV</KV>", u"<KV:</KV>", u"<KV:TAG>PROPERTY:p="};
        // clang-format on
        std::u16string made;
        for (unsigned left = byte() % (most + 1); left > 0; --left) made += pieces[byte() % (loose ? 35 : 16)];
        return made;
    }
    PropertiesRef properties() {
        const auto made = std::make_shared<privProperties>(services_);
        made->AddStr(u"p", p_);
        made->AddStr(u"q", q_);
        made->AddStr(u"r", u"V:}{x");  // SETPROPERTY evaluates a value that does not call itself
        return made;
    }

    std::u16string slowResult() {
        const auto context = std::make_shared<TagContext>();
        context->properties = Collection(properties());
        context->errorLog = std::make_shared<privProperties>(services_);
        context->privateVariables = std::make_shared<privProperties>(services_);
        context->privateVariables->AddStr(u"v", v_);
        int dispatches = 0;
        const auto answer = [&](const std::u16string& name, bool& protect) {
            if (++dispatches > 60) throw TooMuch();
            context->protectRtf = protect;
            const bool builtIn = equalIgnoringCase(name.substr(0, 4), u"TAG>");
            std::u16string value = builtIn ? answerCommand(services_, ContextRef(context), name).text : u"";
            protect = fitIntoRtf(services_, protect, value) || protect;
            return value;
        };
        return literal::evaluate(text_, text_.starts_with(rtfStart), answer);
    }
    std::u16string fastResult() {
        const auto tag = std::make_shared<kvTag>(services_);
        tag->Properties(Collection(properties()));
        tag->privateVariables()->AddStr(u"v", v_);
        const PreparedTemplate prepared(services_, text_);
        plain_ = prepared.plain.result(services_, *tag->Properties().own());
        tag->Value(prepared.compiled);
        const std::u16string result = tag->Result();
        compared_ = true;
        for (std::int32_t i = tag->ErrorLog()->Count(); i > 0; --i) {  // the loop has no limits
            if (tag->ErrorLog()->Item(i)->ValueStr() == limitMessage(EvaluationLimit::levels)) compared_ = false;
        }
        return result;
    }

    const std::uint8_t* data_;
    const std::uint8_t* end_;
    platform::MemoryServices services_;
    std::u16string text_, p_, q_, v_;
    bool compared_ = false;
    std::optional<std::u16string> plain_;
};

}  // namespace velmor::test
