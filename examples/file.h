/* Whole files in and out, for the examples. An image has at most 255 blocks of 128 bytes or 255 sections of 256. */
#ifndef EXAMPLES_FILE_H
#define EXAMPLES_FILE_H

#include <reedid/reedid.h>
#include <stdio.h>

enum { kMaxImage = 65280 };

/* Opens the image in a file; null after a message. Close it with EDID_Close. */
static inline EdidHandle* OpenFile(const char* path) {
  static uint8_t bytes[kMaxImage];
  FILE* file = fopen(path, "rb");
  if (file == NULL) return perror(path), NULL;
  const size_t size = fread(bytes, 1, sizeof bytes, file);
  fclose(file);
  return EDID_Open(bytes, (uint32_t)size);
}

/* Writes the image to a file, with right counts and checksums; 0, or 1 after a message: an exit code. */
static inline int WriteFile(EdidHandle* edid, const char* path) {
  static uint8_t bytes[kMaxImage];
  const int32_t size = EDID_GenerateImage(edid, bytes, sizeof bytes);
  if (size < 0) return 1;
  FILE* file = fopen(path, "wb");
  if (file == NULL) return perror(path), 1;
  const int complete = fwrite(bytes, 1, (size_t)size, file) == (size_t)size;
  if (fclose(file) != 0 || !complete) return perror(path), 1;
  return 0;
}

#endif
