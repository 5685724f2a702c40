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
 * A document is used by one thread at a time; different documents are independent. A thread with
 * 32 KiB of stack is enough for every call, however deep a document nests.
 *
 * Results. Unless documented otherwise a call that returns int gives 0 when it is done and -1 when it
 * refuses; a call that returns a pointer gives null. Every refusal reports one line,
 * "[ERROR][function():line]: message"; the messages are quoted below. A call that refuses leaves the
 * tree as it was. "malloc failed." stands for memory that could not be obtained.
 */
#ifndef VELDA_XMLP_XMLP_H
#define VELDA_XMLP_XMLP_H

#include <stdint.h>

/* Shared libraries show what stands here and nothing else. */
#pragma GCC visibility push(default)

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Reports --------------------------------------------------------------------------------- */

/* Takes a report: the text of one line with its line end, CR LF, and the context given with the
 * function. Lines of 1024 bytes and more arrive cut. */
typedef void (*XMLP_REPORT_FUNCTION)(const char *text, void *context);

/* Sends all reports to a function from now on, or, with null, as at the start, to standard output.
 * Documents may be in use on several threads; the function is then called on all of them. */
void xmlp_setReport(XMLP_REPORT_FUNCTION report, void *context);

#define XMLP_NO_OFFSET UINT32_MAX

/* The parts of a report, good until the function that takes it returns. */
typedef struct {
    const char *function; /* the one that reports */
    int line;             /* of the library's source */
    const char *message;  /* what it has to say */
    const char *text;     /* the whole line, as an XMLP_REPORT_FUNCTION gets it */
    uint32_t offset;      /* of the fault in the text that is refused, in bytes from its first one;
                           * XMLP_NO_OFFSET where no text is to blame */
} XMLP_REPORT_RECORD;

typedef void (*XMLP_REPORT_CALLBACK)(const XMLP_REPORT_RECORD *record, void *context);

/* The same in parts. There is one taker of reports: this function and xmlp_setReport each replace what
 * the other has set. */
void xmlp_setReportRecord(XMLP_REPORT_CALLBACK report, void *context);

/* ---- Errors of a text ------------------------------------------------------------------------ */

/* Every reason to refuse a text, its value and its message, written once. Beside each the byte that an
 * error's place is: the first one of what is refused. */
#define XMLP_ERROR_CODES(X)                                                                        \
    X(XMLP_ERROR_NO_TEXT, 1, "xmlBuf is null.")                    /* (none) */                    \
    X(XMLP_ERROR_NO_MEMORY, 2, "malloc failed.")                   /* (none) */                    \
    X(XMLP_ERROR_DECLARATION, 3, "error in xml header.")           /* the '<' of its "<?" */       \
    X(XMLP_ERROR_NO_TAG, 4, "no xml tag found.")                   /* where it would begin */      \
    X(XMLP_ERROR_TAG, 5, "error xml tag.")                         /* a '<' or '>' that may not  \
        stand there, an end tag's '<', the end of a text that stops too early */ \
    X(XMLP_ERROR_END_TAG, 6, "not same tag name.")                 /* the end tag's '<' */         \
    X(XMLP_ERROR_END_TAG_NAME, 7, "valid tag name.")               /* its name */                  \
    X(XMLP_ERROR_NAME, 8, "error xml tag name.")                   /* the name */                  \
    X(XMLP_ERROR_ATTRIBUTE, 9, "error xml attribute.")             /* the attribute */             \
    X(XMLP_ERROR_CUT_ATTRIBUTE, 10, "error xml attributeibute.")   /* the attribute */             \
    X(XMLP_ERROR_REPEATED_ATTRIBUTE, 11, "attr name existed.")     /* its name, the second time */ \
    X(XMLP_ERROR_VALUE, 12, "invalid value.")                      /* the '&' */                   \
    X(XMLP_ERROR_SINGLE_ITEM, 13, "single element is named item.") /* the element's '<' */         \
    X(XMLP_ERROR_NOT_ITEM, 14, "tag name is not item.")            /* the element's '<' */

