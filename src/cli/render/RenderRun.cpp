#include "cli/render/RenderRun.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "cli/render/Interruption.h"

namespace velmor::cli {
namespace {

constexpr std::size_t mostReady = std::size_t{1} << 25;   // bytes of letters that wait for their turn
constexpr std::size_t batchBytes = std::size_t{1} << 18;  // of records, and roughly of letters
constexpr std::size_t largestBatch = 64;                  // records

}  // namespace

void RenderRun::run(unsigned threads) {
    window_ = 4 * std::uint64_t{threads};
    working_ = threads;
    std::vector<std::thread> workers;
    for (unsigned i = 0; i < threads; ++i) workers.emplace_back([this] { work(); });
    {
        std::unique_lock lock(mutex_);
        do {  // once also if the workers have finished by now
            finished_.wait_for(lock, std::chrono::milliseconds(100), [this] { return working_ == 0; });
            if (Interruption::requested()) changed_.notify_all();
            lock.unlock();
            log_.showProgress(progress_);
            lock.lock();
        } while (working_ > 0);
    }
    for (std::thread& worker : workers) worker.join();
    if (failure_) std::rethrow_exception(failure_);
}

void RenderRun::work() {
    try {
        const std::unique_ptr<LetterMaker> maker = makeMaker_();
        workThrough(*maker);
    } catch (...) {
        stop(std::current_exception());
    }
    const std::scoped_lock lock(mutex_);
    --working_;
    finished_.notify_all();
}

void RenderRun::workThrough(LetterMaker& maker) {
    std::vector<Record> records;
    Batch batch;
    while (take(records, batch)) {
        for (const Record& record : records) {
            if (Interruption::requested()) return;
            batch.letters.push_back(maker.make(record));
            batch.size += batch.letters.back().size();
        }
        adapt(batch);
        deliver(std::exchange(batch, {}));
    }
}

// The vector keeps the memory of its records.
bool RenderRun::take(std::vector<Record>& records, Batch& batch) {
    const std::scoped_lock lock(reading_);
    if (isEnd_ || !awaitRoom(taken_)) return false;
    std::size_t count = 0;
    std::size_t bytes = 0;
    while (count < batchSize_ && bytes < batchBytes) {
        if (count == records.size()) records.emplace_back();
        if (!feed_.next(records[count])) {
            isEnd_ = true;
            break;
        }
        bytes += records[count++].bytes.size();
    }
    records.resize(count);
    progress_ = feed_.progress();
    batch.turn = taken_;
    if (count > 0) ++taken_;
    return count > 0 && !Interruption::requested();
}

// False when the run has ended.
bool RenderRun::awaitRoom(std::uint64_t turn) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] {
        const bool hasRoom = turn == next_ || (turn < next_ + window_ && readySize_ < mostReady);
        return hasRoom || failure_ || Interruption::requested();
    });
    return !failure_ && !Interruption::requested();
}

// Large letters travel in small batches.
void RenderRun::adapt(const Batch& batch) {
    const std::size_t each = batch.size / batch.letters.size() + 1;
    batchSize_ = std::clamp<std::size_t>(batchBytes / each, 1, largestBatch);
}

void RenderRun::deliver(Batch batch) {
    std::vector<Batch> admitted;
    {
        std::unique_lock lock(mutex_);
        readySize_ += batch.size;
        ready_.emplace(batch.turn, std::move(batch));
        if (isDelivering_) return;
        isDelivering_ = true;
        while (!ready_.empty() && ready_.begin()->first == next_ && !failure_) {
            admitted.push_back(std::move(ready_.begin()->second));
            ready_.erase(ready_.begin());
            lock.unlock();
            admit(admitted.back());
            lock.lock();
            readySize_ -= admitted.back().size;
            ++next_;
            changed_.notify_all();
        }
        isDelivering_ = false;
    }
    for (Batch& each : admitted) complete(each);
}

void RenderRun::admit(Batch& batch) {
    for (Letter& letter : batch.letters) {
        if (letter.failure.empty()) destination_.admit(letter);
    }
}

void RenderRun::complete(Batch& batch) {
    for (Letter& letter : batch.letters) {
        if (letter.isMade()) destination_.write(letter);
        log_.add(letter);
    }
}

void RenderRun::stop(std::exception_ptr reason) {
    const std::scoped_lock lock(mutex_);
    if (!failure_) failure_ = std::move(reason);
    changed_.notify_all();
}

}  // namespace velmor::cli
