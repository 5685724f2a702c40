/*
 * Common utilities of the database module: result codes, text helpers, protocol names, the hex dump
 * and sets of application identifiers. Plain functions without state; what they print goes to
 * standard output.
 */
#ifndef VELDA_COMMON_COMMON_H
#define VELDA_COMMON_COMMON_H

#include <stdint.h>
#include <stdio.h>

/* Shared libraries show what stands here and nothing else. */
#pragma GCC visibility push(default)

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Version --------------------------------------------------------------------------------- */

/* The version of the library in use, such as "1.2.3". A constant text. What a program is compiled
 * against is told by the macros of common/version.h, which the build makes. */
const char *velda_version(void);

/* ---- Result codes ---------------------------------------------------------------------------- */

/* Every code with its value, written once: the enumeration and appmngr_errStr both come from here.
 * -8988 and -8982 are not assigned. */
#define APPMNGR_RESULT_CODES(X)                                                              \
    X(APPMNGR_SUCCESS, 0)                      /* done */                                    \
    X(APPMNGR_ERR_FAILED, -9000)               /* failed, no closer reason */                \
    X(APPMNGR_ERR_INVALID_ARG, -8999)          /* an argument is null or out of range */     \
    X(APPMNGR_ERR_NO_MEMORY, -8998)            /* memory could not be obtained */            \
    X(APPMNGR_ERR_NOT_FOUND, -8997)            /* no such record */                          \
    X(APPMNGR_ERR_OUT_OF_BOUNDARY, -8996)      /* an index lies outside its array */         \
    X(APPMNGR_ERR_NOT_INIT, -8995)             /* used before it was set up */               \
    X(APPMNGR_ERR_EXIST, -8994)                /* the record exists already */               \
    X(APPMNGR_ERR_USING, -8993)                /* the record is in use */                    \
    X(APPMNGR_ERR_SIZE_SMALL, -8992)           /* a size is too small */                     \
    X(APPMNGR_ERR_SIZE_LARGE, -8991)           /* a size is too large */                     \
    X(APPMNGR_ERR_ITEM_FULL, -8990)            /* no room for another record */              \
    X(APPMNGR_ERR_ALLOC_UKEY, -8989)           /* no user key could be given out */          \
    X(APPMNGR_ERR_REVISE, -8987)               /* a record could not be revised */           \
    X(APPMNGR_ERR_ANALYZE, -8986)              /* the database text could not be analysed */ \
    X(APPMNGR_ERR_KERNEL, -8985)               /* the kernel refused a request */            \
    X(APPMNGR_ERR_CONFIG, -8984)               /* the configuration is not usable */         \
    X(APPMNGR_ERR_LOAD, -8983)                 /* the database could not be loaded */        \
    X(APPMNGR_ERR_FILE_INVALID_FORMAT, -8981)  /* a database file has the wrong form */      \
    X(APPMNGR_ERR_FILE_INVALID_LEN, -8980)     /* a database file's length field is wrong */ \
    X(APPMNGR_ERR_FILE_CHECK, -8979)           /* a database file fails its check */         \
    X(APPMNGR_ERR_FILE_INVALID_VERSION, -8978) /* a database file's version is refused */    \
    X(APPMNGR_ERR_FILE_SAVE_ERROR, -8977)      /* a database file could not be saved */      \
    X(APPMNGR_ERR_FILE_UNKNOWN_ERROR, -8976)   /* a database file is unusable, reason unknown */

#define APPMNGR_RESULT_CODE_ENUMERATOR(name, value) name = (value),
enum { APPMNGR_RESULT_CODES(APPMNGR_RESULT_CODE_ENUMERATOR) };
#undef APPMNGR_RESULT_CODE_ENUMERATOR

/* The name of a result code, such as "APPMNGR_ERR_FILE_CHECK" for -8979; "ERROR NOT IN LIST" for a
 * number that is none. A constant text, never to be freed. */
const char *appmngr_errStr(int16_t code);

/* ---- Reports --------------------------------------------------------------------------------- */

/* Takes a report of these utilities or of the database module: its text as it would have been
 * printed, line ends included, and the context given with the function. Texts of 1024 bytes and more
 * arrive cut. */
typedef void (*APPMNGR_REPORT)(const char *text, void *context);

/* Sends all reports to a function from now on, or, with null, as at the start, to standard output and
 * those that tell the system's reason to standard error. What a call is asked to print, such as a
 * dump, is no report and stays on standard output. */
void appmngr_setReport(APPMNGR_REPORT report, void *context);

/* The parts of a report, good until the function that takes it returns. */
typedef struct {
    const char *function; /* the one that reports; null for a notice or a reason of the system's */
    int number;           /* of the place in it that reports; 0 without function */
    const char *message;  /* what it has to say, without line end */
    const char *text;     /* all of that, as an APPMNGR_REPORT gets it */
} APPMNGR_REPORT_RECORD;

