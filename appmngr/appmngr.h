/*
 * The application database: which applications a device's traffic classification knows, the types
 * they belong to, and the packet rules and DNS keywords by which each is recognised.
 *
 * The module loads the database from an image file into one model in static storage, which stays
 * until the next load, and writes it out. In order of use:
 *
 *     appmngr_checkDbPath("db.img")  ->  appmngr_load_database()  ->  appmngr_saveIdAndName("list")
 *
 * Images and documents that are in memory already are loaded by appmngr_loadImage and appmngr_loadText.
 * It is not reentrant and belongs to one thread, for which 32 KiB of stack are enough; a database taken
 * out of it, APPMNGR_DATABASE, can be read by any. Calls that
 * return int give 0 when they are done and -1 when they fail unless told otherwise. Failures are told
 * on standard output, one line at each function that hands them up:
 * "[Error](function) number: message".
 */
#ifndef VELDA_APPMNGR_APPMNGR_H
#define VELDA_APPMNGR_APPMNGR_H

#include "../common/common.h"
#include "../xmlp/xmlp.h"

#include <stdint.h>
#include <stdio.h>

/* Shared libraries show what stands here and nothing else. */
#pragma GCC visibility push(default)

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Sizes ----------------------------------------------------------------------------------- */

/* The database image (docs/database-format.md). All sizes and offsets in bytes. */
enum {
    APPMNGR_IMAGE_SIZE = 65536,    /* what is read of the file */
    APPMNGR_IMAGE_LENGTH_SIZE = 4, /* the big-endian block length at its start */
    APPMNGR_BLOCK_SIZE_MAX = APPMNGR_IMAGE_SIZE - APPMNGR_IMAGE_LENGTH_SIZE,
    APPMNGR_BLOCK_PROPERTIES = 1,   /* in the block: LZMA properties, 5 bytes */
    APPMNGR_BLOCK_TEXT_SIZE = 6,    /* in the block: size of the text, little-endian */
    APPMNGR_BLOCK_HEADER_SIZE = 14, /* then the LZMA stream */
    APPMNGR_DB_XML_SIZE = 0x32000,  /* the text and its terminator fit this */
    APPMNGR_DESC_XML_SIZE = 0xC800  /* the same for a description document */
};

/* Texts and limits of the model. A text field holds one byte less than its size. */
enum {
    APPMNGR_NAME_SIZE = 128,
    APPMNGR_VERSION_SIZE = 12,
    APPMNGR_MODEL_SIZE = 32,
    APPMNGR_EXPIRED_SIZE = 32,
    APPMNGR_DPI_TYPE_SIZE = 16,
    APPMNGR_DPI_CODE_SIZE = 256,
    APPMNGR_DNS_KEYWORD_SIZE = 16,
    APPMNGR_STAMP_SIZE = 96,
    APPMNGR_TUPLE_SIZE = 64, /* of a tuple's text */
    APPMNGR_APP_TYPES_MAX = 64,
    APPMNGR_LEVELS_MAX = 64,     /* of nested elements that a load follows */
    APPMNGR_NODE_TEXT_SIZE = 512 /* longer texts of elements count as missing */
};

/* ---- Records --------------------------------------------------------------------------------- */

/* All texts are NUL-terminated and zero-filled. */

/* One application. */
typedef struct {
    int32_t id;
    int32_t visible; /* as written in the database */
    char name[APPMNGR_NAME_SIZE];
} APPMNGR_APP;

/* One application type. */
typedef struct {
    int32_t id;
    char name[APPMNGR_NAME_SIZE];
    APPMNGR_APP_BITMAP appBitmap; /* the identifiers of the applications that belong to it */
} APPMNGR_APPTYPE;

/* What packets of one direction of a flow look like. */
typedef struct {
    int32_t enable;
    int32_t start; /* of the packet segment */
    int32_t end;
    int32_t minlength; /* bound on the packet's length */
    char dpiType[APPMNGR_DPI_TYPE_SIZE];
    char dpiCode[APPMNGR_DPI_CODE_SIZE];
} APPMNGR_FEATURE;

/* One packet rule; a rule of the document with several tuples becomes several records. */
typedef struct {
    int32_t appid;
    uint32_t sip; /* source and destination IPv4 address, network byte order; 0 for any */
    uint32_t dip;
    uint16_t sport; /* source and destination port, host byte order */
    uint16_t dport;
    uint8_t proto;         /* IP protocol number: 6, 17 or 1 */
    APPMNGR_FEATURE orig;  /* the originating direction, element "ori" */
    APPMNGR_FEATURE reply; /* the reply direction, element "rep" */
} APPMNGR_RULE;

