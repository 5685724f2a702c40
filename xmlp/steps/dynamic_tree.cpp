// Dynamic trees: every node, name, value and attribute in an allocation of its own.

#include "xmlp/steps/dynamic_tree.h"

#include "xmlp/steps/build_walk.h"
#include "xmlp/steps/tag_records.h"
#include "xmlp/tree/owned_node.h"

#include <cstdlib>

namespace velda::xmlp {
namespace {

// A tag is read when its node is made, so until then only its place is kept.
class DynamicStorage {
public:
    static constexpr const char *builder = "_makeDtree";
    static constexpr uint32_t isStatic = 0;

    explicit DynamicStorage(Diagnosis &diagnosis) : diagnosis_(diagnosis) {}

    XMLP_NODE *newNode() { return xmlp_initNode(); }

    bool readTag(const char *tag, char endCharacter) {
        tag_ = tag;
        endCharacter_ = endCharacter;
        return true;
    }

    bool applyTag(XMLP_NODE *node) {
        char *name = nullptr;
        XMLP_ATTR *attrs = nullptr;
        const bool isRead = readDynamicTag(tag_, endCharacter_, name, attrs, diagnosis_);
        node->name = name;
        node->attrList = attrs;
        return isRead;
    }

    char *newValue(uint32_t size) { return static_cast<char *>(std::malloc(size)); }

    void drop(XMLP_NODE *node) { xmlp_delNode(node); }

private:
    Diagnosis &diagnosis_;
    const char *tag_ = nullptr;
    char endCharacter_ = '>';
};

} // namespace

XMLP_NODE *buildDynamicTree(std::string_view body, Diagnosis &diagnosis) {
    OwnedTree root(xmlp_initNode());
    DynamicStorage storage(diagnosis);
    if (root == nullptr || !BuildWalk(storage, root.get(), diagnosis).run(body)) {
        return nullptr;
    }
    return root.release();
}

} // namespace velda::xmlp

XMLP_NODE *_makeDtree(const char *body, uint32_t bodyLen) {
    if (body == nullptr) {
        XMLP_REPORT("invalid params.");
        return nullptr;
    }
    velda::xmlp::Diagnosis diagnosis;
    return velda::xmlp::buildDynamicTree({body, bodyLen}, diagnosis);
}
