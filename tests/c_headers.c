/* Compiled, not run: every public header and internal declaration is plain C11. */
#include "appmngr/appmngr_internal.h"
#include "common/common.h"
#include "crypto/quelm.h"
#include "xmlp/xmlp_internal.h"

_Static_assert(sizeof(APPMNGR_APP_BITMAP) == 512, "a set has one bit for each of 4096 identifiers");
_Static_assert(sizeof(XMLP_ATTR) == 3 * sizeof(void *), "attribute records are packed");
_Static_assert(sizeof(XMLP_NODE) == 8 * sizeof(void *) + 8, "node records are packed");
