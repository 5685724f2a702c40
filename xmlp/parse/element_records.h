// What a scan makes of a body: a record for each element and each attribute, in the order of their tags.
#pragma once

#include "xmlp/base/array.h"

#include <cstdint>

namespace velda::xmlp {

// One element. Offsets of values are from the start of the body. Those of names are in the string
// table, where strings begin at multiples of four, so that their two lowest bits are free.
struct ElementRecord {
    static constexpr uint32_t itemBit = 1;    // a list member
    static constexpr uint32_t escapedBit = 2; // the value has references
    static constexpr uint32_t offsetMask = ~uint32_t{3};

    uint32_t name;
    uint32_t parent; // the number of its record plus 1; 0 for the document node
    uint32_t value;
    uint32_t valueSize; // as written; 0 for an element without text, or with children

    bool isItem() const { return (name & itemBit) != 0; }
    bool isEscaped() const { return (name & escapedBit) != 0; }
    uint32_t nameOffset() const { return name & offsetMask; }
};

struct AttributeRecord {
    static constexpr uint32_t noValue = UINT32_MAX;

    uint32_t element; // the number of its element's record plus 1
    uint32_t name;    // offsets in the string table
    uint32_t value;
};

struct ElementRecords {
    Array<ElementRecord> elements;
    Array<AttributeRecord> attributes;
    size_t valueBytes = 0; // of all values, references decoded
};

} // namespace velda::xmlp