/* One DNS keyword of an application. */
typedef struct {
    int32_t appid;
    char dnsKw[APPMNGR_DNS_KEYWORD_SIZE];
} APPMNGR_DNS_RULE;

/* The database's header, its rules and its types. */
typedef struct {
    char ver[APPMNGR_VERSION_SIZE];
    char proModel[APPMNGR_MODEL_SIZE];
    char expired[APPMNGR_EXPIRED_SIZE];
    uint32_t appCount;
    uint32_t ruleCount;
    APPMNGR_RULE *rule;
    uint32_t appTypeCount;
    APPMNGR_APPTYPE *appType;
} APPMNGR_APPDB;

/* All DNS keywords; `rule` is null when there are none. */
typedef struct {
    uint32_t count;
    APPMNGR_DNS_RULE *rule;
} APPMNGR_APPDNS;

/* What a description document would say of an application or a type. */
typedef struct {
    int32_t id;
    char name[APPMNGR_NAME_SIZE];
} APPMNGR_DESC;

/* Room for a description document. Its elements are counted; nothing fills it yet. */
typedef struct {
    uint32_t appCount;
    APPMNGR_DESC *app;
    uint32_t appTypeCount;
    APPMNGR_DESC *appType;
} APPMNGR_APPDESC;

/* The counts of the counting pass, then the fill cursors: each is the index of the record being
 * filled and, after the load, how many were filled. */
typedef struct {
    uint32_t tupleCnt;
    uint32_t appCnt;
    uint32_t appTypeCnt;
    uint32_t descAppCnt;
    uint32_t descAppTypeCnt;
    uint32_t langCnt;
    uint32_t dnsKwCnt;
    uint32_t ruleIdx;
    uint32_t appIdx;
    uint32_t appTypeIdx;
    uint32_t dnsKwIdx;
} APPMNGR_COUNTER;

/* ---- Loading --------------------------------------------------------------------------------- */

/* Remembers the path of the image for later loads (the pointer: keep the text alive) and tries to
 * open it for reading. The path is remembered even when that fails. It fails for a pipe too, and does
 * not wait for one: what is not a file, a device or a folder (which has no bytes) holds no image. */
int appmngr_checkDbPath(const char *path);

/* Loads the database from the remembered path: resets the model, reads the first 64 KiB of the
 * file, decompresses the text and fills the model. Elements that can't be used are told and left
 * out; the load goes on. A database needs an application, a rule tuple and an application type.
 * On failure nothing is left allocated but what the next reset frees. */
int appmngr_load_database(void);

/* The same without a file, with the results and reports of appmngr_load_database; the path that is
 * remembered stays as it was. The bytes are needed during the call alone. A null pointer, of any size,
 * is reported as "Invalid param!" and gives -1, and the model stays as it was; a size of 0 is an empty
 * file or text. */

/* From the bytes of an image: the first 64 KiB count, and what is missing of them counts as zeros. */
int appmngr_loadImage(const void *image, uint32_t size);

/* From the text that an image would carry, of at most APPMNGR_DB_XML_SIZE - 1 bytes. It needs no
 * terminator, and ends at its first zero byte if it has one. */
int appmngr_loadText(const char *text, uint32_t size);

/* Frees the model and sets all counts to 0. Always 0. Prints a notice when DNS keywords were held.
 */
int appmngr_dbReInit(void);

/* ---- Reading the model ----------------------------------------------------------------------- */

/* What the last load has filled, good until the next load or reset. Without a database the counts
 * are 0. During a load, as a visitor sees it, the counts in the records are still those of the
 * counting pass: how many have been obtained. */
const APPMNGR_APPDB *appmngr_getAppDb(void);
const APPMNGR_APPDNS *appmngr_getAppDns(void);

/* The applications in the order of the document, their number in *count, which must not be null.
 * Null when there are none. */
const APPMNGR_APP *appmngr_getApps(uint32_t *count);

/* ---- A database as a value ------------------------------------------------------------------- */

/* A database that belongs to whoever holds it. Any number of them can be held, while the module loads
 * others, and any number of threads can read one, since nothing changes it. */
typedef struct APPMNGR_DATABASE APPMNGR_DATABASE;

