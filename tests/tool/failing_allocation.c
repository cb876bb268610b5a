/* Loaded in front of the tool: the allocation with the number in FAIL_ALLOCATION fails, and with FAIL_ALL_BEHIND all
 * behind it. How many there were stands in the file ALLOCATIONS at the end. */
#include <dlfcn.h>
#include <errno.h>
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>

static unsigned long count, failing;
static int all_behind;

static int fails(void) {
  ++count;
  if (failing == 0 || count < failing || (count > failing && !all_behind)) return 0;
  errno = ENOMEM;
  return 1;
}

__attribute__((constructor)) static void begin(void) {
  const char* number = getenv("FAIL_ALLOCATION");
  all_behind = getenv("FAIL_ALL_BEHIND") != NULL;
  count = 0;
  failing = number != NULL ? strtoul(number, NULL, 10) : 0;
}

__attribute__((destructor)) static void end(void) {
  const char* name = getenv("ALLOCATIONS");
  const unsigned long counted = count;
  FILE* file = NULL;
  failing = 0;
  if (name == NULL || (file = fopen(name, "w")) == NULL) return;
  fprintf(file, "%lu\n", counted);
  fclose(file);
}

void* malloc(size_t size) {
  static void* (*next)(size_t);
  if (next == NULL) *(void**)&next = dlsym(RTLD_NEXT, "malloc");
  return fails() ? NULL : next(size);
}

void* calloc(size_t items, size_t size) {
  static void* (*next)(size_t, size_t);
  if (next == NULL) *(void**)&next = dlsym(RTLD_NEXT, "calloc");
  return fails() ? NULL : next(items, size);
}

void* realloc(void* memory, size_t size) {
  static void* (*next)(void*, size_t);
  if (next == NULL) *(void**)&next = dlsym(RTLD_NEXT, "realloc");
  return fails() ? NULL : next(memory, size);
}