typedef void (*APPMNGR_REPORT_CALLBACK)(const APPMNGR_REPORT_RECORD *record, void *context);

/* The same in parts. There is one taker of reports: this function and appmngr_setReport each replace
 * what the other has set. */
void appmngr_setReportRecord(APPMNGR_REPORT_CALLBACK report, void *context);

/* Reports one failure of the database module, "[Error](function) number: " followed by the
 * formatted message. The message brings its own line end. `number` identifies the report site. */
void appmngr_report(const char *function, int number, const char *format, ...)
    __attribute__((format(printf, 3, 4)));

/* Reports a formatted text as it is. */
void appmngr_notice(const char *format, ...) __attribute__((format(printf, 1, 2)));

/* Reports a text with the reason that errno tells, as perror prints them. */
void appmngr_systemError(const char *text);

/* ---- Texts ----------------------------------------------------------------------------------- */

/* Compares two NUL-terminated texts byte by byte, ASCII capitals folded to small letters and
 * nothing else folded. 0 when equal, else the difference of the first two bytes that differ.
 * Neither may be null. */
int appmngr_string_caseCmp(const char *a, const char *b);

/* As appmngr_string_caseCmp, and 0x7FFFFFFF when either text is null. */
int appmngr_string_safeCaseCmp(const char *a, const char *b);

/* 1 when two texts are equal byte for byte, else 0. A null text is reported and gives 0. */
int appmngr_string_match(const char *a, const char *b);

/* Splits `str` in place into the tokens that `ch`, TAB, CR and LF separate (runs count as one
 * separator; leading and trailing ones yield nothing). A NUL as `ch` ends that set before it begins:
 * nothing separates then, and a text that is not empty is one token. Stores the tokens in `out`, then
 * a null pointer, and returns how many there are.
 * At most maxNum - 1 tokens are accepted and `out` needs room for maxNum pointers; as soon as
 * maxNum tokens are stored that is reported and gives -1. A null `str` or `out`, or a maxNum that
 * is not positive, is reported and gives -1. */
int appmngr_string_makeSubStrByChar(char *str, char ch, int maxNum, char **out);

/* Copies `src` to `dst` with 0x01 for a space, 0x02 for a double quote and 0x03 for a backslash.
 * `dst` needs the length of `src` plus one. 0, or -1 when either is null. */
int appmngr_string_escape(char *dst, const char *src);

/* ---- Protocols ------------------------------------------------------------------------------- */

enum { APPMNGR_PROTO_UNKNOWN = 256 };

/* The number of a protocol name in any ASCII case: "tcp" 6, "udp" 17, "icmp" 1. Any other name, or
 * null, prints "Unknown protocol!" and gives APPMNGR_PROTO_UNKNOWN. */
int appmngr_utils_str2proto(const char *name);

/* The name of protocol 6, 17 or 1; "unknown" for any other number. A constant text. */
const char *appmngr_utils_proto2str(int proto);

/* ---- Hex dump -------------------------------------------------------------------------------- */

/* Prints a buffer's address and length and its bytes in hexadecimal, sixteen to a line. A null
 * buffer gets a notice; a length of 0 or below prints no bytes. */
void appmngr_utils_dumpBuf(const unsigned char *buf, int len);

/* Writes the same to a file and does not flush it. -1 when `file` is null or in error, else 0. */
int appmngr_utils_writeBuf(FILE *file, const unsigned char *buf, int len);

/* ---- Sets of application identifiers --------------------------------------------------------- */

enum { APPMNGR_APP_BITMAP_BITS = 4096, APPMNGR_APP_BITMAP_WORDS = APPMNGR_APP_BITMAP_BITS / 32 };

/* Bit n, in word n / 32 at position n % 32, stands for the application whose identifier is n. */
typedef uint32_t APPMNGR_APP_BITMAP[APPMNGR_APP_BITMAP_WORDS];

/* Each takes a set as the pointer to its 128 words. An n of 4096 or more lies outside every set:
 * setting and clearing it does nothing, testing it gives 0. */
void appmngr_bitmap_set(uint32_t *set, uint32_t n);
void appmngr_bitmap_clear(uint32_t *set, uint32_t n);
int appmngr_bitmap_test(const uint32_t *set, uint32_t n);
int appmngr_bitmap_isEmpty(const uint32_t *set);             /* 1 when no bit is set, else 0 */
void appmngr_bitmap_or(uint32_t *dst, const uint32_t *src);  /* dst becomes dst OR src */
void appmngr_bitmap_and(uint32_t *dst, const uint32_t *src); /* dst becomes dst AND src */

#ifdef __cplusplus
}
#endif

#pragma GCC visibility pop

#endif