#define XMLP_ERROR_ENUMERATOR(name, value, message) name = (value),
typedef enum { XMLP_ERROR_NONE = 0, XMLP_ERROR_CODES(XMLP_ERROR_ENUMERATOR) } XMLP_ERROR_CODE;
#undef XMLP_ERROR_ENUMERATOR

/* Why a text is refused, and where. For codes without a place the three numbers are 0. */
typedef struct {
    XMLP_ERROR_CODE code;
    uint32_t offset;     /* in bytes from the text's first one, a byte-order mark included */
    uint32_t line;       /* from 1; LF ends a line */
    uint32_t column;     /* from 1, in bytes */
    const char *message; /* the code's, a constant text; "" for XMLP_ERROR_NONE */
} XMLP_ERROR;

/* The name of a code, such as "XMLP_ERROR_TAG" for 5; "ERROR NOT IN LIST" for a number that is none. A
 * constant text, never to be freed. */
const char *xmlp_errorName(int code);

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
    uint32_t refCount;   /* references to the document */
} XMLP_TREE;

/* The handle that callers hold. */
typedef struct XMLP_DOC {
    XMLP_TREE *tree;
} XMLP_DOC;

/* A counted value. Handed out, it is the caller's to free, `value` too. */
typedef struct XMLP_VALUE {
    uint32_t valueSize; /* in bytes */
    char *value;        /* null when valueSize is 0 */
} XMLP_VALUE;

/* An attribute by name and value. */
typedef struct XMLP_ATTR_PAIR {
    const char *name; /* NUL-terminated */
    char *value;      /* NUL-terminated, or null for an attribute without value */
} XMLP_ATTR_PAIR;

/* A new list member. */
typedef struct XMLP_ITEM {
    uint32_t attrCount;
    const XMLP_ATTR_PAIR *attrs; /* may be null */
    uint32_t valueSize;
    const char *value; /* may be null */
} XMLP_ITEM;

/* As a child index or insert position: the last child. */
#define XMLP_POS_LAST 0xFFFFFFFFu

/* How positions of list members are given: the first of a range, or each of them. */
enum { XMLP_POS_RANGE = 0, XMLP_POS_LIST = 1 };

/* The name "item", shared by all list members of dynamic trees and never freed. */
extern char *const g_xmlp_itemName;

/* For the arguments `isStatic` and `isCompact`, which take any number for yes. */
enum { XMLP_DYNAMIC = 0, XMLP_STATIC = 1 };
enum { XMLP_INDENTED = 0, XMLP_COMPACT = 1 };

/* ---- Documents ------------------------------------------------------------------------------- */

/* Parses `len` bytes of text, static when `isStatic` is not 0, into a new document with one reference;
 * drop it with xmlp_releaseDoc. The text is not referenced afterwards. The byte at xmlBuf[len] must
 * be NUL. Null when the text is null or refused, as xmlp_parse tells. */
XMLP_DOC *xmlp_loadDoc(const char *xmlBuf, uint32_t len, uint32_t isStatic);

/* The same, and tells in *error why the text was refused; its code is XMLP_ERROR_NONE when it was not.
 * `error` may be null. Several lines can be reported for one fault; the error is the first of them,
 * which is the nearest to it. */
XMLP_DOC *xmlp_loadDocWithError(const char *xmlBuf, uint32_t len, uint32_t isStatic,
                                XMLP_ERROR *error);

/* Adds a reference and returns the same document. Null: "doc is null.". */
XMLP_DOC *xmlp_copyDoc(XMLP_DOC *doc);

/* Drops a reference. The last one frees the declaration, the tree and the handle.
 * Null: "doc is null.". */
void xmlp_releaseDoc(XMLP_DOC *doc);

/* ---- Parsing --------------------------------------------------------------------------------- */

