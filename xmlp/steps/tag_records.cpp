#include "xmlp/steps/tag_records.h"

#include "xmlp/base/report.h"
#include "xmlp/tree/attr_names.h"
#include "xmlp/tree/copies.h"

#include <cstring>

namespace velda::xmlp {
namespace {

struct FreeAttrs {
    void operator()(XMLP_ATTR *attrs) const { xmlp_freeAttrList(attrs); }
};

} // namespace

char *SearchedNames::find(std::string_view string) const {
    return _findName(table_, string.data(), static_cast<uint32_t>(string.size()));
}

char *SearchedNames::findNew(std::string_view name, const XMLP_ATTR *tagAttrs) const {
    const auto length = static_cast<uint32_t>(name.size());
    return xmlp_isAttrNameExist(tagAttrs, name.data(), length) != 0 ? nullptr : find(name);
}

char *IndexedNames::findNew(std::string_view name, const XMLP_ATTR *) {
    bool isRepeated = false;
    const size_t offset = index_.findInTag(name, tagNumber_, isRepeated);
    return isRepeated ? nullptr : base_ + offset;
}

bool readDynamicTag(const char *tag, char endCharacter, char *&name, XMLP_ATTR *&attrs,
                    Diagnosis &diagnosis) {
    TagReader reader(tag, endCharacter);
    std::string_view text;
    if (!reader.readName(text)) {
        return false;
    }
    auto nameCopy = newText(text);
    if (nameCopy == nullptr) {
        XMLP_REFUSE(diagnosis, tagReaderName, XMLP_ERROR_NO_MEMORY, nullptr);
        return false;
    }
    std::unique_ptr<XMLP_ATTR, FreeAttrs> list;
    AttrNames names;
    XMLP_ATTR *last = nullptr;
    for (TagAttribute attribute; reader.readAttribute(attribute);) {
        const AttrNames::Result added = names.add(attribute.name);
        if (added == AttrNames::Result::isRepeated) {
            XMLP_REFUSE(diagnosis, tagReaderName, XMLP_ERROR_REPEATED_ATTRIBUTE,
                        attribute.name.data());
            return false;
        }
        XMLP_ATTR *attr =
            added == AttrNames::Result::isNew ? newAttr(attribute.name, attribute.value) : nullptr;
        if (attr == nullptr) {
            XMLP_REFUSE(diagnosis, tagReaderName, XMLP_ERROR_NO_MEMORY, nullptr);
            return false;
        }
        if (last == nullptr) {
            list.reset(attr);
        } else {
            last->next = attr;
        }
        last = attr;
    }
    if (reader.fault() != TagFault::none) {
        return false;
    }
    name = nameCopy.release();
    attrs = list.release();
    return true;
}

} // namespace velda::xmlp

using namespace velda::xmlp;

int _getNameAttr(const char *tag, char endCharacter, char **name, XMLP_ATTR **attrs,
                 uint32_t isStatic, char *nameTable) {
    if (tag == nullptr || name == nullptr || attrs == nullptr ||
        (isStatic != 0 && nameTable == nullptr)) {
        XMLP_REPORT("invalid params.");
        return -1;
    }
    Diagnosis diagnosis;
    if (isStatic == 0) {
        *name = nullptr;
        *attrs = nullptr;
        return readDynamicTag(tag, endCharacter, *name, *attrs, diagnosis) ? 0 : -1;
    }
    SearchedNames names(nameTable);
    const size_t capacity = *attrs == nullptr ? 0 : SIZE_MAX;
    return readStaticTag(tag, endCharacter, names, *name, *attrs, capacity, diagnosis) ? 0 : -1;
}
