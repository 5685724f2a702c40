// Random numbers that are the same everywhere (splitmix64); those of the standard library are not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace bench {

class Random {
public:
    explicit Random(uint64_t seed) : state_(seed) {}

    // From 0 to bound - 1.
    size_t below(size_t bound) { return static_cast<size_t>(next() % bound); }

    bool chance(size_t percent) { return below(100) < percent; }

    template <class Choices>
    auto &of(const Choices &choices) {
        return choices[below(std::size(choices))];
    }

private:
    uint64_t next() {
        uint64_t z = state_ += 0x9E3779B97F4A7C15u;
        z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9u;
        z = (z ^ z >> 27) * 0x94D049BB133111EBu;
        return z ^ z >> 31;
    }

    uint64_t state_;
};

} // namespace bench
