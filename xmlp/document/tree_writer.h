// What writing a tree is made of: sinks, layouts and the one walk.
//
// Measuring and writing are one walk over the tree, once with a sink that counts and once with a sink that
// stores, so that a buffer has exactly the size of what is written. The walk goes by parent links; a tree
// may be as deep as it likes.
#pragma once

#include "xmlp/base/words.h"
#include "xmlp/xmlp.h"

#include <cstring>
#include <string_view>

namespace velda::xmlp {

class Measure {
public:
    void put(std::string_view text) { length_ += text.size(); }
    void spaces(uint64_t count) { length_ += count; }
    uint64_t length() const { return length_; }

private:
    uint64_t length_ = 0;
};

class Writer {
public:
    explicit Writer(char *position) : position_(position) {}

    void put(std::string_view text) {
        copyText(position_, text);
        position_ += text.size();
    }
    void spaces(uint64_t count) {
        constexpr std::string_view some = "                                ";
        if (count <= some.size()) {
            put({some.data(), static_cast<size_t>(count)});
        } else {
            std::memset(position_, ' ', static_cast<size_t>(count));
            position_ += count;
        }
    }
    char *position() const { return position_; }

private:
    char *position_;
};

struct Compact {
    void indent(auto &, uint32_t) const {}
    void endLine(auto &) const {}
};

struct Indented {
    void indent(auto &sink, uint32_t depth) const { sink.spaces(uint64_t{2} * depth); }
    void endLine(auto &sink) const { sink.put("\n"); }
};

inline std::string_view textOrNothing(const char *text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

inline void putAttributes(auto &sink, const XMLP_NODE *node) {
    for (const XMLP_ATTR *attr = node->attrList; attr != nullptr; attr = attr->next) {
        sink.put(" ");
        sink.put(textOrNothing(attr->name));
        sink.put("=\"");
        sink.put(textOrNothing(attr->value));
        sink.put("\"");
    }
}

inline void putClosingTag(auto &sink, std::string_view name) {
    sink.put("</");
    sink.put(name);
    sink.put(">");
}

// The sink goes in and out by value and all that is called is inlined, so that its position stays in
// a register.
template <class Sink>
[[gnu::flatten]] Sink writeElement(Sink sink, auto layout, const XMLP_NODE *element, uint32_t depth,
                                   auto putOpening) {
    const XMLP_NODE *node = element;
    while (true) {
        putOpening(sink, layout, node, depth);
        if (node->firstChild != nullptr) {
            node = node->firstChild;
            ++depth;
            continue;
        }
        // Up through the elements that end here, as far as the next sibling.
        while (node != element && node->next == nullptr) {
            node = node->parent;
            --depth;
            layout.indent(sink, depth);
            putClosingTag(sink, textOrNothing(node->name));
            layout.endLine(sink);
        }
        if (node == element) {
            return sink;
        }
        node = node->next;
    }
}

} // namespace velda::xmlp
