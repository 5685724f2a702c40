#include "bench/check.h"

#include "bench/documents.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

namespace bench {

namespace {

// pugixml writes "<a />" where xmlp writes "<a/>".
bool sameButSpaces(size_t size, size_t other, const Text &text) {
    const size_t difference = size > other ? size - other : other - size;
    return size > 0 && difference <= text.elements;
}

void checkWriters(const Text &text, Layout layout) {
    size_t first = 0;
    for (const Parser &parser : allParsers()) {
        if (!parser.writesAs.empty()) {
            const size_t size = parser.parse(text.bytes)->write(layout);
            first = first == 0 ? size : first;
            if (!sameButSpaces(size, first, text)) {
                refuse(parser.name + " writing " + text.name,
                       std::to_string(size) + " bytes against " + std::to_string(first));
            }
        }
    }
}

} // namespace

void refuse(const std::string &what, const std::string &why) {
    std::fprintf(stderr, "velda-bench: %s: %s\n", what.c_str(), why.c_str());
    std::exit(1);
}

void checkParsers(const Text &text) {
    for (const Parser &parser : allParsers()) {
        try {
            const size_t found = parser.parse(text.bytes)->elements();
            if (found != text.elements) {
                refuse(parser.name + " reading " + text.name, std::to_string(found) +
                                                                  " elements found of " +
                                                                  std::to_string(text.elements));
            }
        } catch (const std::exception &error) {
            refuse(parser.name + " reading " + text.name, error.what());
        }
    }
    checkWriters(text, Layout::compact);
    checkWriters(text, Layout::indented);
}

} // namespace bench
