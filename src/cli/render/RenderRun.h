#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "cli/render/Destination.h"
#include "cli/render/LetterMaker.h"
#include "cli/render/RecordFeed.h"
#include "cli/render/RunLog.h"

namespace velmor::cli {

// Makes letters of records on several threads, and gives them to the destination in the order of the data.
//
// A thread takes the next few records, makes their letters, and lays them where the one whose turn it is gives them to
// the destination. So many letters are on their way at most that memory does not depend on the number of records.
class RenderRun {
public:
    using MakeMaker = std::function<std::unique_ptr<LetterMaker>()>;  // called on the thread that uses it

    // All must last.
    RenderRun(RecordFeed& feed, MakeMaker makeMaker, Destination& destination, RunLog& log)
        : feed_(feed), makeMaker_(std::move(makeMaker)), destination_(destination), log_(log) {}

    // Returns when all is done, or after an interruption (Interruption.h). Throws what ended the run.
    void run(unsigned threads);

private:
    struct Batch {
        std::uint64_t turn = 0;
        std::vector<Letter> letters;
        std::size_t size = 0;  // bytes
    };

    void work();
    void workThrough(LetterMaker& maker);
    bool take(std::vector<Record>& records, Batch& batch);
    bool awaitRoom(std::uint64_t turn);
    void deliver(Batch batch);
    void admit(Batch& batch);
    void complete(Batch& batch);
    void adapt(const Batch& batch);
    void stop(std::exception_ptr reason);

    RecordFeed& feed_;
    const MakeMaker makeMaker_;
    Destination& destination_;
    RunLog& log_;
    std::uint64_t window_ = 0;               // batches
    std::atomic<std::size_t> batchSize_{1};  // records
    std::atomic<double> progress_{-1};

    std::mutex reading_;  // of what follows
    std::uint64_t taken_ = 0;
    bool isEnd_ = false;

    std::mutex mutex_;                  // of what follows
    std::condition_variable changed_;   // for threads that make letters
    std::condition_variable finished_;  // for the one that waits for them
    std::map<std::uint64_t, Batch> ready_;
    std::size_t readySize_ = 0;  // bytes
    std::uint64_t next_ = 0;     // the turn that is to be delivered
    bool isDelivering_ = false;
    unsigned working_ = 0;
    std::exception_ptr failure_;
};

}  // namespace velmor::cli
