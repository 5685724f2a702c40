// The counting pass: how many records of each kind the document will fill.
//
// What counts stands at one of a few dotted paths, whatever dots the names themselves hold. Instead of
// building the path of each element, the pass carries down what is left of those that begin with it,
// and goes no deeper where none is left: that bounds the recursion too.

#include "appmngr/elements.h"
#include "common/ascii.h"

#include <iterator>
#include <span>

using namespace velda::appmngr;

namespace {

// Counts an element. False when the text of a type's identifier can't be taken.
using Count = bool (*)(const XMLP_NODE *node);

struct CountedPath {
    const char *rest; // after the path of the element that the pass has reached
    Count count;
};

template <uint32_t APPMNGR_COUNTER::*Counter>
bool countOne(const XMLP_NODE *) {
    ++(g_appmngr_counter.*Counter);
    return true;
}

// Types are counted by their identifiers, which the walk needs before it starts.
bool keepAppTypeId(const XMLP_NODE *node) {
    int32_t id = 0;
    if (_appmngr_getNodeInt(node, &id) != 0) {
        return false;
    }
    if (g_appmngr_counter.appTypeCnt < APPMNGR_APP_TYPES_MAX) {
        g_appmngr_appTypeId[g_appmngr_counter.appTypeCnt++] = id;
    } else {
        appmngr_report("_appmngr_parseNode", 743, "More than %d app types, type %d is skipped\n",
                       static_cast<int>(APPMNGR_APP_TYPES_MAX), id);
    }
    return true;
}

bool keepLanguageCount(const XMLP_NODE *node) {
    int32_t languages = 0;
    if (_appmngr_getNodeInt(node, &languages) == 0) {
        g_appmngr_counter.langCnt = static_cast<uint32_t>(languages);
    }
    return true;
}

// The dotted path of an element, in lower case; names of the document may be of any.
struct PathText {
    char text[64];
};

// Of an element in a parent of its, or in the first one of them.
constexpr PathText pathTo(Element element, Element parent = Element::unknown) {
    Element steps[sizeof(PathText)] = {};
    size_t count = 0;
    while (element != Element::document) {
        steps[count++] = element;
        element = parent != Element::unknown ? parent : infoOf(element).parents[0];
        parent = Element::unknown;
    }
    PathText path = {"root"};
    size_t length = 4;
    while (count > 0) {
        path.text[length++] = '.';
        for (const char *name = infoOf(steps[--count]).name; *name != '\0'; ++name) {
            path.text[length++] = velda::toLowerAscii(*name);
        }
    }
    return path;
}

constexpr PathText tuplePath = pathTo(Element::tuple);
constexpr PathText keywordPath = pathTo(Element::dnsKw);
constexpr PathText appPath = pathTo(Element::app);
constexpr PathText typeIdPath = pathTo(Element::id, Element::appType);

// A description document has paths of its own; its elements have no handlers.
constexpr CountedPath countedPaths[] = {
    {tuplePath.text, countOne<&APPMNGR_COUNTER::tupleCnt>},
    {keywordPath.text, countOne<&APPMNGR_COUNTER::dnsKwCnt>},
    {appPath.text, countOne<&APPMNGR_COUNTER::appCnt>},
    {typeIdPath.text, keepAppTypeId},
    {"root.appdesc.applist.app", countOne<&APPMNGR_COUNTER::descAppCnt>},
    {"root.appdesc.apptypelist.apptype", countOne<&APPMNGR_COUNTER::descAppTypeCnt>},
    {"root.appdesc.langcnt", keepLanguageCount},
};

// The paths that are left at one element.
class Paths {
public:
    void add(CountedPath path) { paths_[count_++] = path; }
    bool empty() const { return count_ == 0; }
    operator std::span<const CountedPath>() const { return {paths_, count_}; }

private:
    CountedPath paths_[std::size(countedPaths)];
    size_t count_ = 0;
};

// What follows `beginning` in a path, null when the path begins otherwise.
const char *afterPrefix(const char *path, const char *beginning) {
    for (; *beginning != '\0'; ++path, ++beginning) {
        if (*path != *beginning && *path != velda::toLowerAscii(*beginning)) {
            return nullptr;
        }
    }
    return path;
}

Paths pathsAfter(const char *beginning) {
    Paths left;
    for (const CountedPath &path : countedPaths) {
        const char *rest = beginning != nullptr ? afterPrefix(path.rest, beginning) : nullptr;
        if (rest != nullptr) {
            left.add({rest, path.count});
        }
    }
    return left;
}

int countChildren(const XMLP_NODE *node, std::span<const CountedPath> paths);

inline int countElement(const XMLP_NODE *node, std::span<const CountedPath> paths) {
    if (node == nullptr || node->type == XMLP_TYPE_NONE || node->name == nullptr) {
        return 0;
    }
    Paths left;
    for (const CountedPath &path : paths) {
        const char *rest = *path.rest == '.' ? afterPrefix(path.rest + 1, node->name) : nullptr;
        if (rest == nullptr) {
            continue;
        }
        if (*rest != '\0') {
            left.add({rest, path.count});
        } else if (!path.count(node)) {
            return -1;
        }
    }
    return left.empty() ? 0 : countChildren(node, left);
}

int countChildren(const XMLP_NODE *node, std::span<const CountedPath> paths) {
    for (XMLP_NODE *child = xmlp_getChildNode(node, 0); child != nullptr; child = child->next) {
        if (countElement(child, paths) != 0) {
            break;
        }
    }
    return 0;
}

} // namespace

int _appmngr_parseNode(XMLP_NODE *node, const char *parentPath) {
    return countElement(node, pathsAfter(parentPath));
}

int appmngr_parseThroughXML(const char *parentPath, XMLP_NODE *node) {
    return countChildren(node, pathsAfter(parentPath));
}
