/* Changes one element of a document and prints the document. */
#include "xmlp/xmlp.h"

#include <stdio.h>
#include <stdlib.h>

int main(void) {
    static const char text[] = "<config><host>gateway</host><port>53</port></config>";
    XMLP_DOC *doc = xmlp_loadDoc(text, sizeof text - 1, 0);
    if (doc == NULL) {
        return 1; /* why is told on standard output */
    }
    char *written = NULL;
    uint32_t length = 0;
    if (xmlp_setValue(doc, "/config/host", "router", 6) == 0) {
        written = xmlp_dumpDoc(doc, 1, &length);
    }
    xmlp_releaseDoc(doc);
    if (written == NULL) {
        return 1;
    }
    printf("%s\n", written);
    free(written);
    return 0;
}