/* Hands over what the last load has filled, to be freed with appmngr_freeDatabase. The module is then
 * as after a reset, of which nothing is reported. Null when nothing is loaded; also without memory,
 * reported as "malloc memory faild.", and the module keeps the model then. It is not for visitors and
 * whoever else is called during a load. */
APPMNGR_DATABASE *appmngr_takeDatabase(void);

/* Frees a database with all of its records. Null is no database and allowed. */
void appmngr_freeDatabase(APPMNGR_DATABASE *database);

/* As appmngr_getAppDb, appmngr_getAppDns and appmngr_getApps, of this database, which must not be
 * null. What they give is good until it is freed. */
const APPMNGR_APPDB *appmngr_databaseGetAppDb(const APPMNGR_DATABASE *database);
const APPMNGR_APPDNS *appmngr_databaseGetAppDns(const APPMNGR_DATABASE *database);
const APPMNGR_APP *appmngr_databaseGetApps(const APPMNGR_DATABASE *database, uint32_t *count);

/* The first application or type of this database that has the identifier, or null. */
const APPMNGR_APP *appmngr_databaseGetAppById(const APPMNGR_DATABASE *database, int32_t id);
const APPMNGR_APPTYPE *appmngr_databaseGetAppTypeById(const APPMNGR_DATABASE *database, int32_t id);

/* ---- Writing --------------------------------------------------------------------------------- */

/* Replaces the file at `path` by the list of applications: the version of the database, then a line
 * "id:name" for each. -1 when the file can't be made or closed: "open %s error!" or
 * "close %s error!" with the path. */
int appmngr_saveIdAndName(const char *path);

/* Writes the rules as JSON and flushes the file: {"dpi_rules":[...]}, an object for each record.
 * Addresses are the 32 bits as they lie in memory, as a signed number; texts are not escaped. -1 when
 * `file` is null or not all could be written. */
int appmngr_writeRulesJson(FILE *file);

/* Kept for compatibility: use appmngr_writeRulesJson. Writes the same to "database.json" in the current
 * folder, which is replaced, and says so on standard output, whether all could be written or not. When
 * the file can't be made, perror tells "open database.json failed!" and the process ends with 255. */
int appmngr_createJsonDb(void);

/* Writes the module's stamp, "number#YYYY-MM-DD hh:mm:ss", to `dst` (APPMNGR_STAMP_SIZE bytes hold
 * any). -1 when `dst` is null. */
int appmngr_getStampStr(char *dst);

/* ---- The database on the console ------------------------------------------------------------- */

/* For people to read; they change nothing. Without a database there are headings alone. */

/* Write to a file, such as stdout, and flush it. -1 when `file` is null or not all could be written. */
int appmngr_writeAppRules(FILE *file, int32_t id); /* the header and the rules of one application */
int appmngr_writeAppDb(FILE *file);                /* the header with its counts and all rules */
int appmngr_writeAppList(FILE *file);              /* all applications */
int appmngr_writeAppTypeList(FILE *file);          /* all types with their members */

/* Kept for compatibility: the same on standard output, whether all could be written or not. */
int appmngr_dumpAppRules(int32_t id); /* 0 */
int appmngr_dumpAppDb(void);          /* 0 */
int appmngr_dumpAppList(void);        /* what puts gave for the last line */
int appmngr_dumpAppTypeList(void);    /* the same */

/* The documents of a load, on standard output; 0. Their texts are there during a load alone. */
int appmngr_showAppDbXml(void);
int appmngr_showAppDescXml(void);

/* ---- The encrypted container ----------------------------------------------------------------- */

/* A database image under DES, sealed by an MD5 digest (docs/container-format.md). */
typedef struct {
    uint32_t kind;   /* not read */
    uint32_t length; /* of the container, in bytes */
    const void *data;
} APPMNGR_CONTAINER;

/* Decrypts the `srcLen` bytes of a container into `dst`, whose capacity is *dstLen, and checks the
 * digest. `dst` needs 8 bytes more than the container. Nothing is reported. When it fails *dstLen stays
 * as it was, and `dst` holds nothing of use.
 *   0      APPMNGR_SUCCESS, with the header and the data in `dst` and their length in *dstLen
 *   -8999  APPMNGR_ERR_INVALID_ARG: an argument is null
 *   -8992  APPMNGR_ERR_SIZE_SMALL: the capacity is too small
 *   -8980  APPMNGR_ERR_FILE_INVALID_LEN: the container is shorter than any is, or than its length field
 *          tells
 *   -8979  APPMNGR_ERR_FILE_CHECK: the digest does not match */
