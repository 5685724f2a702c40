/* Loads a database image and writes the list of its applications, as velda-db-parser does. */
#include "appmngr/appmngr.h"

#include <stdio.h>

/* Reports go to standard error instead of standard output. */
static void tell(const char *text, void *context) {
    fputs(text, context);
}

int main(int argc, char **argv) {
    if (argc != 3) {
        fprintf(stderr, "Usage: %s <DB_FILE> <OUTPUT_FILE>\n", argv[0]);
        return 1;
    }
    appmngr_setReport(tell, stderr);
    xmlp_setReport(tell, stderr);
    int status = -1;
    if (appmngr_checkDbPath(argv[1]) == 0 && appmngr_load_database() == 0) {
        status = appmngr_saveIdAndName(argv[2]);
    }
    appmngr_dbReInit();
    return status == 0 ? 0 : 1;
}
