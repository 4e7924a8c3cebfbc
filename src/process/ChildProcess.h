#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <string>

namespace velmor::process {

// A program that this one talks with line by line over its standard input and output. Its standard error is ours.
class ChildProcess {
public:
    // The answer to a line takes no longer than this ...
    static constexpr std::chrono::seconds patience{30};
    // ... and is no longer than that.
    static constexpr std::size_t longestLine = std::size_t{1} << 27;

    // Starts the command with "sh -c". Throws Error 429.
    explicit ChildProcess(const std::string& command);
    // Closes its streams and gives it a second to end; then it is killed, with the processes that it started.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Throw Error 440 when the program ended, or does not listen or answer in time. It is of no use afterwards.
    void send(const std::string& line);
    std::string receive();

private:
    using Moment = std::chrono::steady_clock::time_point;

    void await(short events, Moment deadline) const;

    pid_t id_ = -1;
    int stream_ = -1;
    std::string received_;  // after the last line
};

}  // namespace velmor::process
