// The quick road of a parse: one pass that checks, interns and records every element.
//
// It takes sound texts only. Whatever it does not like, a fault, a tag out of the ordinary or a '<'
// that a scan by character steps might pass over, it declines without a word, and the plain road
// (check, count, build) goes over the text from the start and says what there is to say. On what it
// takes it must find exactly what the plain road finds.
#pragma once

#include "xmlp/base/array.h"
#include "xmlp/base/string_table.h"
#include "xmlp/parse/structural_index.h"

#include <string_view>

namespace velda::xmlp {

// One element. Offsets of texts are from the start of the body. Those of names are in the name table,
// where strings begin at multiples of four, so their lowest bit is free to mark an item.
struct ElementRecord {
    static constexpr uint32_t itemBit = 1;
    static constexpr uint32_t escapedBit = uint32_t{1} << 31;

    uint32_t name;   // with itemBit for a list member
    uint32_t parent; // the number of its record plus 1; 0 for the document node
    uint32_t text;
    uint32_t textSize; // 0 for an element without text, or with children; escapedBit for references
};

struct AttributeRecord {
    static constexpr uint32_t noValue = UINT32_MAX;

    uint32_t element; // the number of its element's record plus 1
    uint32_t name;
    uint32_t value;
};

struct ElementRecords {
    Array<ElementRecord> elements;
    Array<AttributeRecord> attributes;
    size_t valueBytes = 0;
};

enum class ScanResult { accepted, refused, noMemory };

// Scans a body behind which there is a NUL. What is in `names`, which starts empty, and `scanned` counts
// only when it is taken.
ScanResult scanBody(std::string_view body, Indexer indexMarkup, StringTable &names,
                    ElementRecords &scanned);

} // namespace velda::xmlp
