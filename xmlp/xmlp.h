/*
 * xmlp: a small, strict XML library for configuration documents.
 *
 * A document is parsed from memory into a tree of elements. There are two kinds of tree:
 *
 * - A static tree lies in one block of memory, stores every name and attribute value once, and is
 *   read-only. It is the form for a large document that is loaded, read and dropped.
 * - A dynamic tree holds every element, name, value and attribute in an allocation of its own, and
 *   can be edited.
 *
 * A document is used by one thread at a time; different documents are independent.
 *
 * Results. Unless told otherwise a call that returns int gives 0 when it is done and -1 when it
 * refuses; a call that returns a pointer gives null. Every refusal prints one line on standard
 * output, "[ERROR][function():line]: message"; the messages are quoted below. A call that refuses
 * leaves the tree as it was. "malloc failed." stands for memory that could not be obtained.
 */
#ifndef VELDA_XMLP_XMLP_H
#define VELDA_XMLP_XMLP_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Records --------------------------------------------------------------------------------- */

/* What an element holds. The children of one element are either all named "item" or none is. */
typedef enum {
    XMLP_TYPE_NONE = 0,   /* neither text nor children (also the document node before parsing) */
    XMLP_TYPE_BRANCH = 1, /* children, none of them named "item" */
    XMLP_TYPE_LEAF = 2,   /* text */
    XMLP_TYPE_LIST = 3,   /* children, all of them named "item" */
    XMLP_TYPE_ITEM = 4    /* a member of a list; may hold text, never children */
} XMLP_NODE_TYPE;

/* In a static tree the records below follow texts of any length, so they stand at any byte address
 * and are packed. Read and write their fields through the record, never through a pointer to a
 * field. */

/* One attribute. */
typedef struct XMLP_ATTR {
    char *name;  /* NUL-terminated */
    char *value; /* as written between the quotes, NUL-terminated; null when empty */
    struct XMLP_ATTR *next;
} __attribute__((packed)) XMLP_ATTR;

/* One element. */
typedef struct XMLP_NODE {
    char *name;  /* NUL-terminated; null for the document node only */
    char *value; /* text with entities decoded: valueSize bytes, no terminator; null when 0 */
    uint32_t valueSize;  /* in bytes */
    uint32_t type;       /* an XMLP_NODE_TYPE */
    XMLP_ATTR *attrList; /* in document order */
    struct XMLP_NODE *parent;
    struct XMLP_NODE *prev;
    struct XMLP_NODE *next;
    struct XMLP_NODE *firstChild;
    struct XMLP_NODE *lastChild;
} __attribute__((packed)) XMLP_NODE;

/* One parsed text. */
typedef struct XMLP_TREE {
    uint32_t isStatic;   /* 0 for a dynamic tree */
    uint32_t headerLen;  /* bytes in header, 0 when the text had no XML declaration */
    char *header;        /* the text from its first byte through "?>", no terminator; or null */
    XMLP_NODE *rootNode; /* the document node: nameless, its child is the top-level element */
    uint32_t lock;       /* kept for the lock hooks */
    uint32_t refCount;   /* holders of the document */
} XMLP_TREE;

/* The handle that callers hold. */
typedef struct XMLP_DOC {
    XMLP_TREE *tree;
} XMLP_DOC;

/* As a child index or insert position: the last child. */
#define XMLP_POS_LAST 0xFFFFFFFFu

/* The name "item", shared by all list members of dynamic trees and never freed. */
extern char *const g_xmlp_itemName;

/* ---- Documents ------------------------------------------------------------------------------- */

/* Parses `len` bytes of text, static when `isStatic` is not 0, into a new document with one holder;
 * drop it with xmlp_releaseDoc. The text is not referenced afterwards. The byte at xmlBuf[len] must
 * be NUL. Null when the text is null or refused, as xmlp_parse tells. */
XMLP_DOC *xmlp_loadDoc(const char *xmlBuf, uint32_t len, uint32_t isStatic);

/* Adds a holder and returns the same document. Null: "doc is null.". */
XMLP_DOC *xmlp_copyDoc(XMLP_DOC *doc);

/* Drops a holder. The last one frees the declaration, the tree and the handle.
 * Null: "doc is null.". */
void xmlp_releaseDoc(XMLP_DOC *doc);

/* ---- Parsing --------------------------------------------------------------------------------- */

