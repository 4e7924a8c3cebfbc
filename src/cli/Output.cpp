#include "cli/Output.h"

#include <utility>

#include "cli/Failure.h"
#include "cli/Streams.h"
#include "platform/SystemServices.h"
#include "text/Encoding.h"

namespace velmor::cli {

Output::Output(platform::Files& files, std::string name) : name_(std::move(name)) {
    if (name_.empty() || name_ == "-") return;
    writer_ = files.writer(fromUtf8(name_));
    if (!writer_) refuse();
}

void Output::write(std::string_view bytes) {
    constexpr std::size_t block = std::size_t{1} << 16;
    if (!writer_) return print(bytes);
    gathered_ += bytes;
    if (gathered_.size() >= block) flush();
}

void Output::finish() {
    if (!writer_) return finishPrinting();
    flush();
    if (!writer_->finish()) refuse();
}

void Output::flush() {
    if (!writer_->write(gathered_)) refuse();
    gathered_.clear();
}

void Output::refuse() const {
    throw Failure(exitFile, "cannot write '" + name_ + "': " + platform::lastSystemError());
}

}  // namespace velmor::cli