/* Parses a text into a tree: a byte-order mark (EF BB BF), white space, a declaration "<?...?>",
 * white space, then the body with one top-level element. The dialect: elements, attributes in
 * double quotes, text and the references &lt; &gt; &amp;. No comments, no CDATA, no processing
 * instructions. Text beside child elements is dropped; text of an element without children is its
 * value, white space included.
 *
 * Most programs want xmlp_loadDoc, which gives a document that the calls by path take and that
 * xmlp_releaseDoc frees. The bare tree of this call is freed through a handle: with xmlp_destroyXmlTree,
 * and then free(handle.tree).
 *
 * Refusals, from the function that finds the fault outwards, all of them giving null:
 *   "xmlBuf is null.", "malloc failed.", "error in xml header." ("<?" without "?>"),
 *   "no xml tag found.", "error xml tag." (a tag that is misplaced, cut short or not closed),
 *   "not same tag name.", "valid tag name." (a byte of an end tag that no name may hold),
 *   "error xml tag name.", "error xml attribute.", "error xml attributeibute." (a tag that ends
 *   inside an attribute), "attr name existed.", "invalid value." (an unknown reference in a text),
 *   "single element is named item." (an item beside other elements or in an item), "tag name is not
 *   item." (another element in a list or in an item).
 * A fault in the structure of tags is followed by "error xml tag." for every enclosing element.
 * Only where there is no memory for the text of an element of a dynamic tree no line is printed. */
XMLP_TREE *xmlp_parse(const char *xmlBuf, uint32_t len, uint32_t isStatic);

/* As xmlp_parse, with the tree in a new handle that counts as one reference: free it with
 * xmlp_releaseDoc. */
XMLP_DOC *xmlp_xml2Tree(const char *xmlBuf, uint32_t len, uint32_t isStatic);

/* The element that a path names: "/" is the document node, "/a/b" the first child named b of the
 * first child named a. Null when there is none, without a line; a path that does not begin with a
 * slash names nothing. Null doc or path: "invalid params."; so is an empty name in the path. */
XMLP_NODE *xmlp_seekXml(const XMLP_DOC *doc, const char *path);

/* ---- Documents by path ----------------------------------------------------------------------- */

/* Every call here takes a document and the path of an element, as xmlp_seekXml reads it. Refusals
 * come in this order: a null document, path or other pointer that is not said to be optional,
 * "invalid params."; a call that changes a static document, "static xml."; no such element,
 * "node not exist."; an element of the wrong type, "error node type."; then those named. A refused
 * call changes nothing unless documented otherwise. All but xmlp_isExist work between the lock hooks. */

/* 1 when the path names an element, else 0. */
int xmlp_isExist(XMLP_DOC *doc, const char *path);

/* A copy of an element's text, with a NUL added after its bytes: free its `value` and the record.
 * For elements without children that are no list members. "malloc failed.". */
XMLP_VALUE *xmlp_getValue(XMLP_DOC *doc, const char *path);

/* Replaces the text of an element that has one. Then what xmlp_setNodeValue refuses. */
int xmlp_setValue(XMLP_DOC *doc, const char *path, const void *value, uint32_t valueSize);

/* Renames an element. Then what xmlp_setNodeName refuses. */
int xmlp_setName(XMLP_DOC *doc, const char *path, const char *name);

/* Adds an element under the one at `path`, so that it becomes the child at `position`. With a value
 * record (optional, its value too) it holds text, with `attrs` (optional) it has these attributes.
 * For elements without text or items; one without children becomes a branch even when the rest is
 * refused, by xmlp_setNodeName, xmlp_setNodeValue, xmlp_addNodeAttr or xmlp_addChildNode. */
int xmlp_add(XMLP_DOC *doc, const char *path, uint32_t position, const char *name,
             const XMLP_VALUE *value, const XMLP_ATTR_PAIR *attrs, uint32_t attrCount);

/* How many children an element has; 0 when refused. */
uint32_t xmlp_getChildCount(XMLP_DOC *doc, const char *path);

/* Deletes an element with all that is under it. "not allow to delete root node.". */
int xmlp_delete(XMLP_DOC *doc, const char *path);

/* Read, change, add and delete one attribute of an element. Reading takes the pair's name and gives
 * its value, a copy that the caller frees, or null. Then what xmlp_getNodeAttr, xmlp_setNodeAttr,
 * xmlp_addNodeAttr or xmlp_delNodeAttr refuses. */
