// What the load shares with the other operations of the module. It stands apart from the load so that
// a program that only dumps or deciphers does not link the decoder.

#include "appmngr/appmngr_internal.h"

APPMNGR_DB_LAYOUT g_appmngr_dbLayout = {APPMNGR_DB_XML_SIZE, APPMNGR_DESC_XML_SIZE, 0,
                                        APPMNGR_IMAGE_SIZE};
unsigned char *g_appmngr_flashBuf;
char *g_appmngr_appDbXml;
char *g_appmngr_appDescXml;
