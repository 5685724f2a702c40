/*
 * quelm: DES and MD5 operations on buffers, and a sealed form of files built on them.
 *
 * All lengths and capacities are signed 32-bit numbers of bytes; a negative length means no bytes.
 * But for who takes reports nothing is kept between calls, so calls may run on several
 * threads at once; 32 KiB of stack are enough for each.
 *
 * DES (FIPS 46-3) and MD5 (RFC 1321) protect nothing of value any more. They are here because the
 * formats that the device reads are made with them.
 */
#ifndef VELDA_CRYPTO_QUELM_H
#define VELDA_CRYPTO_QUELM_H

#include <stdint.h>

/* Shared libraries show what stands here and nothing else. */
#pragma GCC visibility push(default)

#ifdef __cplusplus
extern "C" {
#endif

enum { QUELM_DES_BLOCK_SIZE = 8, QUELM_DES_KEY_SIZE = 8, QUELM_MD5_SIZE = 16 };

/* The initialiser of the key that is the same in every device: that of sealed files and of the database
 * module's container. It keeps out accidents, not people. */
#define QUELM_DEVICE_KEY \
    { 0x5C, 0x1E, 0x93, 0xA7, 0x02, 0x6B, 0xD8, 0xF4 }

/* ---- Reports --------------------------------------------------------------------------------- */

/* Takes a report, the text of one line with its line end, and the context given with the function. */
typedef void (*QUELM_REPORT)(const char *text, void *context);

/* Sends the reports of quelm_md5_des_file to a function from now on, or, with null, as at the start,
 * to standard error. */
void quelm_setReport(QUELM_REPORT report, void *context);

/* The parts of a report, good until the function that takes it returns. */
typedef struct {
    const char *function; /* the one that reports */
    int number;           /* the system's reason, a value of errno */
    const char *message;  /* what failed and the reason in words, without line end */
    const char *text;     /* the line, as a QUELM_REPORT gets it */
} QUELM_REPORT_RECORD;

typedef void (*QUELM_REPORT_CALLBACK)(const QUELM_REPORT_RECORD *record, void *context);

/* The same in parts. There is one taker of reports: this function and quelm_setReport each replace
 * what the other has set. */
void quelm_setReportRecord(QUELM_REPORT_CALLBACK report, void *context);

/* ---- DES (FIPS 46-3) ------------------------------------------------------------------------- */

/* A key is 8 bytes, used as they are: parity bits are ignored, weak keys accepted. `encrypt` is not
 * 0 to encipher and 0 to decipher. Key schedules and blocks in work are wiped before a call
 * returns. */

/* ECB mode. Enciphering completes a short last block with zero bytes; deciphering takes whole
 * blocks only and leaves the rest alone. `output` may be `input`. Gives the number of bytes
 * written, a multiple of 8. 0, with nothing written, when input, output or key is null or when the
 * output has not 8 bytes more room than the input is long, in either direction. */
int32_t quelm_des_min_do(const void *input, int32_t inputLength, void *output,
                         int32_t outputCapacity, const void *key, int encrypt);

/* PCBC mode: each block is chained with the plaintext and the ciphertext of the one before, the
 * first with the 8 bytes of `vector`, which is left as it is. Enciphering completes a short last
 * block with zero bytes, so the output must hold the length rounded up to a multiple of 8;
 * deciphering takes whole blocks only. Nothing is checked: no argument may be null. Always 1. */
int32_t quelm_des_pcbc_do(const void *input, void *output, int32_t length, const void *key,
                          const void *vector, int encrypt);

/* ECB mode in place. Gives the length; 0, with nothing changed, when it is no multiple of 8 or
 * buffer or key is null. */
int32_t quelm_des_inplace_do(void *buffer, int32_t length, const void *key, int encrypt);

/* ---- MD5 (RFC 1321) and HMAC-MD5 (RFC 2104) -------------------------------------------------- */

/* Writes the 16-byte MD5 of the data. */
void quelm_md5_sum(void *digest, const void *data, int32_t length);

/* 1 when the MD5 of the data is the 16 bytes at `expected`, else 0. */
int quelm_md5_check(const void *expected, const void *data, int32_t length);

/* Writes the 16-byte HMAC-MD5 of the text under a key of any length. */
void quelm_hmac_md5(const void *text, int32_t textLength, const void *key, int32_t keyLength,
                    void *digest);

/* ---- Sealed buffers and files ---------------------------------------------------------------- */

/* Enciphering writes the MD5 of the input, then the input in DES-ECB, its last block completed with
 * zero bytes: 16 + 8 * ceil(length / 8) bytes. Deciphering skips the 16 bytes of the digest and
 * writes the whole blocks behind it; the digest is not held against them, since it covers the text
 * without its zero fill, whose length is not recorded.
 * Gives the number of bytes written. -1, with nothing written, when the output is too small: it takes
 * the input's length and 24 more to encipher, 8 less to decipher; also when there is nothing to
 * encipher from or to. An input too short to hold a digest deciphers to 0 bytes, and where
 * quelm_des_min_do refuses a null argument there is no ciphertext. */
int32_t quelm_md5_des_do(const void *input, int32_t inputLength, void *output,
                         int32_t outputCapacity, const void *key, int encrypt);

/* The same from file to file, under QUELM_DEVICE_KEY, for inputs of up to 16,382 bytes. 0,
 * also when the output could not be written whole; -1 when a file can't be opened or read, memory
 * runs out or the input is larger (silently). What failed is reported with the system's reason: "open
 * input file", "quelm_md5_des_file" for memory, of which it takes 64 KiB and wipes them, "read", "open
 * output file", "write". */
int quelm_md5_des_file(const char *inputPath, const char *outputPath, int encrypt);

#ifdef __cplusplus
}
#endif

#pragma GCC visibility pop

#endif
