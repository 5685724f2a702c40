/* Uses every library beside headers of its own that have the same names. */
#include "common/common.h"

#include <velda-db/appmngr/appmngr.h>
#include <velda-db/common/common.h>
#include <velda-db/common/version.h>
#include <velda-db/crypto/quelm.h>
#include <velda-db/xmlp/xmlp.h>

#include <stdio.h>
#include <string.h>

int main(void) {
    unsigned char digest[QUELM_MD5_SIZE];
    quelm_md5_sum(digest, "", 0);
    appmngr_dbReInit();
    XMLP_DOC *doc = xmlp_loadDoc("<a/>", 4, 0);
    if (digest[0] != 0xd4 || doc == NULL || strcmp(velda_version(), VELDA_VERSION) != 0) {
        return 1;
    }
    xmlp_releaseDoc(doc);
    printf("%s %s\n", FIRMWARE_NAME, VELDA_VERSION);
    return 0;
}
