// Findings of what handlers do with elements during a load.
#pragma once

#include "appmngr/appmngr.h"
#include "tools/element_path.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>

// Listens only: what becomes of an element is what the module tells. Rules of its own are those of
// what is done with the database afterwards, such as writing the list.
class Validator {
public:
    using Report = std::function<void(const std::string &message)>;

    // Follows the elements that are taken.
    void taken(const XMLP_NODE *node);

    // Reports on the element of the effect, which lies on the path.
    void examine(const APPMNGR_EFFECT &effect, const ElementPath &path, const Report &report);

private:
    struct Owner {
        const XMLP_NODE *node;
        std::string path;
    };

    void examineId(const APPMNGR_EFFECT &effect, const ElementPath &path, const Report &report);

    uint32_t typeCount_ = 0;
    std::map<int32_t, Owner> apps_; // by identifier, the first that bears it
    std::map<int32_t, Owner> types_;
};
