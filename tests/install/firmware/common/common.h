/* A firmware's own header of that name. */
#define FIRMWARE_NAME "firmware"
