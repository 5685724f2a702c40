#include "bench/programs/image.h"

#include <fcntl.h>
#include <lzma.h>
#include <unistd.h>

/* Behind the length of the block and its flag the image goes on like an .lzma file. */
enum { imageSize = 65536, streamAt = 5 };

size_t readImage(const char *path, uint8_t *text) {
    static uint8_t image[imageSize];
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    const ssize_t got = read(file, image, sizeof image);
    close(file);
    lzma_stream stream = LZMA_STREAM_INIT;
    if (got <= streamAt || lzma_alone_decoder(&stream, UINT64_MAX) != LZMA_OK) {
        return 0;
    }
    stream.next_in = image + streamAt;
    stream.avail_in = (size_t)got - streamAt;
    stream.next_out = text;
    stream.avail_out = IMAGE_TEXT_ROOM;
    const lzma_ret result = lzma_code(&stream, LZMA_FINISH);
    lzma_end(&stream);
    return result == LZMA_STREAM_END ? (size_t)stream.total_out : 0;
}
