// Document handles: lifetime, reference counts and the lock hooks.

#include "xmlp/base/report.h"
#include "xmlp/xmlp_internal.h"

#include <cstdlib>

int _initLock(XMLP_DOC *doc) {
    if (doc == nullptr) {
        XMLP_REPORT("doc is null.");
        return -1;
    }
    return 0;
}

void _lock(XMLP_DOC *doc) {
    if (doc == nullptr) {
        XMLP_REPORT("doc is null.");
    }
}

void _unLock(XMLP_DOC *doc) {
    if (doc == nullptr) {
        XMLP_REPORT("doc is null.");
    }
}

void _destroyLock(XMLP_DOC *doc) {
    if (doc == nullptr) {
        XMLP_REPORT("doc is null.");
    }
}

XMLP_DOC *xmlp_loadDoc(const char *xmlBuf, uint32_t len, uint32_t isStatic) {
    XMLP_DOC *doc = xmlp_xml2Tree(xmlBuf, len, isStatic);
    if (doc == nullptr) {
        return nullptr;
    }
    if (_initLock(doc) != 0) {
        xmlp_destroyXmlTree(doc);
        std::free(doc->tree);
        std::free(doc);
        return nullptr;
    }
    return doc;
}

XMLP_DOC *xmlp_copyDoc(XMLP_DOC *doc) {
    if (doc == nullptr) {
        XMLP_REPORT("doc is null.");
        return nullptr;
    }
    if (doc->tree != nullptr) {
        ++doc->tree->refCount;
    }
    return doc;
}

void xmlp_releaseDoc(XMLP_DOC *doc) {
    if (doc == nullptr) {
        XMLP_REPORT("doc is null.");
        return;
    }
    _lock(doc);
    // A handle that a caller has made for a tree of xmlp_parse counts no references: its one owner is
    // the last.
    if (doc->tree != nullptr && doc->tree->refCount > 1) {
        --doc->tree->refCount;
        _unLock(doc);
        return;
    }
    xmlp_destroyXmlTree(doc);
    _destroyLock(doc);
    std::free(doc->tree);
    std::free(doc);
}
