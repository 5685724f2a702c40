/*
 * The steps of a parse and the lock hooks: for the library itself and for tests, not for callers.
 */
#ifndef VELDA_XMLP_XMLP_INTERNAL_H
#define VELDA_XMLP_XMLP_INTERNAL_H

#include "xmlp/xmlp.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Bytes ----------------------------------------------------------------------------------- */

/* By lead byte, the number of bytes of the UTF-8 character that it begins; 1 for a byte that begins
 * none. */
extern const uint8_t _utf8CharLen[256];

/* 1 for space, TAB, LF and CR, else 0. */
int _isWhiteSpace(char c);

/* The first position at or after `position` that is not white space. Null: "buf is null.". */
const char *_skipWhiteSpace(const char *position);

/* ---- Structure check ------------------------------------------------------------------------- */

/* 0 when the body passes the structure check, else -1. Null: "invalid params.". */
int _checkXml(const char *bodyStart, const char *bodyEnd);

/* Checks the content of an element: `startTag` is the text after the '<' of its start tag,
 * `position` the byte after that tag's '>'. Gives the position past its end tag, or null. */
const char *_subXml(const char *startTag, const char *position, const char *bodyEnd);

/* 0 when the tag whose text begins at `tag` (after its '<') is well formed up to `endCharacter`,
 * '>' or '/', else -1. Null: "buf is null.". */
int _checkNameAttr(const char *tag, char endCharacter);

/* ---- Reading tags ---------------------------------------------------------------------------- */

/* Reads a tag that passed the check. Static: *name is the name's entry in `nameTable`, and the
 * attributes are written as consecutive records at *attrs, which is left as it was. Dynamic: *name
 * is a new copy and *attrs a new list or null; both are null after a failure.
 * -1: "invalid params."; "attr name existed."; "malloc failed.". */
int _getNameAttr(const char *tag, char endCharacter, char **name, XMLP_ATTR **attrs,
                 uint32_t isStatic, char *nameTable);

/* Types a node just linked, and its parent, by the rule for elements named "item". -1:
 * "invalid params.", "single element is named item.", "tag name is not item.". */
int _setType(XMLP_NODE *node, uint32_t isStatic);

/* ---- Static trees ---------------------------------------------------------------------------- */

/* The position of a string in a name table: its entry, the tail of a longer entry, or the free end
 * of the table. A linear search. Null: "invalid params.". */
char *_findName(const char *nameTable, const char *string, uint32_t len);

/* Stores a tag's names and attribute values in a name table with the capacity for them and gives the number
 * of its attributes. Null: "invalid params.", 0. */
uint32_t _saveNameAttr(const char *tag, char endCharacter, char *nameTable);

/* Builds a static tree in areas that a counting pass over the same body has sized, and gives its
 * document node, the first record of the node area. `attrs` may be null for a body without
 * attributes. Null names, values or nodes, or a null body: "invalid params.". */
XMLP_NODE *_makeStree(const char *body, uint32_t bodyLen, char *names, char *values,
                      XMLP_ATTR *attrs, XMLP_NODE *nodes);

/* ---- Dynamic trees --------------------------------------------------------------------------- */

/* Builds a dynamic tree of a body that passed the check and gives its document node; null, with
 * nothing left allocated, when it can't be built. Null: "invalid params.". */
XMLP_NODE *_makeDtree(const char *body, uint32_t bodyLen);

/* 0 when every position is greater than the one before it, else -1: "error order in pos.", or no
 * line when there are no positions. */
int _checkOrder(const uint32_t *positions, uint32_t count);

/* A new unlinked node with an item's value and attributes, without name and type. "item is null.";
 * "malloc failed."; what xmlp_addNodeAttr refuses. */
XMLP_NODE *_item2Node(const XMLP_ITEM *item);

/* ---- Writing --------------------------------------------------------------------------------- */

/* Write an element, compact or indented as one at this depth, to a buffer of its size, without
 * a terminator, and give the position after it; a null node writes nothing. "buf is null.". */
char *_tree2Xml(const XMLP_NODE *node, char *position);
char *_tree2FormatXml(const XMLP_NODE *node, char *position, uint32_t depth);

/* ---- Lock hooks ------------------------------------------------------------------------------ */

/* Where a per-document lock would be made, taken, released and dropped. They only check their
 * argument: "doc is null.". */
int _initLock(XMLP_DOC *doc);
void _lock(XMLP_DOC *doc);
void _unLock(XMLP_DOC *doc);
void _destroyLock(XMLP_DOC *doc);

#ifdef __cplusplus
}
#endif

#endif