int32_t appmngr_db_openContainer(void *dst, uint32_t *dstLen, const void *src, uint32_t srcLen);

/* Kept for compatibility: use appmngr_db_openContainer. Does the same. 1 when it is done. Else, with a
 * line but for -4:
 *   -1  an argument is null: "Invalid param!"
 *   -2  a container of 16 bytes or less, or a capacity that is not larger than it: "invalid length:
 *       srcLen = [%d] *pDstlen = [%d]"; a length field that reaches beyond what was decrypted:
 *       "length field [%u] exceeds the [%u] bytes deciphered", *dstLen unchanged
 *   -3  nothing but a digest, or the capacity is too small: "quelm_des_min_do failed:
 *       length = [%d]"
 *   -4  the digest does not match; `dst` holds the decrypted bytes, *dstLen is set */
int32_t appmngr_decrypt(void *dst, uint32_t *dstLen, const void *src, uint32_t srcLen);

/* Decrypts a container into the module's work buffer, validates its header field by field and
 * makes a database image of it there. The buffer is obtained once and kept.
 *   0      APPMNGR_SUCCESS
 *   -1     no memory: "alloc memory fail"
 *   -8979  APPMNGR_ERR_FILE_CHECK: "appmngr_decrypt failed", "Magic code error!",
 *          "Reserved value error: %d, %d" (the word's offset, 28, and its value)
 *   -8980  APPMNGR_ERR_FILE_INVALID_LEN: "LEN ERROR AFTER appmngr_decrypt! ..."
 *   -8978  APPMNGR_ERR_FILE_INVALID_VERSION: "AppDesc Invalid version: [%s]!"; `versionOut`, which
 *          must not be null, gets the five characters "1.2.x" without a terminator
 *   -8991  APPMNGR_ERR_SIZE_LARGE: "the app db file is too long:%u" */
int32_t appmngr_db_writeAppDbFromDatabase(APPMNGR_CONTAINER container, char *versionOut);

/* Bytes of the header that appmngr_decrypt hands out before the data. */
enum { APPMNGR_CONTAINER_HEADER_SIZE = 16 };

/* Makes the container of a database image: what appmngr_db_writeAppDbFromDatabase takes, of version
 * 1.2.0. What follows the image's block is left out. `dst`, whose capacity is *dstLen, needs 64
 * bytes more than the image. Nothing is reported.
 *   0      APPMNGR_SUCCESS, with the length of the container in *dstLen
 *   -8999  APPMNGR_ERR_INVALID_ARG: an argument is null
 *   -8981  APPMNGR_ERR_FILE_INVALID_FORMAT: the image is shorter than its length field tells
 *   -8991  APPMNGR_ERR_SIZE_LARGE: the block is larger than an image holds
 *   -8992  APPMNGR_ERR_SIZE_SMALL: the capacity is too small */
int32_t appmngr_db_sealAppDb(void *dst, uint32_t *dstLen, const void *image, uint32_t imageLen);

/* 1 when a version text begins as the module's own does, to the dot after its minor number; else
 * 0, also when either is null, and else again with "1.2.x", five characters, in `versionOut`. */
int appmngr_db_checkVersion(const char *versionText, char *versionOut);

/* ---- The steps of a load --------------------------------------------------------------------- */

/* For tests and for those who put other elements into a database. A program that loads one needs none of
 * this. */

/* Obtains and zeroes the three buffers of a load. On failure none of them is left. */
int appmngr_file_alloc(void);

/* Frees them. Always 0. */
int appmngr_file_free(void);

/* Parses the text that the load has decompressed, counts, allocates and fills. -1 when the text is
 * refused (the XML library tells why) or the model can't be allocated. */
int appmngr_analyzeDbFile(void);

/* The byte-order mark at the start of `len` bytes: 0 none, 1 EF BB BF, 2 FF FE, 3 FE FF. */
int appmngr_getBomType(const unsigned char *text, int len);

/* The counting pass over the children of `node`, which stands at the dotted path `parentPath`.
 * Always 0. */
int appmngr_parseThroughXML(const char *parentPath, XMLP_NODE *node);

/* One row of a handler table: elements of this name, in any ASCII case, are given to the handler,
 * with the user data of the walk. A row without name ends a table. */
typedef struct {
    const char *name;
    int (*handler)(XMLP_NODE *node, void *param);
} APPMNGR_HANDLER_INFO;