/* Parses a text into a tree: a byte-order mark (EF BB BF), white space, a declaration "<?...?>",
 * white space, then the body with one top-level element. The dialect: elements, attributes in
 * double quotes, text and the references &lt; &gt; &amp;. No comments, no CDATA, no processing
 * instructions. Text beside child elements is dropped; text of an element without children is its
 * value, white space included.
 *
 * Only static trees are built for now; asked for a dynamic one, this gives null.
 *
 * Free the tree with xmlp_destroyXmlTree through a handle, or use xmlp_loadDoc instead.
 *
 * Refusals, from the function that finds the fault outwards, all of them giving null:
 *   "xmlBuf is null.", "malloc failed.", "error in xml header." ("<?" without "?>"),
 *   "no xml tag found.", "error xml tag." (a tag that is misplaced, cut short or not closed),
 *   "not same tag name.", "valid tag name." (a byte of an end tag that no name may hold),
 *   "error xml tag name.", "error xml attribute.", "error xml attributeibute." (a tag that ends
 *   inside an attribute), "attr name existed.", "invalid value." (an unknown reference in a text),
 *   "single element is named item." (an item beside other elements), "tag name is not item."
 *   (another element in a list, or any element in an item).
 * "error xml tag." follows once for every element that encloses a refused one. */
XMLP_TREE *xmlp_parse(const char *xmlBuf, uint32_t len, uint32_t isStatic);

/* As xmlp_parse, with the tree in a new handle. `refCount` is 0. */
XMLP_DOC *xmlp_xml2Tree(const char *xmlBuf, uint32_t len, uint32_t isStatic);

/* The element that a path names: "/" is the document node, "/a/b" the first child named b of the
 * first child named a. Null when there is none, without a line; a path that does not begin with a
 * slash names nothing. Null doc or path: "invalid params."; so is an empty name in the path. */
XMLP_NODE *xmlp_seekXml(const XMLP_DOC *doc, const char *path);

/* ---- Reading elements ------------------------------------------------------------------------ */

/* The child at an index from 0, or the last one for XMLP_POS_LAST; null when there is none. Null
 * parent: "parent is null.". */
XMLP_NODE *xmlp_getChildNode(const XMLP_NODE *parent, uint32_t index);

/* The first child whose name is exactly the `len` bytes at `name`; null when there is none. Null
 * parent or name, an empty name or a length of 0: "invalid params.". */
XMLP_NODE *xmlp_getChildNodeByName(const XMLP_NODE *parent, const char *name, uint32_t len);

/* How many children an element has. Null: "node is null.", 0. */
uint32_t xmlp_getChildNodeCount(const XMLP_NODE *node);

/* How many attributes an element has. Null: "node is null.", 0. */
uint32_t xmlp_getNodeAttrCount(const XMLP_NODE *node);

/* 1 when a child of `parent` bears this name, else 0; 0 too when either is null. Prints nothing. */
int xmlp_isChildNameExist(const XMLP_NODE *parent, const char *name);

/* Gives an attribute's value in *value: a copy that the caller frees, or null for an attribute
 * without value. Null node, name or value: "invalid params."; "attribute not exist.";
 * "malloc failed.". */
int xmlp_getNodeAttr(const XMLP_NODE *node, const char *name, char **value);

/* 1 when the element has an attribute of this name with this value (null: with none), else 0. Null
 * node or name: "invalid params.", 0. */
int xmlp_isNodeAttr(const XMLP_NODE *node, const char *name, const char *value);

/* 1 when a record of the list bears exactly the `len` bytes at `name`, else 0; 0 too when the list
 * or the name is null. Prints nothing. */
int xmlp_isAttrNameExist(const XMLP_ATTR *attrList, const char *name, uint32_t len);

/* ---- Building and editing dynamic trees ------------------------------------------------------ */

/* None of these may be applied to a static tree. A node given to an inserting call must not be
 * linked anywhere. */

/* A new element, all fields zero. "malloc failed.". */
XMLP_NODE *xmlp_initNode(void);

/* Links a node as first or last child of `parent`. Null node or parent: "invalid params.". */
int xmlp_insNodeFirst(XMLP_NODE *node, XMLP_NODE *parent);
int xmlp_insNodeLast(XMLP_NODE *node, XMLP_NODE *parent);

/* Links a node right after or before `sibling`. Null node or sibling, or a sibling that is linked
 * nowhere itself: "invalid params.". */
int xmlp_insNodeAfter(XMLP_NODE *node, XMLP_NODE *sibling);
int xmlp_insNodeBefore(XMLP_NODE *node, XMLP_NODE *sibling);

/* Links a node so that it becomes the child at `position`: 0 first, XMLP_POS_LAST last. Null node
 * or parent: "invalid params."; no child at position - 1: "child[%d] not found.". */
