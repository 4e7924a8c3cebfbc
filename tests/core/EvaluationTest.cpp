// The engine against the described loop, on texts made of what hurts.

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "Seed.h"
#include "automation/Convert.h"
#include "core/BuiltInCommands.h"
#include "core/Evaluation.h"
#include "core/LiteralTags.h"
#include "core/kvTag.h"
#include "core/kvTags.h"
#include "platform/MemoryServices.h"
#include "properties/privProperties.h"
#include "text/Compare.h"

namespace velmor {
namespace {

using automation::InvokeKind;
using automation::Variant;
using Texts = std::map<std::u16string, std::u16string>;

// Answers "H>key:" with the key's text.
class TextHandler final : public automation::Object {
public:
    explicit TextHandler(const Texts& texts) : texts_(texts) {}
    static std::u16string answer(const Texts& texts, const std::u16string& name) {
        const auto found = texts.find(name);
        return found == texts.end() ? u"" : found->second;
    }
    Variant invoke(std::u16string_view name, InvokeKind, std::span<Variant> arguments) override {
        if (name == u"Interface") return std::int32_t{3};
        const Variant tagName = arguments[0].object()->invoke(u"Name", InvokeKind::get, {});
        return answer(texts_, *tagName.get<std::u16string>());
    }
    std::u16string typeName() const override { return u"TextHandler"; }

private:
    const Texts& texts_;
};

struct TooMuch {};

// One random case: a template, the texts of handler "H", and of four properties.
struct Case {
    std::u16string text;
    Texts texts;
    std::u16string properties[4];

    PropertiesRef collection(platform::Services& services) const {
        auto result = std::make_shared<privProperties>(services);
        for (int i = 0; i < 4; ++i) result->AddStr(std::u16string(1, static_cast<char16_t>(u'p' + i)), properties[i]);
        return result;
    }
};

class Evaluators {
public:
    Evaluators() {
        services_.registry.set(u"SOFTWARE\\Korvane\\Quillmark\\Handlers", u"H", u"Test.Texts");
        services_.objects.add(u"Test.Texts", [this] { return std::make_shared<TextHandler>(current_->texts); });
    }

    std::u16string fast(const Case& given) {
        current_ = &given;
        template_ = std::make_shared<kvTag>(services_);
        template_->Properties(Collection(given.collection(services_)));
        template_->Value(given.text);
        return template_->Result();
    }

    // The literal loop's result; also what the top-level tags that it found became, by order.
    std::u16string slow(const Case& given) {
        current_ = &given;
        auto context = std::make_shared<TagContext>();
        context->properties = Collection(given.collection(services_));
        context->privateVariables = std::make_shared<privProperties>(services_);
        context->errorLog = std::make_shared<privProperties>(services_);
        const ContextRef shared = context;
        int dispatches = 0;
        const auto answer = [&](const std::u16string& name, bool& protect) {
            if (++dispatches > 60) throw TooMuch();
            const std::size_t separator = name.find(u'>');
            if (separator == std::u16string::npos) return std::u16string();
            const std::u16string handler = upperCase(name.substr(0, separator));
            std::u16string value;
            context->protectRtf = protect;
            if (handler == u"TAG") value = BuiltInCommands(services_, shared).run(name);
            if (handler == u"H") value = TextHandler::answer(given.texts, name);
            protect = fitIntoRtf(services_, protect, value) || protect;
            return value;
        };
        const bool protect = given.text.starts_with(u"{\\rtf1");
        return literal::evaluate(given.text, protect, answer);
    }