int xmlp_getAttr(XMLP_DOC *doc, const char *path, XMLP_ATTR_PAIR *pair);
int xmlp_setAttr(XMLP_DOC *doc, const char *path, const XMLP_ATTR_PAIR *pair);
int xmlp_addAttr(XMLP_DOC *doc, const char *path, const XMLP_ATTR_PAIR *pair);
int xmlp_deleteAttr(XMLP_DOC *doc, const char *path, const char *name);

/* ---- Lists by path and position -------------------------------------------------------------- */

/* A list is an element whose children are all named "item"; one without children is an empty list.
 * `path` names the list, members are counted from 0. A call on several of them takes, with
 * XMLP_POS_RANGE, one position and works on `count` members from there on, or, with XMLP_POS_LIST,
 * `count` positions in ascending order. One member may be given as XMLP_POS_LAST.
 *
 * Refusals as for documents by path (a count of 0 is "invalid params."), then: another mode,
 * "unkown mode."; positions not ascending, "error order in pos."; a member that is not there,
 * "pos over range.". Calls that return a number work in ascending order, return how many members they
 * have done and stop at the first that is refused; what is done stays done. */

/* 1 when the list has a member at this index, else 0. */
int xmlp_isItemExist(XMLP_DOC *doc, const char *path, uint32_t index);

/* Copies of the members' texts, each with a NUL added, and how many in *outCount. Free them with
 * xmlp_freeValueArray, or with free when *outCount is 0. Null when refused; when memory runs out on
 * the way, "malloc failed.", and the array with the texts copied so far. */
XMLP_VALUE *xmlp_getItemValue(XMLP_DOC *doc, const char *path, uint32_t mode,
                              const uint32_t *positions, uint32_t count, uint32_t *outCount);

/* Gives each member its text from `values`. Stops at what xmlp_setNodeValue refuses. */
uint32_t xmlp_setItemValue(XMLP_DOC *doc, const char *path, uint32_t mode, const XMLP_VALUE *values,
                           const uint32_t *positions, uint32_t count);

/* Adds members one after the other, so that the first becomes the one at `position`: 0 at the
 * start, XMLP_POS_LAST at the end. "pos over range." when the one before is not there. An empty
 * list becomes a list even when the rest is refused. Stops at what _item2Node refuses: "malloc
 * failed.", or an attribute that xmlp_addNodeAttr refuses. */
uint32_t xmlp_addItem(XMLP_DOC *doc, const char *path, const XMLP_ITEM *items, uint32_t position,
                      uint32_t count);

/* Deletes members; a range from XMLP_POS_LAST on means all of them, whatever the count. 0 or -1. */
int xmlp_deleteItem(XMLP_DOC *doc, const char *path, uint32_t mode, const uint32_t *positions,
                    uint32_t count);

/* Read, change and add an attribute of each member, the i-th as the i-th pair tells, and delete one
 * of all of them. Values read are copies that the caller frees, or null. */
uint32_t xmlp_getItemAttr(XMLP_DOC *doc, const char *path, uint32_t mode, XMLP_ATTR_PAIR *pairs,
                          const uint32_t *positions, uint32_t count);
uint32_t xmlp_setItemAttr(XMLP_DOC *doc, const char *path, uint32_t mode,
                          const XMLP_ATTR_PAIR *pairs, const uint32_t *positions, uint32_t count);
uint32_t xmlp_addItemAttr(XMLP_DOC *doc, const char *path, uint32_t mode,
                          const XMLP_ATTR_PAIR *pairs, const uint32_t *positions, uint32_t count);
uint32_t xmlp_deleteItemAttr(XMLP_DOC *doc, const char *path, uint32_t mode, const char *name,
                             const uint32_t *positions, uint32_t count);

/* Copies of the texts, without a NUL, of the members that have all these attributes with these
 * values (null: without value), and how many in *outCount. Null when there are none, with 0 in
 * *outCount, or when refused, also by "malloc failed.", which leaves *outCount alone. */
XMLP_VALUE *xmlp_getItemValueByAttr(XMLP_DOC *doc, const char *path, const XMLP_ATTR_PAIR *pairs,
                                    uint32_t pairCount, uint32_t *outCount);

