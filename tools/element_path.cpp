#include "tools/element_path.h"

#include "common/ascii.h"
#include "common/common.h"
#include "tools/text.h"

#include <algorithm>
#include <string_view>

namespace {

std::string toLower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), velda::toLowerAscii);
    return result;
}

bool isList(const XMLP_NODE *node) {
    return node != nullptr && node->name != nullptr && toLower(node->name).ends_with("list");
}

} // namespace

bool isNamed(const XMLP_NODE *node, const char *name) {
    return node != nullptr && node->name != nullptr &&
           appmngr_string_caseCmp(node->name, name) == 0;
}

void ElementPath::enter(const XMLP_NODE *node) {
    const XMLP_NODE *parent = node->parent;
    while (!levels_.empty() && levels_.back().node != parent) {
        levels_.pop_back();
    }
    if (levels_.empty()) {
        levels_.emplace_back().node = parent;
    }
    const uint32_t index = ++levels_.back().seen[toLower(node->name)];
    std::string step = joined({"/", escapeForTerminal(node->name)});
    if (index > 1 || isList(parent)) {
        step += joined({"[", std::to_string(index), "]"});
    }
    levels_.push_back({node, std::move(step), {}});
}

std::string ElementPath::text(const XMLP_NODE *node) const {
    std::string text;
    for (const Level &level : levels_) {
        text += level.step;
        if (level.node == node) {
            break;
        }
    }
    return text;
}
