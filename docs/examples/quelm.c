/* Seals a text, opens it again and prints its MD5 digest. */
#include "crypto/quelm.h"

#include <stdio.h>

int main(void) {
    static const char key[QUELM_DES_KEY_SIZE] = {1, 2, 3, 4, 5, 6, 7, 8};
    static const char text[16] = "sixteen bytes..."; /* whole blocks, so nothing is filled up */
    unsigned char sealed[sizeof text + 24];
    char opened[sizeof sealed];
    int32_t length = quelm_md5_des_do(text, sizeof text, sealed, sizeof sealed, key, 1);
    int32_t openedLength = quelm_md5_des_do(sealed, length, opened, sizeof opened, key, 0);
    if (length < 0 || openedLength < 0 || !quelm_md5_check(sealed, opened, openedLength)) {
        return 1;
    }
    for (int i = 0; i < QUELM_MD5_SIZE; ++i) {
        printf("%02x", sealed[i]);
    }
    printf(" %.*s\n", (int)openedLength, opened);
    return 0;
}
