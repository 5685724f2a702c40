// All that the module keeps from one call to the next, and that more than one of its files uses. What a
// single file keeps for itself, such as the levels of the walk, stands there.
//
// Nothing else is defined here, so that a program that only dumps or decrypts does not link the load.

#include "appmngr/appmngr_internal.h"

// ---- The load ------------------------------------------------------------------------------------

APPMNGR_DB_LAYOUT g_appmngr_dbLayout = {APPMNGR_DB_XML_SIZE, APPMNGR_DESC_XML_SIZE, 0,
                                        APPMNGR_IMAGE_SIZE};
const char *g_appmngr_dbPath;
unsigned char *g_appmngr_flashBuf;
char *g_appmngr_appDbXml;
char *g_appmngr_appDescXml;
unsigned char *g_appmngr_decryptBuf;

// ---- The model -----------------------------------------------------------------------------------

APPMNGR_APPDB g_appmngr_appDb;
APPMNGR_APP *g_appmngr_app;
APPMNGR_APPDNS g_appmngr_appDns;
APPMNGR_APPDESC g_appmngr_appDesc;
APPMNGR_COUNTER g_appmngr_counter;
int32_t g_appmngr_appTypeId[APPMNGR_APP_TYPES_MAX];

// ---- The walk ------------------------------------------------------------------------------------

char g_appmngr_nodeValue[APPMNGR_NODE_TEXT_SIZE];
APPMNGR_HANDLER_INFO *g_appmngr_handlerInfo;
APPMNGR_EFFECT_LISTENER g_appmngr_effectListener;
void *g_appmngr_effectListenerContext;
