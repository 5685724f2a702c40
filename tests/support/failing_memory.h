// Makes an allocation fail: the k-th from now on. Every malloc, calloc, realloc and strdup of the
// code under test is counted; the test program is linked with wrappers for them.
#pragma once

#include <cstddef>

class FailingAllocation {
public:
    explicit FailingAllocation(size_t index);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation &) = delete;
    FailingAllocation &operator=(const FailingAllocation &) = delete;

    // True when the allocation that was to fail has been asked for.
    bool hasFailed() const;
};

// Blocks that wrapped code has obtained and not freed.
long liveBlocks();

// Runs `action` with its first, second, third ... allocation failing until it needs no more, and
// `check` after each failure. Gives the number of failures.
template <class Action, class Check>
size_t failEachAllocation(Action action, Check check) {
    for (size_t index = 0;; ++index) {
        bool hasFailed = false;
        {
            FailingAllocation failing(index);
            action();
            hasFailed = failing.hasFailed();
        }
        if (!hasFailed) {
            return index;
        }
        check();
    }
}
