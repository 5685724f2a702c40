// Where a walk through a document is.
#pragma once

#include "xmlp/xmlp.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// Equal but for the case of ASCII letters, as names of the database are.
bool isNamed(const XMLP_NODE *node, const char *name);

// Follows the visits of elements, which come in the order of the document.
class ElementPath {
public:
    void enter(const XMLP_NODE *node);

    // Of the element entered last: "/AppDB/appList/app[3]/ruleList". Members of lists are counted,
    // others from the second of a name on.
    std::string text() const { return text(levels_.back().node); }

    // Of an element around it or itself.
    std::string text(const XMLP_NODE *node) const;

private:
    struct Level {
        const XMLP_NODE *node = nullptr;
        std::string step;
        std::map<std::string, uint32_t> seen; // how often each name has come up below it
    };

    std::vector<Level> levels_;
};
