#include "process/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <thread>

#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::process {
namespace {

constexpr std::int32_t cannotCreate = 429;

[[noreturn]] void fail(std::u16string message) {
    throw Error(automationError, std::move(message));
}

// In the child, where only calls that are safe after fork may be made.
[[noreturn]] void becomeCommand(int stream, const char* command) noexcept {
    setpgid(0, 0);
    if (dup2(stream, STDIN_FILENO) >= 0 && dup2(stream, STDOUT_FILENO) >= 0) {
        execl("/bin/sh", "sh", "-c", command, static_cast<char*>(nullptr));
    }
    _exit(127);
}

bool hasEnded(pid_t id) noexcept {
    return waitpid(id, nullptr, WNOHANG) == id;
}

}  // namespace

ChildProcess::ChildProcess(const std::string& command) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw Error(cannotCreate, u"Cannot start a handler: " + fromUtf8(command));
    }
    id_ = fork();
    if (id_ == 0) becomeCommand(ends[1], command.c_str());
    close(ends[1]);
    stream_ = ends[0];
    if (id_ < 0) {
        close(stream_);
        throw Error(cannotCreate, u"Cannot start a handler: " + fromUtf8(command));
    }
    setpgid(id_, id_);
    fcntl(stream_, F_SETFL, O_NONBLOCK);
}

ChildProcess::~ChildProcess() {
    close(stream_);
    for (int tenths = 0; tenths < 10; ++tenths) {
        if (hasEnded(id_)) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(tenths == 0 ? 10 : 100));
    }
    kill(-id_, SIGKILL);
    waitpid(id_, nullptr, 0);
}

void ChildProcess::await(short events, Moment deadline) const {
    using std::chrono::milliseconds;
    const auto left = std::chrono::duration_cast<milliseconds>(deadline - std::chrono::steady_clock::now());
    pollfd stream{stream_, events, 0};
    const int ready = poll(&stream, 1, static_cast<int>(std::max<milliseconds::rep>(left.count(), 0)));
    if (ready == 0) fail(u"The handler did not answer within 30 seconds");
    if (ready < 0 && errno != EINTR) fail(u"The handler cannot be reached");
}

void ChildProcess::send(const std::string& line) {
    const Moment deadline = std::chrono::steady_clock::now() + patience;
    for (std::size_t sent = 0; sent < line.size();) {
        const ssize_t count = ::send(stream_, line.data() + sent, line.size() - sent, MSG_NOSIGNAL);
        if (count >= 0) {
            sent += static_cast<std::size_t>(count);
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            await(POLLOUT, deadline);
        } else if (errno != EINTR) {
            fail(u"The handler's program has ended");
        }
    }
}

std::string ChildProcess::receive() {
    const Moment deadline = std::chrono::steady_clock::now() + patience;
    std::array<char, 65536> block;
    for (std::size_t searched = 0;;) {
        const std::size_t end = received_.find('\n', searched);
        if (end != received_.npos) {
            std::string line = received_.substr(0, end);
            received_.erase(0, end + 1);
            return line;
        }
        searched = received_.size();
        if (searched > longestLine) fail(u"The handler's answer is too long");
        const ssize_t count = recv(stream_, block.data(), block.size(), 0);
        if (count > 0) {
            received_.append(block.data(), static_cast<std::size_t>(count));
            // Also when lines keep coming.
            if (std::chrono::steady_clock::now() > deadline) fail(u"The handler did not answer within 30 seconds");
        } else if (count == 0) {
            fail(u"The handler's program has ended");
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            await(POLLIN, deadline);
        } else if (errno != EINTR) {
            fail(u"The handler's program has ended");
        }
    }
}

}  // namespace velmor::process
