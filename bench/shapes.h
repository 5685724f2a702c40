// Texts of one shape in any size: what might cost more than its size tells.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Shape {
    std::string name;
    std::function<std::string(size_t size)> make; // exactly `size` bytes
};

// Databases that load, with the shape in them, and texts that don't, the last ones.
const std::vector<Shape> &allShapes();

// A list of members with an attribute each.
std::string listText(size_t size);

} // namespace bench
