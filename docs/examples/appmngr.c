/* Loads a database image, writes the list of its applications, as velda-db-parser does, and holds the
 * database itself. */
#include "appmngr/appmngr.h"

#include <stdio.h>

/* Reports of the database module come in parts, those of the XML library as texts. */
static void tell(const APPMNGR_REPORT_RECORD *report, void *context) {
    fprintf(context, "%s (%d)\n", report->message, report->number);
}

static void tellText(const char *text, void *context) {
    fputs(text, context);
}

int main(int argc, char **argv) {
    if (argc != 3) {
        fprintf(stderr, "Usage: %s <DB_FILE> <OUTPUT_FILE>\n", argv[0]);
        return 1;
    }
    appmngr_setReportRecord(tell, stderr);
    xmlp_setReport(tellText, stderr);
    if (appmngr_checkDbPath(argv[1]) != 0 || appmngr_load_database() != 0) {
        return 1;
    }
    int status = appmngr_saveIdAndName(argv[2]);
    /* From here on the module can load another database beside this one. */
    APPMNGR_DATABASE *database = appmngr_takeDatabase();
    if (database == NULL) {
        return 1;
    }
    const APPMNGR_APP *app = appmngr_databaseGetAppById(database, 1);
    fprintf(stderr, "version %s; application 1 is %s\n", appmngr_databaseGetAppDb(database)->ver,
            app != NULL ? app->name : "not there");
    appmngr_freeDatabase(database);
    return status == 0 ? 0 : 1;
}
