#include "reedid/version.h"

const char* reedid_version(void) {
  return REEDID_VERSION_STRING;
}
