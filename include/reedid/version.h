/**
 * @file version.h
 * version of the library and the mark of its exported names. */
#ifndef REEDID_VERSION_H
#define REEDID_VERSION_H

/** Changes when programs must be built anew; the SONAME. */
#define REEDID_VERSION_MAJOR 0
/** Changes with additions. */
#define REEDID_VERSION_MINOR 1
/** Changes with corrections. */
#define REEDID_VERSION_PATCH 0
/** The version as text. */
#define REEDID_VERSION_STRING "0.1.0"
/** One number to compare: major * 10000 + minor * 100 + patch. */
#define REEDID_VERSION (REEDID_VERSION_MAJOR * 10000 + REEDID_VERSION_MINOR * 100 + REEDID_VERSION_PATCH)

#if defined(__GNUC__)
#define REEDID_API __attribute__((visibility("default")))
#else
#define REEDID_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** The version of the library that is linked, as text ("0.1.0"); static storage, never null. */
REEDID_API const char* reedid_version(void);

#ifdef __cplusplus
}
#endif

#endif
