/* velda-bench-decode IMAGE: the part of the work that is liblzma's. */
#include "bench/programs/image.h"

int main(int argc, char **argv) {
    static uint8_t text[IMAGE_TEXT_ROOM];
    return argc == 2 && readImage(argv[1], text) > 0 ? 0 : 1;
}
