// Attributes of an element.

#include "xmlp/base/memory.h"
#include "xmlp/base/report.h"
#include "xmlp/tree/attr_list.h"
#include "xmlp/tree/attr_names.h"
#include "xmlp/xmlp.h"

#include <cstring>

using namespace velda::xmlp;

namespace {

uint32_t length(const char *text) {
    return static_cast<uint32_t>(std::strlen(text));
}

// The attribute of this name, or null. `before` is the one before it, or the last one where there is none.
XMLP_ATTR *findAttr(const XMLP_NODE *node, const char *name, XMLP_ATTR *&before) {
    before = nullptr;
    XMLP_ATTR *attr = node->attrList;
    while (attr != nullptr && std::strcmp(attr->name, name) != 0) {
        before = attr;
        attr = attr->next;
    }
    return attr;
}

XMLP_ATTR *findAttr(const XMLP_NODE *node, const char *name) {
    XMLP_ATTR *ignored = nullptr;
    return findAttr(node, name, ignored);
}

// A copy of `value` in `copy`, null for null; false when it cannot be had.
bool copyText(const char *value, Owned<char> &copy) {
    if (value == nullptr) {
        return true;
    }
    copy.reset(strdup(value));
    return copy != nullptr;
}

constexpr char adder[] = "xmlp_addNodeAttr";

// What can be checked without those that exist.
bool canBeAdded(const XMLP_NODE *node, const char *name, const char *value) {
    if (node == nullptr || name == nullptr || name[0] == '\0') {
        XMLP_REPORT_FOR(adder, "invalid params.");
        return false;
    }
    if (xmlp_isValidName(name, length(name)) == 0) {
        XMLP_REPORT_FOR(adder, "invalid attribute name %s.", name);
        return false;
    }
    if (value != nullptr && xmlp_isValidAttrValue(value, length(value)) == 0) {
        XMLP_REPORT_FOR(adder, "invalid attribute value.");
        return false;
    }
    return true;
}

// A new attribute after the last one, which is null where there is none. Null when memory runs out.
XMLP_ATTR *append(XMLP_NODE *node, XMLP_ATTR *last, const char *name, const char *value) {
    Owned<XMLP_ATTR> attr(static_cast<XMLP_ATTR *>(std::calloc(1, sizeof(XMLP_ATTR))));
    Owned<char> nameCopy(strdup(name));
    Owned<char> valueCopy;
    if (attr == nullptr || nameCopy == nullptr || !copyText(value, valueCopy)) {
        XMLP_REPORT_FOR(adder, "malloc failed.");
        return nullptr;
    }
    attr->name = nameCopy.release();
    attr->value = valueCopy.release();
    XMLP_ATTR *added = attr.release();
    if (last != nullptr) {
        last->next = added;
    } else {
        node->attrList = added;
    }
    return added;
}

void freeAttr(XMLP_ATTR *attr) {
    std::free(attr->name);
    std::free(attr->value);
    std::free(attr);
}

} // namespace

uint32_t xmlp_getNodeAttrCount(const XMLP_NODE *node) {
    if (node == nullptr) {
        XMLP_REPORT("node is null.");
        return 0;
    }
    uint32_t count = 0;
    for (const XMLP_ATTR *attr = node->attrList; attr != nullptr; attr = attr->next) {
        ++count;
    }
    return count;
}

int xmlp_addNodeAttr(XMLP_NODE *node, const char *name, const char *value) {
    if (!canBeAdded(node, name, value)) {
        return -1;
    }
    XMLP_ATTR *last = nullptr;
    if (findAttr(node, name, last) != nullptr) {
        XMLP_REPORT("attribute existed.");
        return -1;
    }
    return append(node, last, name, value) != nullptr ? 0 : -1;
}

bool velda::xmlp::addAttrs(XMLP_NODE *node, const XMLP_ATTR_PAIR *attrs, uint32_t count) {
    AttrNames names;
    XMLP_ATTR *last = nullptr;
    for (uint32_t i = 0; i < count; ++i) {
        const char *name = attrs[i].name;
        if (!canBeAdded(node, name, attrs[i].value)) {
            return false;
        }
        const AttrNames::Result added = names.add(name);
        if (added == AttrNames::Result::isRepeated) {
            XMLP_REPORT_FOR(adder, "attribute existed.");
            return false;
        }
        if (added == AttrNames::Result::noMemory) {
            XMLP_REPORT_FOR(adder, "malloc failed.");
            return false;
        }
        last = append(node, last, name, attrs[i].value);
        if (last == nullptr) {
            return false;
        }
    }
    return true;
}

int xmlp_setNodeAttr(XMLP_NODE *node, const char *name, const char *value) {
    if (node == nullptr || name == nullptr || name[0] == '\0') {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    if (xmlp_isValidName(name, length(name)) == 0) {
        XMLP_REPORT("invalid attribute name.");
        return -1;
    }
    if (value != nullptr && xmlp_isValidAttrValue(value, length(value)) == 0) {
        XMLP_REPORT("invalid attribute value.");
        return -1;
    }
    XMLP_ATTR *attr = findAttr(node, name);
    if (attr == nullptr) {
        XMLP_REPORT("attribute not exist.");
        return -1;
    }
    Owned<char> copy;
    if (!copyText(value, copy)) {
        XMLP_REPORT("malloc failed.");
        return -1;
    }
    std::free(attr->value);
    attr->value = copy.release();
    return 0;
}

int xmlp_delNodeAttr(XMLP_NODE *node, const char *name) {
    if (node == nullptr || name == nullptr) {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    XMLP_ATTR *before = nullptr;
    XMLP_ATTR *attr = findAttr(node, name, before);
    if (attr == nullptr) {
        XMLP_REPORT("attribute not exist.");
        return -1;
    }
    if (before != nullptr) {
        before->next = attr->next;
    } else {
        node->attrList = attr->next;
    }
    freeAttr(attr);
    return 0;
}

int xmlp_getNodeAttr(const XMLP_NODE *node, const char *name, char **value) {
    if (node == nullptr || name == nullptr || value == nullptr) {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    const XMLP_ATTR *attr = findAttr(node, name);
    if (attr == nullptr) {
        XMLP_REPORT("attribute not exist.");
        return -1;
    }
    Owned<char> copy;
    if (!copyText(attr->value, copy)) {
        XMLP_REPORT("malloc failed.");
        return -1;
    }
    *value = copy.release();
    return 0;
}

int xmlp_isNodeAttr(const XMLP_NODE *node, const char *name, const char *value) {
    if (node == nullptr || name == nullptr) {
        XMLP_REPORT("invalid params.");
        return 0;
    }
    const XMLP_ATTR *attr = findAttr(node, name);
    if (attr == nullptr) {
        return 0;
    }
    if (attr->value == nullptr || value == nullptr) {
        return attr->value == value ? 1 : 0;
    }
    return std::strcmp(attr->value, value) == 0 ? 1 : 0;
}

int xmlp_isAttrNameExist(const XMLP_ATTR *attrList, const char *name, uint32_t len) {
    if (name == nullptr) {
        return 0;
    }
    for (const XMLP_ATTR *attr = attrList; attr != nullptr; attr = attr->next) {
        if (attr->name != nullptr && xmlp_nameCmp(name, len, attr->name) == 0) {
            return 1;
        }
    }
    return 0;
}

void xmlp_freeAttrList(XMLP_ATTR *attrList) {
    while (attrList != nullptr) {
        XMLP_ATTR *next = attrList->next;
        freeAttr(attrList);
        attrList = next;
    }
}