    kvTag& lastTemplate() { return *template_; }

private:
    platform::MemoryServices services_;
    const Case* current_ = nullptr;
    std::shared_ptr<kvTag> template_;
};

const std::u16string kPieces[] = {
    u"<KV:H>a:</KV>",
    u"<KV:H>a</KV>",
    u"<kv:h>A:</kv>",
    u"<KV:H>b:</KV>",
    u"<KV:H>b</KV>",
    u"<KV:H>c:</KV>",
    u"<KV:TAG>PROPERTY:p=:</KV>",
    u"<KV:TAG>PROPERTY:p=</KV>",
    u"<KV:TAG>PROPERTY:q=zz:</KV>",
    u"<KV:TAG>SETPROPERTY:p=1:</KV>",
    u"<KV:TAG>SETPROPERTY:q=<KV:TAG>PROPERTY:r=:</KV>:</KV>",
    u"<KV:H>a:<KV:H>b:</KV>:</KV>",
    u"<KV:H>a:<KV:H>b:</KV></KV>",
    u"<KV:",
    u"</KV>",
    u"<K",
    u"V:",
    u"<",
    u"</K",
    u"V>",
    u"KV:H>a:",
    u"H>a",
    u":",
    u":</KV>",
    u"<KV",
    u"x",
    u"{\\rtf1",
    u"\\}",
};

// Without pieces that could grow to a marker: here the index of pairs has to tell every place.
const std::u16string kWholePieces[] = {
    u"<KV:H>a:</KV>",
    u"<KV:H>a</KV>",
    u"<kv:h>A:</kv>",
    u"<KV:H>b:</KV>",
    u"<KV:H>b</KV>",
    u"<KV:TAG>PROPERTY:p=:</KV>",
    u"<KV:TAG>PROPERTY:p=</KV>",
    u"<KV:H>a:<KV:H>b:</KV>:</KV>",
    u"<KV:H>a:<KV:H>b:</KV></KV>",
    u"<KV:H>a:<KV:H>b</KV></KV>",
    u"<KV:<KV:H>b:</KV>",
    u"<KV:<KV:H>a:</KV>",
    u"<KV:<KV:H>a:<KV:H>b:</KV>:</KV>",
    u"<KV:x",
    u"x</KV>",
    u"H>b:",
    u"1 < 2",
    u"x",
};

template <std::size_t count>
std::u16string randomText(std::mt19937& random, const std::u16string (&pieces)[count], unsigned most) {
    std::u16string text;
    for (unsigned left = random() % (most + 1); left > 0; --left) text += pieces[random() % count];
    return text;
}

template <std::size_t count>
Case randomCase(std::mt19937& random, const std::u16string (&pieces)[count]) {
    Case made;
    made.text = (random() % 8 == 0 ? u"{\\rtf1 " : u"") + randomText(random, pieces, 9);
    const char16_t* const names[] = {
        u"H>a:", u"H>A:", u"h>A:", u"H>b:", u"H>c:", u"H>a:<KV:H>b:</KV>:", u"H>a:<KV:H>b</KV>:", u"H>a:H>b::"};
    for (const char16_t* name : names) made.texts[name] = randomText(random, pieces, 3);
    for (int i = 0; i < 2; ++i) made.properties[i] = randomText(random, pieces, 3);
    // What SETPROPERTY evaluates on its own is kept from calling itself.
    made.properties[2] = u"V:}{x";
    return made;
}

std::string shown(const Case& made) {
    std::u16string all = u"template: " + made.text;
    for (const auto& [name, text] : made.texts) all += u"\n" + name + u" -> " + text;
    for (const std::u16string& property : made.properties) all += u"\nproperty: " + property;
    return {all.begin(), all.end()};
}

// The literal loop knows no limits.
bool metLimit(kvTag& tag) {
    const PropertiesRef log = tag.ErrorLog();
    for (std::int32_t i = 1; i <= log->Count(); ++i) {
        if (log->Item(i)->ValueStr() == limitMessage(EvaluationLimit::levels)) return true;
    }
    return false;
}

template <std::size_t count>
void compare(const std::u16string (&pieces)[count], int turns) {
    const unsigned seed = testSeed();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    Evaluators evaluators;
    int compared = 0;
    for (int turn = 0; turn < turns; ++turn) {
        const Case made = randomCase(random, pieces);
        std::u16string slow;
        try {
            slow = evaluators.slow(made);
        } catch (const TooMuch&) {
            continue;
        }
        const std::u16string fast = evaluators.fast(made);
        if (metLimit(evaluators.lastTemplate())) continue;
        ++compared;
        ASSERT_EQ(fast, slow) << shown(made) << "\nfast: " << std::string(fast.begin(), fast.end())
                              << "\nslow: " << std::string(slow.begin(), slow.end());
    }
    EXPECT_GT(compared, turns / 4);
}

TEST(Evaluation, GivesWhatTheDescribedLoopGives) {
    compare(kPieces, 15000);
}

TEST(Evaluation, GivesTheSameWherePairsTellThePlaces) {
    compare(kWholePieces, 15000);
}

}  // namespace
}  // namespace velmor
