// SPDX-License-Identifier: MIT
#pragma once


#include <algorithm>
#include <cstddef>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace Kelvo::Geodesy::Batch {

/// Threads of one batch call: 1 runs it on the caller's thread, 0 on every hardware thread,
/// n on n threads. A call splits its N items into contiguous ranges, one per thread; each
/// item's answer depends on that item alone, so answers are the same, bit for bit, for every
/// thread count. These are the only threads the library starts, and only inside such a call:
/// they are joined before it returns.
class ThreadCount {
public:
    explicit ThreadCount(unsigned count = 1)
        : count(count)
    {
    }

    /// The number of threads a call of `items` items runs on: never more than one per
    /// `minimumItems` items, so small calls stay on the caller's thread.
    unsigned resolve(std::size_t items, std::size_t minimumItems = 16384) const
    {
        const unsigned wanted = count == 0 ? std::max(1U, std::thread::hardware_concurrency()) : count;
        const std::size_t useful = std::max<std::size_t>(1, items / std::max<std::size_t>(1, minimumItems));
        return static_cast<unsigned>(std::min<std::size_t>(wanted, useful));
    }

    /// Calls `body(begin, end)` over [0, items) split into contiguous ranges, one per thread;
    /// the caller's thread takes the first range. The first exception thrown by any range is
    /// rethrown here once every thread has finished.
    template <typename Body>
    void forEachRange(std::size_t items, Body&& body, std::size_t minimumItems = 16384) const
    {
        const unsigned threads = resolve(items, minimumItems);
        if (threads <= 1) {
            body(std::size_t{0}, items);
            return;
        }
        std::exception_ptr failure;
        std::mutex failureMutex;
        auto guarded = [&](std::size_t begin, std::size_t end) {
            try {
                body(begin, end);
            } catch (...) {
                const std::lock_guard lock(failureMutex);
                if (!failure) {
                    failure = std::current_exception();
                }
            }
        };
        const std::size_t step = items / threads;
        const std::size_t extra = items % threads;
        std::vector<std::jthread> workers;
        workers.reserve(threads - 1);
        std::size_t begin = 0;
        std::size_t first = 0;
        for (unsigned index = 0; index < threads; ++index) {
            const std::size_t end = begin + step + (index < extra ? 1 : 0);
            if (index == 0) {
                first = end;
            } else {
                workers.emplace_back(guarded, begin, end);
            }
            begin = end;
        }
        guarded(std::size_t{0}, first);
        workers.clear(); // joins
        if (failure) {
            std::rethrow_exception(failure);
        }
    }

private:
    unsigned count;
};

} // namespace Kelvo::Geodesy::Batch
