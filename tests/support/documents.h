// Editable documents, and lines as lists.
#pragma once

#include "tests/support/capture.h"
#include "tests/support/trees.h"

#include <cstdlib>
#include <sstream>
#include <vector>

using Lines = std::vector<std::string>;

template <class Action>
Lines lineListOf(Action action) {
    std::istringstream text(linesOf(action));
    Lines lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
}

// A document written without white space.
inline std::string documentText(XMLP_DOC *doc) {
    uint32_t length = 0;
    char *text = xmlp_dumpDoc(doc, 1, &length);
    const std::string copy(text, length);
    std::free(text);
    return copy;
}
