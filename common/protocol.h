// The protocols of rules, by their names and IP protocol numbers.
#pragma once

#include <cstdint>
#include <string_view>

namespace velda {

struct Protocol {
    std::string_view name; // with a NUL after it
    uint8_t number;
};

inline constexpr Protocol tcp = {"tcp", 6};
inline constexpr Protocol udp = {"udp", 17};
inline constexpr Protocol icmp = {"icmp", 1};

inline constexpr Protocol protocols[] = {tcp, udp, icmp};

} // namespace velda