int xmlp_addChildNode(XMLP_NODE *node, XMLP_NODE *parent, uint32_t position);

/* Gives an element a name, of which a copy is kept. Null node, null or empty name:
 * "invalid params."; "invalid name." (xmlp_isValidName); a child of its parent bears the name
 * already, the element itself included: "node name existed."; "malloc failed.". */
int xmlp_setNodeName(XMLP_NODE *node, const char *name);

/* Gives an element a text of `valueSize` bytes, of which a copy is kept; null and 0 take the text
 * away. The type is not changed. "pNode is null."; "value is null but valueSize > 0.";
 * "value is not null but valueSize is 0."; an element with children: "pNode is not leaf node.";
 * "malloc failed.". */
int xmlp_setNodeValue(XMLP_NODE *pNode, const void *value, uint32_t valueSize);

/* Appends an attribute; copies are kept; the value may be null. Null node, null or empty name:
 * "invalid params."; "invalid attribute name %s."; "invalid attribute value.";
 * "attribute existed."; "malloc failed.". */
int xmlp_addNodeAttr(XMLP_NODE *node, const char *name, const char *value);

/* Changes an attribute's value; null takes it away. Null node, null or empty name:
 * "invalid params."; "invalid attribute name."; "invalid attribute value.";
 * "attribute not exist."; "malloc failed.". */
int xmlp_setNodeAttr(XMLP_NODE *node, const char *name, const char *value);

/* Removes an attribute. Null node or name: "invalid params."; "attribute not exist.". */
int xmlp_delNodeAttr(XMLP_NODE *node, const char *name);

/* Frees a list of attributes with their names and values. Null: does nothing. */
void xmlp_freeAttrList(XMLP_ATTR *attrList);

/* ---- Freeing --------------------------------------------------------------------------------- */

/* Unlinks an element of a dynamic tree and frees it with all it owns. Null, or an element with
 * children: "invalid params.", and nothing is changed. */
void xmlp_delNode(XMLP_NODE *node);

/* Frees an element of a dynamic tree with everything under it. Null: "node is null.". */
void xmlp_delDtree(XMLP_NODE *node);

/* Frees the one block of a static tree. Null: "rootNode is null.". */
void xmlp_delStree(XMLP_NODE *rootNode);

/* Frees a document's declaration and its elements of either kind, but neither the tree record nor
 * the handle: xmlp_releaseDoc does that. Null: "doc is null.". */
void xmlp_destroyXmlTree(XMLP_DOC *doc);

/* ---- Bytes and entities ---------------------------------------------------------------------- */

/* All of these take a range of `len` bytes that needs no terminator and may hold any byte. */

/* 0 when the range equals the NUL-terminated `stored` exactly, else -1. Nothing is read past the
 * terminator of `stored`. Null: "invalid params.", -1. */
int xmlp_nameCmp(const char *name, uint32_t len, const char *stored);

/* 1 when no byte of the range is forbidden in an element or attribute name (NUL, TAB, LF, CR, space
 * and " & / < = >), else 0. Null: "buf is null.", 0. */
int xmlp_isValidName(const char *buf, uint32_t len);

/* 1 when no byte of the range is forbidden in an attribute value (NUL and " & < >), else 0.
 * Null: "buf is null.", 0. */
int xmlp_isValidAttrValue(const char *buf, uint32_t len);

/* 1 when the range holds none of & / < >, else 0. Null: "buf is null.", 0. */
int xmlp_isValidChar(const char *buf, uint32_t len);

/* Length in bytes of the range with < > & written as references. Null: "str is null.", 0. */
uint32_t xmlp_transStrLen(const char *str, uint32_t len);

/* Writes the range to `dst` with < > & as references, without a terminator; `dst` needs
 * xmlp_transStrLen bytes. Gives the position after the last byte written.
 * Null: "invalid params.". */
char *xmlp_transStr(char *dst, const char *src, uint32_t len);

/* Length in bytes of the range with &lt; &gt; &amp; decoded; 0 for a range that holds any other &,
 * which a non-empty range that can be decoded never gives. Null: "str is null.", 0. */
uint32_t xmlp_unTransStrLen(const char *str, uint32_t len);

/* Writes the range to `dst` with &lt; &gt; &amp; decoded, without a terminator; `dst` needs
 * xmlp_unTransStrLen bytes. Gives the position after the last byte written, or null, without a
 * line, for a range that holds any other &. Null: "invalid params.". */
char *xmlp_unTransStr(char *dst, const char *src, uint32_t len);

#ifdef __cplusplus
}
#endif

#endif
