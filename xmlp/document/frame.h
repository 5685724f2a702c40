// The frame of every call that works on a document by path: check the arguments, refuse a static
// document where the call would change it, take the lock, find the node, work, give the lock back.
#pragma once

#include "xmlp/base/report.h"
#include "xmlp/xmlp_internal.h"

#include <initializer_list>

namespace velda::xmlp {

enum class Access { read, change };

struct Call {
    const char *function; // in whose name lines are printed
    Access access;
    XMLP_DOC *doc;
    const char *path;
    bool hasArguments = true; // besides document and path
};

class DocumentLock {
public:
    explicit DocumentLock(XMLP_DOC *doc) : doc_(doc) { _lock(doc_); }
    ~DocumentLock() { _unLock(doc_); }
    DocumentLock(const DocumentLock &) = delete;
    DocumentLock &operator=(const DocumentLock &) = delete;

private:
    XMLP_DOC *doc_;
};

// What `work` makes of the node; `refusal` when it does not come to that.
template <class Result, class Work>
Result onNode(const Call &call, Result refusal, Work work) {
    if (call.doc == nullptr || call.path == nullptr || !call.hasArguments) {
        XMLP_REPORT_FOR(call.function, "invalid params.");
        return refusal;
    }
    const XMLP_TREE *tree = call.doc->tree;
    if (call.access == Access::change && tree != nullptr && tree->isStatic != 0) {
        XMLP_REPORT_FOR(call.function, "static xml.");
        return refusal;
    }
    const DocumentLock lock(call.doc);
    XMLP_NODE *node = xmlp_seekXml(call.doc, call.path);
    if (node == nullptr) {
        XMLP_REPORT_FOR(call.function, "node not exist.");
        return refusal;
    }
    return work(node);
}

// The same for nodes of certain types.
template <class Result, class Work>
Result onNodeOf(std::initializer_list<XMLP_NODE_TYPE> types, const Call &call, Result refusal,
                Work work) {
    return onNode(call, refusal, [&](XMLP_NODE *node) {
        for (const XMLP_NODE_TYPE type : types) {
            if (node->type == static_cast<uint32_t>(type)) {
                return static_cast<Result>(work(node));
            }
        }
        XMLP_REPORT_FOR(call.function, "error node type.");
        return refusal;
    });
}

} // namespace velda::xmlp
