#pragma once

#include <pybind11/pybind11.h>

#include <string>
#include <thread>

#include "velmor/velmor.h"

namespace velmor::python {

namespace py = pybind11;

// An evaluation that this thread runs for Python. Made and destroyed with the interpreter lock held.
class Run {
public:
    // `handlers`: a dict of the callables by the names under which the engine knows them. None if it knows none.
    explicit Run(py::object handlers) : handlers_(std::move(handlers)), outer_(current_) { current_ = this; }
    ~Run() { current_ = outer_; }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    // The innermost one of this thread. There is one while a handler answers.
    static Run& current() noexcept { return *current_; }

    py::object handler(const std::string& name) const { return handlers_[name.c_str()]; }
    // Keeps an exception that must end the program's work, such as KeyboardInterrupt. No handler is asked any more.
    void stop(py::error_already_set& error);
    bool isStopped() const noexcept { return static_cast<bool>(exception_); }
    // Raises that exception, if there is one.
    void raiseStop() const;

private:
    static inline thread_local Run* current_ = nullptr;

    const py::object handlers_;
    py::object exception_;
    Run* const outer_;
};

// A handler that asks the callable of that name of the current run. Called without the interpreter lock.
Answer handlerOf(std::string name);

// The class TagCall.
void defineTagCall(py::module_& module);

}  // namespace velmor::python