/* Frees `count` values and their array: pass the count that came with them. With 0 it frees nothing, not
 * even the array, which is then for free(). */
void xmlp_freeValueArray(XMLP_VALUE *values, uint32_t count);

/* ---- Writing a document ---------------------------------------------------------------------- */

/* The document as text in a buffer that the caller frees, NUL-terminated, its length without the
 * NUL in *length: the declaration as it was read, then the elements, compact when `isCompact` is
 * not 0, else one to a line and indented by two spaces a level. Null document or length: "invalid
 * params."; "malloc failed.", also for a text of 4 GiB and more. Kept for compatibility: not all that it
 * writes can be read; xmlp_writeDoc's can. */
char *xmlp_dumpDoc(XMLP_DOC *doc, uint32_t isCompact, uint32_t *length);

/* The same without the lock hooks. */
char *xmlp_tree2Xml(const XMLP_DOC *doc, uint32_t isCompact, uint32_t *length);

/* Why a document can't be written so that it reads back, its value and its message, written once. */
#define XMLP_WRITE_CODES(X)                                                                        \
    X(XMLP_WRITE_PARAMS, 1, "invalid params.")          /* no document or no place for the size */ \
    X(XMLP_WRITE_NO_MEMORY, 2, "malloc failed.")        /* also for 4 GiB and more */              \
    X(XMLP_WRITE_NAME, 3, "name can not be read back.") /* with bytes that its tags can't hold */  \
    X(XMLP_WRITE_ATTRIBUTE, 4, "attribute can not be read back.") /* the same, or repeated */      \
    X(XMLP_WRITE_VALUE, 5,                                                                         \
      "value can not be read back.") /* it ends within a character, or stands \
        beside children */                    \
    X(XMLP_WRITE_PLACE, 6, "element can not stand there.") /* an item beside others or with    \
        children, a second top-level element */

#define XMLP_WRITE_ENUMERATOR(name, value, message) name = (value),
typedef enum { XMLP_WRITE_NONE = 0, XMLP_WRITE_CODES(XMLP_WRITE_ENUMERATOR) } XMLP_WRITE_CODE;
#undef XMLP_WRITE_ENUMERATOR

enum { XMLP_WRITE_PATH_SIZE = 256 };

typedef struct {
    XMLP_WRITE_CODE code;
    const char *message; /* the code's, a constant text; "" for XMLP_WRITE_NONE */
    char path
        [XMLP_WRITE_PATH_SIZE]; /* of the element, such as "/config/host"; empty where none is to
                                      * blame. Longer ones are cut. */
} XMLP_WRITE_ERROR;

enum { XMLP_WRITE_INDENTED = 1 }; /* one element to a line, as xmlp_dumpDoc has it; else compact */

/* The document as text that a parse makes the same tree of, in a buffer that the caller frees,
 * NUL-terminated, its length without the NUL in *size. It differs from that of xmlp_dumpDoc where this
 * can't be read: an element without contents has an end tag when an attribute holds a '/'.
 * Null when it can't be written so; why and of which element stands in *error, which may be null, and in
 * the line: "<path>: <message>". */
char *xmlp_writeDoc(const XMLP_DOC *doc, uint32_t flags, uint32_t *size, XMLP_WRITE_ERROR *error);

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

/* 1 when a child of `parent` has this name, else 0; 0 too when either is null. Prints nothing. */
int xmlp_isChildNameExist(const XMLP_NODE *parent, const char *name);

/* Gives an attribute's value in *value: a copy that the caller frees, or null for an attribute
 * without value. Null node, name or value: "invalid params."; "attribute not exist.";
 * "malloc failed.". */
int xmlp_getNodeAttr(const XMLP_NODE *node, const char *name, char **value);

/* 1 when the element has an attribute of this name with this value (null: with none), else 0. Null
 * node or name: "invalid params.", 0. */
int xmlp_isNodeAttr(const XMLP_NODE *node, const char *name, const char *value);

/* 1 when a record of the list has exactly the `len` bytes at `name`, else 0; 0 too when the list
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
 * "invalid params."; "invalid name." (xmlp_isValidName); a child of its parent has the name
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

#pragma GCC visibility pop

#endif
