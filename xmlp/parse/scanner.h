// Stage 2 of a parse: one pass over a body that checks, interns and records every element.
//
// It accepts exactly the bodies of which the steps (steps/) make a tree, and what comes of its records
// is that tree. It explains nothing: what it refuses is given to the steps, which say why. Fuzzing and
// tests hold both to it: accepted here if and only if it is built there.
#pragma once

#include "xmlp/base/string_table.h"
#include "xmlp/parse/element_records.h"
#include "xmlp/parse/structural_index.h"

#include <string_view>

namespace velda::xmlp {

enum class ScanResult { accepted, refused, noMemory };

// Scans a body after which there is a NUL. `names`, which starts empty, and `records` are valid only when
// it is accepted.
ScanResult scanBody(std::string_view body, Indexer indexer, StringTable &names,
                    ElementRecords &records);

} // namespace velda::xmlp
