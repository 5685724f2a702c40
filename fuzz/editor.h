// The arguments of calls on a document, read from the input.
#pragma once

#include "fuzz/trees.h"

#include <iterator>
#include <string>

namespace fuzz {

class Editor {
public:
    Editor(XMLP_DOC *document, Input input) : doc(document), input_(input) {}

    bool isAtEnd() const { return input_.isEmpty(); }
    uint8_t byte() { return input_.byte(); }
    bool flag() { return byte() % 2 == 1; }

    // Of the element of this number in document order, or one that is none.
    const char *path() {
        static const char *const odd[] = {"", "/", "//", "a", "/a/", "/no/such", "/item", nullptr};
        const uint8_t number = byte();
        if (number >= 0xF8) {
            return odd[number - 0xF8];
        }
        path_.clear();
        for (const XMLP_NODE *node = element(number); node->parent != nullptr;
             node = node->parent) {
            path_.insert(0, std::string("/") + node->name);
        }
        return path_.empty() ? "/" : path_.c_str();
    }

    // '@' is the document node, 'A' the top-level element.
    XMLP_NODE *element(uint8_t number) const {
        const XMLP_NODE *root = doc->tree->rootNode;
        const XMLP_NODE *node = root;
        for (int i = number; node != nullptr && i > '@'; --i) {
            node = following(root, node);
        }
        return const_cast<XMLP_NODE *>(node != nullptr ? node : root);
    }

    const char *name() {
        static const char *const names[] = {"a",
                                            "b",
                                            "item",
                                            "fifteen-bytes-n",
                                            "name-of-16-bytes",
                                            "name-of-17-bytes-",
                                            "\xC3\xA4",
                                            "?",
                                            "two words",
                                            "a&b",
                                            "",
                                            nullptr};
        return names[byte() % std::size(names)];
    }

    // Null for no bytes.
    XMLP_VALUE value() {
        const std::string_view bytes = input_.take(byte() % 32);
        values_[next_ % 4] = bytes;
        std::string &copy = values_[next_++ % 4];
        return {static_cast<uint32_t>(copy.size()), copy.empty() ? nullptr : copy.data()};
    }
    XMLP_ATTR_PAIR pair() { return {name(), value().value}; }

    uint32_t position() {
        const uint8_t number = byte();
        return number == 0xFF ? XMLP_POS_LAST : uint32_t{number} - '0';
    }

    XMLP_DOC *const doc;
    bool hasRenamed = false;

private:
    Input input_;
    std::string path_;
    std::string values_[4]; // those of one operation
    size_t next_ = 0;
};

// The members that a call on several of them is about.
struct Selection {
    uint32_t mode;
    uint32_t positions[2];
    uint32_t count;

    explicit Selection(Editor &editor)
        : mode(editor.byte() % 3), positions{editor.position(), editor.position()},
          count(editor.byte() % 3) {}
};

} // namespace fuzz
