#include "cli/TapedServices.h"

#include <concepts>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/RecordValues.h"
#include "cli/TapedObjects.h"
#include "text/Error.h"

namespace velmor::cli {
namespace {

using automation::ObjectRef;
using Text = std::u16string;
using Texts = std::vector<Text>;
using OptionalText = std::optional<Text>;
using OptionalBytes = std::optional<std::string>;
using View = std::u16string_view;

// The form of what a service gives, and back.
struct Answer {
    static Json formOf(bool value) { return value; }
    static Json formOf(double value) { return numberForm(value); }
    static Json formOf(automation::Date value) { return numberForm(value.days); }
    static Json formOf(char16_t value) { return static_cast<unsigned>(value); }
    static Json formOf(const std::u16string& value) { return textForm(value); }
    static Json formOf(const std::string& value) { return bytesForm(value); }
    template <class T>
    static Json formOf(const std::optional<T>& value) {
        return value ? formOf(*value) : Json();
    }
    static Json formOf(const std::vector<std::u16string>& values) {
        Json form = Json::array();
        for (const std::u16string& value : values) form.push_back(formOf(value));
        return form;
    }

    static void take(const Json& form, bool& value) { value = form.get<bool>(); }
    static void take(const Json& form, double& value) { value = numberOf(form); }
    static void take(const Json& form, automation::Date& value) { value.days = numberOf(form); }
    static void take(const Json& form, char16_t& value) { value = static_cast<char16_t>(form.get<std::uint16_t>()); }
    static void take(const Json& form, std::u16string& value) { value = textOf(form); }
    static void take(const Json& form, std::string& value) { value = bytesOf(form); }
    template <class T>
    static void take(const Json& form, std::optional<T>& value) {
        if (!form.is_null()) take(form, value.emplace());
    }
    static void take(const Json& form, std::vector<std::u16string>& values) {
        for (const Json& value : form) take(value, values.emplace_back());
    }
};

// Asks for a service; texts are its arguments. Any trouble gives the empty answer.
template <class Real>
auto askFor(Tape& tape, const char* service, std::initializer_list<View> arguments, const Real& real) {
    decltype(real()) value{};
    Json question = Json::array({service});
    for (const View argument : arguments) question.push_back(textForm(argument));
    const Json answer = tape.ask(std::move(question), [&] { return Json::object({{"gave", Answer::formOf(real())}}); });
    tape.read(answer, [&](const Json& given) { Answer::take(given.at("gave"), value); });
    return value;
}

// Asks for a function of a service whose arguments are texts.
class Asking {
protected:
    explicit Asking(Tape& tape) : tape_(tape) {}

    auto ask(const char* service, auto& real, auto function, std::same_as<View> auto... texts) const {
        return askFor(tape_, service, {texts...}, [&] { return std::invoke(function, real, texts...); });
    }

    Tape& tape_;
};

// What is written is not recorded, only whether it could be.
class TapedFiles : public platform::Files, Asking {
public:
    TapedFiles(Files& real, Tape& tape) : Asking(tape), real_(real) {}

    bool exists(View path) const override { return ask("files.exists", real_, &Files::exists, path); }
    OptionalBytes read(View path) const override { return ask("files.read", real_, &Files::read, path); }
    bool write(View path, std::string_view bytes) override {
        return askFor(tape_, "files.write", {path}, [&] { return real_.write(path, bytes); });
    }
    bool create(View path) override { return ask("files.create", real_, &Files::create, path); }
    bool append(View path, std::string_view bytes) override {
        return askFor(tape_, "files.append", {path}, [&] { return real_.append(path, bytes); });
    }
    bool remove(View path) override { return ask("files.remove", real_, &Files::remove, path); }
    OptionalText realPath(View path) const override { return ask("files.realPath", real_, &Files::realPath, path); }
    bool makeFolder(View path) override { return ask("files.makeFolder", real_, &Files::makeFolder, path); }

private:
    Files& real_;
};

// The other services.
class TapedMachine : public platform::Registry,
                     public platform::Clock,
                     public platform::Folders,
                     public platform::Guids,
                     public platform::Objects,
                     public platform::Pictures,
                     Asking {
public:
    TapedMachine(platform::Services& real, Tape& tape, TapedObjects& objects)
        : Asking(tape), real_(real), objects_(objects) {}

    OptionalText value(View key, View name) const override {
        return ask("registry.value", real_.registry, &Registry::value, key, name);
    }
    Texts valueNames(View key) const override {
        return ask("registry.valueNames", real_.registry, &Registry::valueNames, key);
    }
    Texts subkeys(View key) const override { return ask("registry.subkeys", real_.registry, &Registry::subkeys, key); }

    automation::Date now() const override { return ask("clock.now", real_.clock, &Clock::now); }
    double timer() const override { return ask("clock.timer", real_.clock, &Clock::timer); }

    Text commonData() const override { return ask("folders.commonData", real_.folders, &Folders::commonData); }
    Text temporary() const override { return ask("folders.temporary", real_.folders, &Folders::temporary); }
    Text component() const override { return ask("folders.component", real_.folders, &Folders::component); }
    Text machineName() const override { return ask("folders.machineName", real_.folders, &Folders::machineName); }
    char16_t separator() const override { return ask("folders.separator", real_.folders, &Folders::separator); }

    Text next() override { return ask("guids.next", real_.guids, &Guids::next); }

    ObjectRef create(View className) override {
        TapedObjects::Held held;
        ObjectRef object;
        std::u16string reason;
        const auto make = [&] {
            try {
                return Json::object({{"gave", objects_.outsideForm(real_.objects.create(className), held)}});
            } catch (const Error& error) {
                return Json::object({{"raised", textForm(error.description())}});
            }
        };
        const Json answer = tape_.ask(Json::array({"objects.create", textForm(className)}), make);
        tape_.read(answer, [&](const Json& given) {
            if (given.contains("raised")) {
                reason = textOf(given["raised"]);
            } else {
                object = objects_.objectOf(given["gave"]);
            }
        });
        if (!object) throw Error(429, reason);
        return object;
    }

    ObjectRef load(View path) override {
        TapedObjects::Held held;
        ObjectRef picture;
        const Json answer = tape_.ask(Json::array({"pictures.load", textForm(path)}), [&] {
            return Json::object({{"gave", objects_.outsideForm(real_.pictures.load(path), held)}});
        });
        tape_.read(answer, [&](const Json& given) { picture = objects_.objectOf(given.at("gave")); });
        return picture;
    }
    bool save(const ObjectRef& picture, View path) override {
        return askFor(tape_, "pictures.save", {path}, [&] {
            TapedObjects::Held held;
            return real_.pictures.save(objects_.handedOut(picture, held).object(), path);
        });
    }

private:
    platform::Services& real_;
    TapedObjects& objects_;
};

struct Parts {
    Parts(platform::Services& real, Tape& tape)
        : objects(std::make_shared<TapedObjects>(tape)), files(real.files, tape), machine(real, tape, *objects) {
        tape.inside(*objects);
    }
    ~Parts() { objects->close(); }

    const std::shared_ptr<TapedObjects> objects;
    TapedFiles files;
    TapedMachine machine;
    platform::Services services{machine, files, machine, machine, machine, machine, machine};
};

}  // namespace

std::shared_ptr<platform::Services> tapedServices(platform::Services& real, Tape& tape) {
    const auto parts = std::make_shared<Parts>(real, tape);
    return {parts, &parts->services};
}

}  // namespace velmor::cli
