// A template and two values, made of pieces that the bytes choose: the engine against the described
// loop. Build it alone for a long run; the registered test runs a few hundred inputs.

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "core/Evaluation.h"
#include "core/LiteralTags.h"
#include "core/kvTag.h"
#include "platform/MemoryServices.h"
#include "properties/privProperties.h"

namespace {

using namespace velmor;

// clang-format off
const char16_t* const kPieces[] = {
    u"<KV:", u"</KV>", u"<kv:TAG>PROPERTY:", u"<KV:TAG>PROPERTY:p=:</KV>", u"<KV:TAG>PROPERTY:q=", u"p", u"q", u":",
    u":</KV>", u"<K", u"V:", u"<", u"/KV>", u"TAG>PROPERTY:p=", u"x", u"{\\rtf1"};
// clang-format on

struct TooMuch {};

std::u16string take(const std::uint8_t*& data, const std::uint8_t* end) {
    std::u16string text;
    while (data != end && *data != 0xFF) text += kPieces[*data++ % std::size(kPieces)];
    if (data != end) ++data;
    return text;
}

// The first value of a tag by its name alone: the engine's dispatch without its loop.
class OneTag {
public:
    OneTag(platform::Services& services, PropertiesRef properties) : services_(services), properties_(properties) {}
    std::u16string operator()(const std::u16string& name, bool& protect) {
        if (++count_ > 200) throw TooMuch();
        const auto tag = std::make_shared<kvTag>(services_);
        tag->Properties(Collection(properties_));
        tag->ProtectRTF(protect);
        tag->Name(name);
        tag->Result();
        protect = tag->ProtectRTF();
        return tag->Value();
    }

private:
    platform::Services& services_;
    PropertiesRef properties_;
    int count_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::uint8_t* const end = data + std::min<std::size_t>(size, 64);
    platform::MemoryServices services;
    const auto properties = std::make_shared<privProperties>(services);
    properties->AddStr(u"p", take(data, end));
    properties->AddStr(u"q", take(data, end));
    const std::u16string text = take(data, end);

    const auto tag = std::make_shared<kvTag>(services);
    tag->Properties(Collection(properties));
    tag->Value(text);
    const std::u16string fast = tag->Result();
    if (tag->ErrorLog()->Count() != 0) return 0;  // a limit, which the loop does not know
    try {
        OneTag answer(services, properties);
        if (fast != literal::evaluate(text, text.starts_with(kRtfStart), std::ref(answer))) std::abort();
    } catch (const TooMuch&) {
        return 0;
    }
    return 0;
}
