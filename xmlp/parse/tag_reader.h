// The one reader of tags. The check, the counting pass and the builders all read through it, so
// what one of them accepts the others read the same way.
#pragma once

#include <string_view>

namespace velda::xmlp {

enum class TagFault {
    none,
    name,        // an empty name, or a byte that no name may hold
    attribute,   // not of the form name = "value"
    cutAttribute // the tag ends inside an attribute
};

struct TagAttribute {
    std::string_view name;
    std::string_view value;
};

// Reads the text of a tag from after its '<' to its end character, '>' or '/', which is recognised
// before anything else. Nothing after a NUL is read, and, but for the first byte, nothing after a
// '>'.
class TagReader {
public:
    TagReader(const char *tag, char endCharacter) : position_(tag), end_(endCharacter) {}

    // The element's name, first of all. False on a fault.
    bool readName(std::string_view &name);

    // The next attribute. False at the tag's end and on a fault.
    bool readAttribute(TagAttribute &attribute);

    TagFault fault() const { return fault_; }

    // Where the reading goes on: after a fault the first byte of the name or attribute that has it.
    const char *position() const { return position_; }

private:
    bool refuse(TagFault fault) {
        fault_ = fault;
        return false;
    }

    const char *position_;
    char end_;
    TagFault fault_ = TagFault::none;
};

// Can an end tag have this name? It consists of name characters, and its last one is no lead byte that
// would hide the '>'.
bool canBeRepeated(std::string_view name);

} // namespace velda::xmlp
