/* Splits a line into words and looks for protocols among them. */
#include "common/common.h"

#include <stdio.h>

/* Words that are no protocol are reported; here nobody needs to see that. */
static void ignore(const char *text, void *context) {
    (void)text;
    (void)context;
}

int main(void) {
    enum { WORDS_MAX = 8 };
    char line[] = "tcp and UDP";
    char *words[WORDS_MAX];
    appmngr_setReport(ignore, NULL);
    int count = appmngr_string_makeSubStrByChar(line, ' ', WORDS_MAX, words);
    for (int i = 0; i < count; ++i) {
        int number = appmngr_utils_str2proto(words[i]);
        if (number != APPMNGR_PROTO_UNKNOWN) {
            printf("%s is %d\n", words[i], number);
        }
    }
    return count < 0;
}
