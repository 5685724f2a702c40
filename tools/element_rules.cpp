#include "tools/element_rules.h"

#include "appmngr/appmngr.h"
#include "tools/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace {

constexpr size_t nestingMax = 64;
constexpr size_t tupleRoom = 64;

enum class Holds { elements, integer, text, tuple };

struct Leaf {
    const char *name;
    size_t room; // one byte of it is for a terminator
    Holds holds;
    bool isRepeated;
};

constexpr Leaf leaves[] = {
    {"ver", APPMNGR_VERSION_SIZE, Holds::text, false},
    {"proModel", APPMNGR_MODEL_SIZE, Holds::text, false},
    {"expired", APPMNGR_EXPIRED_SIZE, Holds::text, false},
    {"name", APPMNGR_NAME_SIZE, Holds::text, false},
    {"dpiType", APPMNGR_DPI_TYPE_SIZE, Holds::text, false},
    {"dpiCode", APPMNGR_DPI_CODE_SIZE, Holds::text, false},
    {"dnsKw", APPMNGR_DNS_KEYWORD_SIZE, Holds::text, true},
    {"tuple", tupleRoom, Holds::tuple, true},
    {"id", 0, Holds::integer, false},
    {"visible", 0, Holds::integer, false},
    {"typeId", 0, Holds::integer, true},
    {"enable", 0, Holds::integer, false},
    {"start", 0, Holds::integer, false},
    {"end", 0, Holds::integer, false},
    {"minlength", 0, Holds::integer, false},
};

constexpr Leaf container = {"", 0, Holds::elements, true};

// Where the format has what a load takes wherever it comes to it.
struct Home {
    const char *name;
    std::array<const char *, 3> parents;
};

constexpr Home homes[] = {
    {"AppDB", {""}}, // the document itself
    {"ver", {"AppDB"}},
    {"proModel", {"AppDB"}},
    {"expired", {"AppDB"}},
    {"name", {"app", "appType"}},
    {"visible", {"app"}},
    {"typeIdList", {"app"}},
    {"typeId", {"typeIdList"}},
    {"ori", {"rule"}},
    {"rep", {"rule"}},
    {"segment", {"ori", "rep", "segment"}},
    {"enable", {"ori", "rep", "segment"}},
    {"start", {"ori", "rep", "segment"}},
    {"end", {"ori", "rep", "segment"}},
    {"minlength", {"ori", "rep", "segment"}},
    {"dpiType", {"ori", "rep", "segment"}},
    {"dpiCode", {"ori", "rep", "segment"}},
};

bool isAtHome(const XMLP_NODE *node) {
    const auto *home = std::find_if(std::begin(homes), std::end(homes),
                                    [node](const Home &row) { return isNamed(node, row.name); });
    if (home == std::end(homes)) {
        return true; // the load has seen to it
    }
    const XMLP_NODE *parent = node->parent;
    return std::any_of(home->parents.begin(), home->parents.end(), [parent](const char *name) {
        return name != nullptr && (parent->name != nullptr ? isNamed(parent, name) : *name == '\0');
    });
}

const Leaf &kindOf(const XMLP_NODE *node) {
    const auto *found = std::find_if(std::begin(leaves), std::end(leaves),
                                     [node](const Leaf &leaf) { return isNamed(node, leaf.name); });
    return found != std::end(leaves) ? *found : container;
}

std::string_view textOf(const XMLP_NODE *node) {
    return node->value != nullptr ? std::string_view(node->value, node->valueSize)
                                  : std::string_view();
}

std::string bytes(size_t count) {
    return std::to_string(count) + " bytes";
}

// Nothing for a text that is more or less than a number.
std::optional<int64_t> numberIn(std::string_view text) {
    constexpr std::string_view space = " \t\n\v\f\r";
    const size_t begin = std::min(text.find_first_not_of(space), text.size());
    const size_t end = text.find_last_not_of(space) + 1;
    std::string_view digits = text.substr(begin, end > begin ? end - begin : 0);
    if (digits.starts_with("+") && !digits.starts_with("+-")) {
        digits.remove_prefix(1);
    }
    int64_t number = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isNumber = read.ec == std::errc() && read.ptr == digits.data() + digits.size();
    return isNumber ? std::optional(number) : std::nullopt;
}

size_t countNamed(const XMLP_NODE *parent, const char *name) {
    size_t count = 0;
    for (const XMLP_NODE *child = parent->firstChild; child != nullptr; child = child->next) {
        if (child->type != XMLP_TYPE_NONE && isNamed(child, name)) {
            ++count;
        }
    }
    return count;
}

// What is filed under the identifier of an application before the identifier is known.
bool comesBehindLists(const XMLP_NODE *id) {
    for (const XMLP_NODE *before = id->prev; before != nullptr; before = before->prev) {
        if (isNamed(before, "typeIdList") || isNamed(before, "ruleList") ||
            isNamed(before, "dnsKwList")) {
            return true;
        }
    }
    return false;
}

