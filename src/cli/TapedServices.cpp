#include "cli/TapedServices.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/RecordValues.h"
#include "text/Error.h"

namespace velmor::cli {
namespace {

using automation::ObjectRef;
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

// What is written is not recorded, only whether it could be.
class TapedFiles : public platform::Files {
public:
    TapedFiles(Files& real, Tape& tape) : real_(real), tape_(tape) {}

    bool exists(View path) const override {
        return askFor(tape_, "files.exists", {path}, [&] { return real_.exists(path); });
    }
    std::optional<std::string> read(View path) const override {
        return askFor(tape_, "files.read", {path}, [&] { return real_.read(path); });
    }
    bool write(View path, std::string_view bytes) override {
        return askFor(tape_, "files.write", {path}, [&] { return real_.write(path, bytes); });
    }
    bool create(View path) override {
        return askFor(tape_, "files.create", {path}, [&] { return real_.create(path); });
    }
    bool append(View path, std::string_view bytes) override {
        return askFor(tape_, "files.append", {path}, [&] { return real_.append(path, bytes); });
    }
    bool remove(View path) override {
        return askFor(tape_, "files.remove", {path}, [&] { return real_.remove(path); });
    }
    std::optional<std::u16string> realPath(View path) const override {
        return askFor(tape_, "files.realPath", {path}, [&] { return real_.realPath(path); });
    }
    bool makeFolder(View path) override {
        return askFor(tape_, "files.makeFolder", {path}, [&] { return real_.makeFolder(path); });
    }

private:
    Files& real_;
    Tape& tape_;
};

// The other services.
class TapedMachine : public platform::Registry,
                     public platform::Clock,
                     public platform::Folders,
                     public platform::Guids,
                     public platform::Objects,
                     public platform::Pictures {
public:
    TapedMachine(platform::Services& real, Tape& tape, TapedObjects& objects)
        : real_(real), tape_(tape), objects_(objects) {}

    std::optional<std::u16string> value(View key, View name) const override {
        return askFor(tape_, "registry.value", {key, name}, [&] { return real_.registry.value(key, name); });
    }
    std::vector<std::u16string> valueNames(View key) const override {
        return askFor(tape_, "registry.valueNames", {key}, [&] { return real_.registry.valueNames(key); });
    }
    std::vector<std::u16string> subkeys(View key) const override {
        return askFor(tape_, "registry.subkeys", {key}, [&] { return real_.registry.subkeys(key); });
    }

    automation::Date now() const override {
        return askFor(tape_, "clock.now", {}, [&] { return real_.clock.now(); });
    }
    double timer() const override {
        return askFor(tape_, "clock.timer", {}, [&] { return real_.clock.timer(); });
    }

    std::u16string commonData() const override {
        return askFor(tape_, "folders.commonData", {}, [&] { return real_.folders.commonData(); });
    }
    std::u16string temporary() const override {
        return askFor(tape_, "folders.temporary", {}, [&] { return real_.folders.temporary(); });
    }
    std::u16string component() const override {
        return askFor(tape_, "folders.component", {}, [&] { return real_.folders.component(); });
    }
    std::u16string machineName() const override {
        return askFor(tape_, "folders.machineName", {}, [&] { return real_.folders.machineName(); });
    }
    char16_t separator() const override {
        return askFor(tape_, "folders.separator", {}, [&] { return real_.folders.separator(); });
    }

    std::u16string next() override {
        return askFor(tape_, "guids.next", {}, [&] { return real_.guids.next(); });
    }

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
            return real_.pictures.save(objects_.handedOut(picture, held), path);
        });
    }

private:
    platform::Services& real_;
    Tape& tape_;
    TapedObjects& objects_;
};

}  // namespace

struct TapedServices::Parts {
    TapedFiles files;
    TapedMachine machine;
    platform::Services services{machine, files, machine, machine, machine, machine, machine};
};

TapedServices::TapedServices(platform::Services& real, Tape& tape)
    : objects_(std::make_shared<TapedObjects>(tape)), parts_(new Parts{{real.files, tape}, {real, tape, *objects_}}) {}

TapedServices::~TapedServices() {
    objects_->close();
}

platform::Services& TapedServices::services() noexcept {
    return parts_->services;
}

}  // namespace velmor::cli
