// What a load would do in silence with elements that it takes.
#pragma once

#include "tools/element_path.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>

class ElementRules {
public:
    using Tell = std::function<void(const std::string &message)>;

    // Tells of the element that `path` has just entered.
    void examine(const XMLP_NODE *node, const ElementPath &path, const Tell &tell);

private:
    struct Owner {
        const XMLP_NODE *node;
        std::string path;
    };

    void examineContainer(const XMLP_NODE *node, const Tell &tell);
    void examineInteger(const XMLP_NODE *node, const ElementPath &path, const Tell &tell);
    void examineId(const XMLP_NODE *node, int64_t id, const ElementPath &path, const Tell &tell);

    uint32_t typeCount_ = 0;
    std::map<int64_t, Owner> apps_; // by identifier, the first that bears it
    std::map<int64_t, Owner> types_;
};
