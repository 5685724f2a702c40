/* Reads an image and decodes its block: no more than has to be done. */
#ifndef VELDA_BENCH_IMAGE_H
#define VELDA_BENCH_IMAGE_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum { IMAGE_TEXT_ROOM = 204800 };

/* Decodes into `text`, which has IMAGE_TEXT_ROOM bytes. The size of the text; 0 when anything fails. */
size_t readImage(const char *path, uint8_t *text);

#ifdef __cplusplus
}
#endif

#endif
