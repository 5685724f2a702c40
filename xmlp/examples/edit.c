/*
 * Loads a configuration document, edits it and writes it back:
 *
 *     edit <XML>      prints the edited document
 *
 * The document is one like
 *
 *     <config><host>gateway</host><servers><item port="53">192.0.2.1</item></servers></config>
 */
#include "xmlp/xmlp.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* A file's bytes with the NUL behind them that a parse wants; null when it can't be read. */
static char *read_text(const char *path, uint32_t *length) {
    enum { SIZE_MAX_READ = 1 << 20 };
    FILE *file = fopen(path, "rb");
    char *text = file != NULL ? malloc(SIZE_MAX_READ + 1) : NULL;
    if (text != NULL) {
        *length = (uint32_t)fread(text, 1, SIZE_MAX_READ, file);
        text[*length] = '\0';
    }
    if (file != NULL) {
        fclose(file);
    }
    return text;
}

/* Every call tells on standard output what it refuses, so it is enough to stop. */
static int edit(XMLP_DOC *doc) {
    if (xmlp_setValue(doc, "/config/host", "router", 6) != 0) {
        return -1;
    }
    char port[] = "5353";
    const XMLP_ATTR_PAIR attrs[] = {{"port", port}};
    const XMLP_ITEM server = {1, attrs, 9, "192.0.2.2"};
    if (xmlp_addItem(doc, "/config/servers", &server, XMLP_POS_LAST, 1) != 1) {
        return -1;
    }
    return xmlp_add(doc, "/config", XMLP_POS_LAST, "checked", NULL, NULL, 0);
}

int main(int argc, char **argv) {
    uint32_t length = 0;
    char *text = argc == 2 ? read_text(argv[1], &length) : NULL;
    if (text == NULL) {
        fputs("Usage: edit <XML>\n", stderr);
        return 1;
    }
    XMLP_DOC *doc = xmlp_loadDoc(text, length, 0);
    free(text);
    if (doc == NULL) {
        return 1;
    }
    char *written = edit(doc) == 0 ? xmlp_dumpDoc(doc, 0, &length) : NULL;
    xmlp_releaseDoc(doc);
    if (written == NULL) {
        return 1;
    }
    fputs(written, stdout);
    free(written);
    return 0;
}
