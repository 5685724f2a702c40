// The one block of a static tree:
//
//   names | values | attribute records | node records, the document node first
//
// The areas follow each other without gaps, so the records stand at any byte address.
#pragma once

#include "xmlp/base/memory.h"
#include "xmlp/base/string_table.h"
#include "xmlp/xmlp.h"

namespace velda::xmlp {

struct Counts {
    size_t elements = 0;
    size_t attributes = 0;
    size_t valueBytes = 0;
};

class StaticBlock {
public:
    // Obtains the block and copies the names into it. False when it can't be had.
    bool obtain(const StringTable &table, const Counts &counts);

    char *names() const { return bytes_.get(); }
    char *values() const { return values_; }
    XMLP_ATTR *attrs() const { return attrs_; }
    XMLP_NODE *nodes() const { return nodes_; }

    // From now on the block goes with the tree in it, and is freed through it.
    void release() { static_cast<void>(bytes_.release()); }

private:
    Owned<char> bytes_;
    char *values_ = nullptr;
    XMLP_ATTR *attrs_ = nullptr;
    XMLP_NODE *nodes_ = nullptr;
};

} // namespace velda::xmlp
