// Where code under test must not reach: behind a buffer, and down the stack.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

// A copy of some bytes behind the last of which no byte can be read or written.
class Guarded {
public:
    explicit Guarded(std::string_view bytes);
    ~Guarded();
    Guarded(const Guarded &) = delete;
    Guarded &operator=(const Guarded &) = delete;

    char *data() const { return data_; }

private:
    char *pages_;
    size_t size_;
    char *data_;
};

// Runs an action on a thread with a stack of 128 KiB.
void onSmallStack(const std::function<void()> &action);
