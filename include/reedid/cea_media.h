/**
 * @file cea_media.h
 * data blocks of CTA-861 about audio formats by name, wanted video formats, InfoFrames and speakers in a room. Getters
 * and setters are as in reedid/cea_vendor.h: what a setter takes is what its getter gives.
 */
#ifndef REEDID_CEA_MEDIA_H
#define REEDID_CEA_MEDIA_H

#include <stdint.h>

#include "reedid/cea.h"
#include "reedid/image.h"

#ifdef __cplusplus
extern "C" {
#endif

/** One short audio descriptor with the bits of its format by name (CTA-861, tables 37 to 47); flags are 0 or 1. */
typedef struct AudioFormat {
  uint8_t formatCode;           /**< 1 L-PCM, 2 AC-3, 7 DTS, 10 E-AC-3, 11 DTS-HD, 12 MAT, 15 extended, ...; 0..15 */
  uint8_t extFormatCode;        /**< format 15: 4 HE AAC, 11 MPEG-H 3D, 12 AC-4, 13 L-PCM 3D, ...; 0..31 */
  uint8_t channels;             /**< count, 1..8; 1..32 for L-PCM 3D; 0 for MPEG-H 3D, AC-4 and Auro-Cx */
  uint8_t level;                /**< MPEG-H 3D: 0 none said, 1..5 */
  uint8_t rate32k;              /**< 32 kHz */
  uint8_t rate44k1;             /**< 44.1 kHz */
  uint8_t rate48k;              /**< 48 kHz */
  uint8_t rate88k2;             /**< 88.2 kHz */
  uint8_t rate96k;              /**< 96 kHz */
  uint8_t rate176k4;            /**< 176.4 kHz */
  uint8_t rate192k;             /**< 192 kHz */
  uint8_t bits16;               /**< L-PCM, L-PCM 3D: 16-bit samples */
  uint8_t bits20;               /**< L-PCM, L-PCM 3D: 20-bit samples */
  uint8_t bits24;               /**< L-PCM, L-PCM 3D: 24-bit samples */
  uint8_t joc;                  /**< E-AC-3: joint object coding, Dolby Atmos */
  uint8_t jocAcmod28;           /**< E-AC-3: joint object coding with acmod 28 */
  uint8_t dtsX;                 /**< DTS-HD: DTS:X */
  uint8_t matObjects;           /**< MAT: objects (Dolby Atmos) and PCM too, not only Dolby TrueHD */
  uint8_t matNoHash;            /**< MAT with matObjects: needs no hash */
  uint8_t frames1024;           /**< AAC: frames of 1024 samples */
  uint8_t frames960;            /**< AAC: frames of 960 samples */
  uint8_t systemH;              /**< AAC LC: 22.2 channels, system H */
  uint8_t mpegSurroundExplicit; /**< AAC with MPEG Surround: signalled explicitly, too */
  uint8_t lowComplexityProfile; /**< MPEG-H 3D */
  uint8_t baselineProfile;      /**< MPEG-H 3D */
  uint8_t formatDependent; /**< bits of byte 3 that belong to the format and have no name above, where they stand */
  uint16_t maxBitrate;     /**< formats 2..8: kbit/s, multiples of 8 up to 2040 */
} AudioFormat;

/** Audio Data Block, CEA_TAG_AUDIO (CTA-861, 7.5.2). */
typedef struct AudioFormatsRecord {
  uint16_t count;          /**< 1..10 */
  AudioFormat formats[10]; /**< the first `count` are used, the others 0 */
} AudioFormatsRecord;

/** Unlike CEA_GetADB leaves out reserved bits. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetAudioFormats(const CeaDataBlock* entry, AudioFormatsRecord* record);
/** Encodes an Audio Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetAudioFormats(const AudioFormatsRecord* record, CeaDataBlock* entry);

/**
 * Native Video Resolution Data Block, CEA_EXT_TAG_NATIVE_RESOLUTION (CTA-861-H). A short video reference is 1..127 and
 * 193..253 a VIC, 129..144 the first to 16th detailed timing, 145..160 the first to 16th timing of type VII or X, 161..175
 * a rate of the first video format descriptor, 254 the first code of type VIII.
 */
typedef struct NativeResolutionRecord {
  uint16_t width;    /**< of the image, in units of sizeUnit */
  uint16_t height;   /**< likewise */
  uint8_t reference; /**< a short video reference */
  uint8_t sizeUnit;  /**< 0.1 mm: 1 or 10; 0 no size is told */
} NativeResolutionRecord;

/** Of 3, 4 or 8 bytes. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetNVRDB(const CeaDataBlock* entry, NativeResolutionRecord* record);
/** Writes 8 bytes with a size and 3 without. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetNVRDB(const NativeResolutionRecord* record, CeaDataBlock* entry);

/** Video Format Preference Data Block, CEA_EXT_TAG_FORMAT_PREFERENCE (CTA-861, 7.5.12). */
typedef struct FormatPreferenceRecord {
  uint8_t count;          /**< 1..30 */
  uint8_t references[30]; /**< short video references, most wanted first */
} FormatPreferenceRecord;

/** Decodes a Video Format Preference Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetVFPDB(const CeaDataBlock* entry, FormatPreferenceRecord* record);
/** Encodes a Video Format Preference Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetVFPDB(const FormatPreferenceRecord* record, CeaDataBlock* entry);

/** An InfoFrame that the display takes (CTA-861, 7.5.9). */
typedef struct InfoFrameEntry {
  uint8_t type;          /**< 1 vendor-specific, 2 AVI, 3 SPD, 4 audio, 5 MPEG, 6 NTSC VBI, 7 dynamic range; 0..31 */
  uint8_t oui[3];        /**< type 1: whose, least significant byte first */
  uint8_t payloadLength; /**< 0..7 */
  uint8_t payload[7];    /**< as it stands */
} InfoFrameEntry;

/** InfoFrame Data Block, CEA_EXT_TAG_INFOFRAME (CTA-861, 7.5.9). */
typedef struct InfoFrameRecord {
  uint8_t additionalVendor;   /**< how many more vendor-specific InfoFrames may come at once */
  uint8_t headerLength;       /**< 0..7, bytes that a newer standard may define */
  uint8_t header[7];          /**< as they stand */
  uint8_t count;              /**< 0..28 */
  InfoFrameEntry entries[28]; /**< most wanted first; the others 0 */
} InfoFrameRecord;

/** What the block ends in is left out. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetInfoFrame(const CeaDataBlock* entry, InfoFrameRecord* record);
/** Encodes an InfoFrame Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetInfoFrame(const InfoFrameRecord* record, CeaDataBlock* entry);

/** Room Configuration Data Block, CEA_EXT_TAG_ROOM_CONFIGURATION (CTA-861, 7.5.15). */
typedef struct RoomRecord {
  uint8_t displayPlace;   /**< byte 2 bit 7: displayX to displayZ are told */
  uint8_t locations;      /**< byte 2 bit 5: a Speaker Location Data Block tells where speakers are */
  uint8_t speakerCount;   /**< 1..32, 0 = not told */
  SpeakerRecord speakers; /**< which there are */
  uint8_t maxX;           /**< 0.1 m; a block that ends before it means 16 */
  uint8_t maxY;           /**< 0.1 m, 16 */
  uint8_t maxZ;           /**< 0.1 m, 8 */
  int8_t displayX;        /**< in 1/64 of maxX; a block that ends before it means 0 */
  int8_t displayY;        /**< in 1/64 of maxY, 64 */
  int8_t displayZ;        /**< in 1/64 of maxZ, 0 */
} RoomRecord;

/** Fields beyond the block's size are 0. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetRCDB(const CeaDataBlock* entry, RoomRecord* record);
/** Writes 6, 9 or 12 bytes, as the last field that is not 0 needs. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetRCDB(const RoomRecord* record, CeaDataBlock* entry);

/** Where one speaker is (CTA-861, 7.5.16). */
typedef struct SpeakerLocationEntry {
  uint8_t coordinates; /**< 1: x, y and z are told */
  uint8_t active;      /**< 1: the channel is in use */
  uint8_t channel;     /**< index, 0..31 */
  uint8_t speakerId;   /**< 0 FL, 1 FR, 2 FC, 3 LFE1, ... 27 RS (CTA-861, table 34); 31 none */
  int8_t x;            /**< in 1/64 of the room's */
  int8_t y;            /**< likewise */
  int8_t z;            /**< likewise */
} SpeakerLocationEntry;

/** Speaker Location Data Block, CEA_EXT_TAG_SPEAKER_LOCATION (CTA-861, 7.5.16). */
typedef struct SpeakerLocationRecord {
  uint8_t count;                    /**< 1..15 */
  SpeakerLocationEntry entries[15]; /**< the first `count` are used, the others 0 */
} SpeakerLocationRecord;

/** What the block ends in is left out. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetSLDB(const CeaDataBlock* entry, SpeakerLocationRecord* record);
/** Encodes a Speaker Location Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetSLDB(const SpeakerLocationRecord* record, CeaDataBlock* entry);

#ifdef __cplusplus
}
#endif

#endif
