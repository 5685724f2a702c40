/*
 * The database module's state and inner steps: for the module itself and for tests.
 */
#ifndef VELDA_APPMNGR_APPMNGR_INTERNAL_H
#define VELDA_APPMNGR_APPMNGR_INTERNAL_H

#include "appmngr/appmngr.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- State (state.cpp) ----------------------------------------------------------------------- */

/* Sizes of the load's buffers and the place of the database in the image. */
typedef struct {
    uint32_t appDbXmlSize;
    uint32_t appDescXmlSize;
    uint32_t appDbOffset;
    uint32_t appDbEndOffset;
} APPMNGR_DB_LAYOUT;

extern APPMNGR_DB_LAYOUT g_appmngr_dbLayout;

extern const char *g_appmngr_dbPath;

/* The buffers of a load: the image, the database text and the description text. */
extern unsigned char *g_appmngr_flashBuf;
extern char *g_appmngr_appDbXml;
extern char *g_appmngr_appDescXml;

/* Where containers are decrypted; null before the first one, then kept. */
extern unsigned char *g_appmngr_decryptBuf;

/* The model. */
extern APPMNGR_APPDB g_appmngr_appDb;
extern APPMNGR_APP *g_appmngr_app;
extern APPMNGR_APPDNS g_appmngr_appDns;
extern APPMNGR_APPDESC g_appmngr_appDesc;
extern APPMNGR_COUNTER g_appmngr_counter;
extern int32_t g_appmngr_appTypeId[APPMNGR_APP_TYPES_MAX];

/* The one scratch for the text of an element. */
extern char g_appmngr_nodeValue[APPMNGR_NODE_TEXT_SIZE];

/* The rows of the database document (elements.cpp), and the table that the walk uses now. */
extern const APPMNGR_HANDLER_INFO g_appmngr_nodeHandlers[];
extern APPMNGR_HANDLER_INFO *g_appmngr_handlerInfo;

/* Who is told what handlers do silently; null for nobody. */
extern APPMNGR_EFFECT_LISTENER g_appmngr_effectListener;
extern void *g_appmngr_effectListenerContext;

/* ---- Image ----------------------------------------------------------------------------------- */

int _appmngr_readFromDatabase(void);

/* Reads `size` bytes at `offset` of the database file. A short read is no failure; -1 when `buf` is
 * null or the file can't be opened. */
int _appmngr_readDbFile(long offset, uint32_t size, void *buf);

/* Reads the image and decompresses the text. */
int _appmngr_readAppDb(void);

/* ---- Model ----------------------------------------------------------------------------------- */

/* One step of the counting pass; -1 when the text of an application type's id can't be taken. */
int _appmngr_parseNode(XMLP_NODE *node, const char *parentPath);

/* Sizes the arrays by the counts, zeroed. -1, with the model left empty, when there are no tuples,
 * types or applications or memory runs out. */
int _appmngr_alloc_for_appdb(void);
void _appmngr_free_for_appdb(void);

int _appmngr_alloc_for_appdesc(void);
void _appmngr_free_for_appdesc(void);

/* The first record with this identifier, or null. */
APPMNGR_APPTYPE *_appmngr_getAppTypeBydId(int32_t id);
APPMNGR_APP *_appmngr_getAppById(int32_t id);

/* ---- Texts of elements ----------------------------------------------------------------------- */

/* The text of an element in g_appmngr_nodeValue, until the next call. Null for a null node or a
 * text of 512 bytes or more. */
char *_appmngr_getNodeValue(const XMLP_NODE *node);

/* Gives such a text back; it does nothing. */
void _appmngr_putNodeValue(const char *text);

/* The text as an integer, or as a text cut to `size` - 1 bytes and zero-filled. -1, with the
 * destination untouched, when it is missing. */
int _appmngr_getNodeInt(const XMLP_NODE *node, int32_t *out);
int _appmngr_getNodeStr(const XMLP_NODE *node, char *dst, uint32_t size);

/* ---- Handlers -------------------------------------------------------------------------------- */

/* `param` is 0 or 1, which of two records a leaf belongs to (application or type, originating or
 * reply direction), or the address of the tuple counter of the rule being read. */
int _appmngr_xmlnode_handler_pass(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_ver(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_proModel(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_expired(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_appList(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_app(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_id(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_name(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_visible(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_typeid(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_rule(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_tuple(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_ori(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_rep(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_enable(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_start(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_end(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_minlength(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_dpiType(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_dpiCode(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_appTypeList(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_appType(XMLP_NODE *node, void *param);
int _appmngr_xmlnode_handler_dnsKw(XMLP_NODE *node, void *param);

#ifdef __cplusplus
}
#endif

#endif
