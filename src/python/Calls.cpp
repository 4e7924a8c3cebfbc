#include "python/Calls.h"

#include <stdexcept>
#include <utility>

#include "python/Text.h"

namespace velmor::python {
namespace {

// A tag that a callable is asked to answer. Python may keep it for longer than the call.
class Call {
public:
    explicit Call(const TagCall& tag) : tag_(&tag), run_(Run::current()) {}

    void end() noexcept { tag_ = nullptr; }

    // The result of `work`, without the interpreter lock.
    template <class Work>
    auto with(Work work) const {
        if (tag_ == nullptr) throw std::runtime_error("the tag has been answered: a TagCall lasts for one call");
        if (thread_ != std::this_thread::get_id()) throw std::runtime_error("a TagCall belongs to another thread");
        auto result = [&] {
            const py::gil_scoped_release unlocked;
            return work(*tag_);
        }();
        run_.raiseStop();
        return result;
    }

private:
    const TagCall* tag_;
    Run& run_;
    const std::thread::id thread_ = std::this_thread::get_id();
};

std::string typeName(py::handle object) {
    return Py_TYPE(object.ptr())->tp_name;
}

// As the last line of a traceback.
std::string messageOf(const py::error_already_set& error) {
    std::string type = py::str(error.type().attr("__name__"));
    try {
        const std::string text = py::str(error.value());
        return text.empty() ? type : type + ": " + text;
    } catch (const py::error_already_set&) {
        return type;
    }
}

std::u16string asked(const py::object& callable, const TagCall& tag) {
    const auto call = std::make_shared<Call>(tag);
    const struct End {
        Call& call;
        ~End() { call.end(); }
    } end{*call};
    const py::object answer = callable(call);
    if (!PyUnicode_Check(answer.ptr())) {
        throw std::runtime_error("TypeError: the handler returned " + typeName(answer) + ", not str");
    }
    return unitsOf(answer, "the handler's answer");
}

std::u16string answerOf(const std::string& name, const TagCall& tag) {
    Run& run = Run::current();
    if (run.isStopped()) return {};
    try {
        return asked(run.handler(name), tag);
    } catch (py::error_already_set& error) {
        if (error.matches(PyExc_Exception)) throw std::runtime_error(messageOf(error));
        run.stop(error);
        return {};
    }
}

}  // namespace

void Run::stop(py::error_already_set& error) {
    exception_ = error.value();
    if (error.trace()) PyException_SetTraceback(exception_.ptr(), error.trace().ptr());
}

void Run::raiseStop() const {
    if (!exception_) return;
    PyErr_SetObject(py::type::handle_of(exception_).ptr(), exception_.ptr());
    throw py::error_already_set();
}

Answer handlerOf(std::string name) {
    return [name = std::move(name)](const TagCall& tag) {
        const py::gil_scoped_acquire locked;
        return answerOf(name, tag);
    };
}

void defineTagCall(py::module_& module) {
    py::class_<Call, std::shared_ptr<Call>>(module, "TagCall", R"(A tag that a handler is asked to answer.

It lasts for the call of the handler, on the handler's thread; RuntimeError afterwards and on other threads.)")
        .def_property_readonly(
            "command",
            [](const Call& call) { return textOf(call.with([](const TagCall& tag) { return tag.command(); })); },
            "The command, in upper case.")
        .def_property_readonly(
            "command_value",
            [](const Call& call) { return textOf(call.with([](const TagCall& tag) { return tag.commandValue(); })); },
            "The command's value, its tags evaluated; \"0\" for a command without one.")
        .def_property_readonly(
            "is_for_rtf", [](const Call& call) { return call.with([](const TagCall& tag) { return tag.isForRtf(); }); },
            "Whether the answer goes into an RTF document. The engine escapes a plain answer for it.")
        .def(
            "parameter",
            [](const Call& call, py::handle name, py::handle otherwise) {
                const std::u16string key = unitsOf(name, "name");
                const std::u16string standard = unitsOf(otherwise, "default");
                return textOf(call.with([&](const TagCall& tag) { return tag.parameter(key, standard); }));
            },
            py::arg("name"), py::arg("default") = "", "A parameter, its tags evaluated; `default` if the tag has none.")
        .def(
            "property",
            [](const Call& call, py::handle name) -> py::object {
                const std::u16string key = unitsOf(name, "name");
                const auto value = call.with([&](const TagCall& tag) { return tag.property(key); });
                return value ? py::object(textOf(*value)) : py::none();
            },
            py::arg("name"), "A property of the template as text; None if it is absent.")
        .def(
            "set_property",
            [](const Call& call, py::handle name, py::handle value) {
                const std::u16string key = unitsOf(name, "name");
                const std::u16string text = unitsOf(value, "value");
                call.with([&](const TagCall& tag) { return tag.setProperty(key, text), true; });
            },
            py::arg("name"), py::arg("value"), "Sets a property for the tags that follow.")
        .def(
            "evaluate",
            [](const Call& call, py::handle text) {
                const std::u16string units = unitsOf(text, "text");
                return textOf(call.with([&](const TagCall& tag) { return tag.evaluate(units); }));
            },
            py::arg("text"), "A text with its tags evaluated.")
        .def(
            "log_error",
            [](const Call& call, py::handle message) {
                const std::u16string text = unitsOf(message, "message");
                call.with([&](const TagCall& tag) { return tag.logError(text), true; });
            },
            py::arg("message"), "Adds an entry to the errors of the evaluation.");
}

}  // namespace velmor::python