/* What a load does with an element that it comes to. */
typedef enum {
    APPMNGR_VISIT_TAKEN,   /* it goes to its handlers, which may still refuse its text */
    APPMNGR_VISIT_EMPTY,   /* skipped: neither text nor children */
    APPMNGR_VISIT_UNKNOWN, /* skipped with all that is in it: no row of the table bears its name */
    APPMNGR_VISIT_MISPLACED, /* skipped with all that is in it: not where its handler acts */
} APPMNGR_VISIT;

/* Is told of an element before anything is done with it; it must not change the tree. Reports that
 * come before the next visit are about this element. */
typedef void (*APPMNGR_VISITOR)(const XMLP_NODE *node, APPMNGR_VISIT visit, void *context);

/* Sets the visitor of all loads from now on; null for none. */
void appmngr_setVisitor(APPMNGR_VISITOR visitor, void *context);

/* What becomes of an element that is taken, beside what is stored as it stands and what is reported. */
typedef enum {
    APPMNGR_EFFECT_ELSEWHERE,   /* it is read here, but the format has it elsewhere */
    APPMNGR_EFFECT_TOO_DEEP,    /* its children are passed over: beyond APPMNGR_LEVELS_MAX */
    APPMNGR_EFFECT_NO_ELEMENTS, /* a text where elements belong, which is dropped */
    APPMNGR_EFFECT_NO_RECORD,   /* a type that is passed over: all that were counted are there */
    APPMNGR_EFFECT_NO_ID,       /* an application or a type without identifier */
    APPMNGR_EFFECT_NO_TUPLE, /* a rule of which no tuple is taken; its features stay for the next */
    APPMNGR_EFFECT_REPEATED, /* it replaces what an earlier one in its parent has set */
    APPMNGR_EFFECT_NO_TEXT,  /* elements where a text belongs, which are passed over */
    APPMNGR_EFFECT_TOO_LONG, /* from APPMNGR_NODE_TEXT_SIZE bytes on a text counts as missing */
    APPMNGR_EFFECT_TEXT,     /* the first `size` bytes of its text are kept */
    APPMNGR_EFFECT_PORT,     /* `text` is a tuple's port, and no number from 0 to 65535 */
    APPMNGR_EFFECT_NOT_NUMBER,     /* an integer whose text is more or less than one of 32 bits */
    APPMNGR_EFFECT_IDENTIFIER,     /* `number` is the identifier of the record from now on */
    APPMNGR_EFFECT_LATE_IDENTIFIER /* the same, after lists that are filed under another one */
} APPMNGR_EFFECT_CODE;

/* Good until the listener returns. */
typedef struct {
    APPMNGR_EFFECT_CODE code;
    const XMLP_NODE *node; /* the element */
    int32_t number;        /* of an identifier, else 0 */
    const char *text;      /* the element's, or the part of it that is meant; without terminator */
    uint32_t size;         /* of that in bytes */
} APPMNGR_EFFECT;

/* Is told by handlers of what they do, between the visits of their element and of the next one, but of
 * APPMNGR_EFFECT_NO_TUPLE at the end of the rule. It must not change the tree. */
typedef void (*APPMNGR_EFFECT_LISTENER)(const APPMNGR_EFFECT *effect, void *context);

/* Sets the listener of all loads from now on; null for none. */
void appmngr_setEffectListener(APPMNGR_EFFECT_LISTENER listener, void *context);

/* Set and read the table that the walk uses; null between loads. The module's handlers do the same in
 * any table. */
int appmngr_setHandlerInfo(const APPMNGR_HANDLER_INFO *table);
APPMNGR_HANDLER_INFO *appmngr_getHandlerInfo(void);

/* Deals with every child of `node` as appmngr_childnode_handler does, until one is refused. Always 0.
 * With the module's own table nesting beyond 64 levels of the walk is passed over. With any other the
 * whole tree is walked, on no more stack, and beyond 64 levels in memory of its own: "malloc memory
 * faild." where there is none, and the children of that element are passed over. */
int appmngr_xmlnode_handler(XMLP_NODE *node, void *param);

/* Gives an element to the handlers of all rows that bear its name. An element with neither text nor
 * children is passed over. -1 when no table is set. */
int appmngr_childnode_handler(XMLP_NODE *node, void *param);

#ifdef __cplusplus
}
#endif

#pragma GCC visibility pop

#endif