void examineText(const XMLP_NODE *node, const Leaf &leaf, const ElementRules::Tell &tell) {
    const std::string_view text = textOf(node);
    if (text.size() >= leaf.room) {
        tell("cut from " + bytes(text.size()) + " to " + bytes(leaf.room - 1));
    }
    if (!isUtf8(text)) {
        tell("not UTF-8");
    }
    const bool isAppName = isNamed(node, "name") && isNamed(node->parent, "app");
    if ((isAppName || isNamed(node, "ver")) &&
        text.find_first_of("\r\n") != std::string_view::npos) {
        tell("a line break, which the list can't carry");
    }
    if (isAppName && text.find(':') != std::string_view::npos) {
        tell("a colon, which the list can't carry");
    }
}

// Ports that a tuple which is taken does not keep.
void examinePorts(std::string_view text, const ElementRules::Tell &tell) {
    constexpr std::string_view space = " \t\n\r";
    text = text.substr(0, tupleRoom - 1);
    while (!text.empty()) {
        const std::string_view field = text.substr(0, text.find_first_of(space));
        text.remove_prefix(std::min(field.size() + 1, text.size()));
        const size_t colon = field.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        const std::string_view port = field.substr(colon + 1);
        const auto number = numberIn(port);
        if (!port.empty() && (!number || *number < 0 || *number > UINT16_MAX)) {
            tell("port \"" + shown(port) + "\" is no number from 0 to 65535");
        }
    }
}

} // namespace

void ElementRules::examine(const XMLP_NODE *node, const ElementPath &path, const Tell &tell) {
    const Leaf &leaf = kindOf(node);
    if (!isAtHome(node)) {
        tell("not where it belongs, but read there too");
    }
    if (leaf.holds == Holds::elements) {
        if (path.depth() == nestingMax && node->firstChild != nullptr) {
            tell("skipped: nested deeper than " + std::to_string(nestingMax) + " levels");
        }
        examineContainer(node, tell);
        return;
    }
    if (!leaf.isRepeated && path.index() > 1) {
        tell("repeated: the last one holds");
    }
    if (node->firstChild != nullptr) {
        tell("elements where a text belongs");
    } else if (node->valueSize >= APPMNGR_NODE_TEXT_SIZE) {
        tell("a text of " + bytes(node->valueSize) + ": from " + bytes(APPMNGR_NODE_TEXT_SIZE) +
             " on it counts as missing");
    } else if (leaf.holds == Holds::integer) {
        examineInteger(node, path, tell);
    } else {
        examineText(node, leaf, tell);
        if (leaf.holds == Holds::tuple) {
            examinePorts(textOf(node), tell);
        }
    }
}

void ElementRules::examineContainer(const XMLP_NODE *node, const Tell &tell) {
    if (node->firstChild == nullptr) {
        tell("a text where elements belong");
    }
    const bool isType = isNamed(node, "appType");
    if (isType && ++typeCount_ > appmngr_getAppDb()->appTypeCount) {
        tell(typeCount_ > APPMNGR_APP_TYPES_MAX
                 ? "skipped: more than " + std::to_string(APPMNGR_APP_TYPES_MAX) + " types"
                 : "skipped: types without identifier have taken its place");
    }
    if (isType && countNamed(node, "id") == 0) {
        tell("no identifier: the type is not counted, and the last type finds no place");
    }
    if (isNamed(node, "app") && countNamed(node, "id") == 0) {
        tell("no identifier: it is 0");
    }
}

void ElementRules::examineInteger(const XMLP_NODE *node, const ElementPath &path,
                                  const Tell &tell) {
    const std::string_view text = textOf(node);
    const auto number = numberIn(text);
    if (!number || *number < INT32_MIN || *number > INT32_MAX) {
        tell(joined({"\"", shown(text), "\" is no number of 32 bits"}));
    } else if (isNamed(node, "id")) {
        examineId(node, *number, path, tell);
    }
}

void ElementRules::examineId(const XMLP_NODE *node, int64_t id, const ElementPath &path,
                             const Tell &tell) {
    const XMLP_NODE *parent = node->parent;
    const bool isApp = isNamed(parent, "app");
    if (isApp && (id < 0 || id >= APPMNGR_APP_BITMAP_BITS)) {
        tell("identifier " + std::to_string(id) + " is outside 0 to " +
             std::to_string(APPMNGR_APP_BITMAP_BITS - 1));
    }
    if (isApp && path.index() == 1 && comesBehindLists(node)) {
        tell("comes behind lists, which are then filed under another identifier");
    }
    const std::string whole = path.text();
    auto &owners = isApp ? apps_ : types_;
    const Owner owner = {parent, whole.substr(0, whole.rfind('/'))};
    const auto [known, isNew] = owners.emplace(id, owner);
    if (!isNew && known->second.node != parent) {
        tell("identifier " + std::to_string(id) + " is that of " + known->second.path + " too");
    }
}
