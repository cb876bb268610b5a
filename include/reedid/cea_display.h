/**
 * @file cea_display.h
 * data blocks of CTA-861 about the display itself: what VESA defines, video formats by resolution, HDMI's 3D audio and
 * tone mapping, and what vendors say of it. Getters and setters are as in reedid/cea_vendor.h: what a setter takes is
 * what its getter gives.
 */
#ifndef REEDID_CEA_DISPLAY_H
#define REEDID_CEA_DISPLAY_H

#include <stdint.h>

#include "reedid/cea.h"
#include "reedid/image.h"

#ifdef __cplusplus
extern "C" {
#endif

/** VESA Video Display Device Data Block, CEA_EXT_TAG_VESA_DISPLAY_DEVICE (VESA's standard of that name). */
typedef struct VesaDeviceRecord {
  uint16_t maxClock;         /**< MHz, 0..1023 */
  uint16_t nativeWidth;      /**< pixels */
  uint16_t nativeHeight;     /**< lines */
  uint16_t aspectRatioX100;  /**< 100..355 */
  uint16_t primary4X;        /**< chromaticity of a fourth primary, units of 1/1024, 0..1023 */
  uint16_t primary4Y;        /**< 1/1024 */
  uint16_t primary5X;        /**< 1/1024 */
  uint16_t primary5Y;        /**< 1/1024 */
  uint16_t primary6X;        /**< 1/1024 */
  uint16_t primary6Y;        /**< 1/1024 */
  uint16_t responseTime;     /**< ms, 0..127 */
  int16_t audioDelay;        /**< ms, multiples of 2, -254..254; below 0 the sound comes first */
  uint8_t interfaceType;     /**< 0 analogue, 1 LVDS, 2 RSDS, 3 DVI-D, 4 DVI-I analogue, 5 DVI-I digital, 6 HDMI-A, 7
                                  HDMI-B, 8 MDDI, 9 DisplayPort, 10 IEEE 1394, 11 M1 analogue, 12 M1 digital; 0..15 */
  uint8_t channels;          /**< lanes or channels, 0..15; analogue: 0 15-pin VGA, 1 NAVI-V, 2 NAVI-D */
  uint8_t version;           /**< of the interface's standard, 0..15 */
  uint8_t release;           /**< likewise, behind the point */
  uint8_t contentProtection; /**< 0 none, 1 HDCP, 2 DTCP, 3 DPCP */
  uint8_t minClock;          /**< MHz, 0..63 */
  uint8_t orientation;       /**< 0 landscape, 1 portrait, 2 not fixed, 3 undefined */
  uint8_t rotation;          /**< 0 none, 1 clockwise, 2 counter-clockwise, 3 both */
  uint8_t zeroPixel;         /**< 0 upper left, 1 upper right, 2 lower left, 3 lower right */
  uint8_t scanDirection;     /**< 0 not told, 1 along the long axis, 2 along the short one; 0..3 */
  uint8_t subPixels;      /**< 0 not told, 1 RGB vertical stripes, 2 horizontal, 3 vertical in the order of primaries, 4
                                  horizontal likewise, 5 quad with red top left, 6 bottom left, 7 delta, 8 mosaic, 9 quad
                                  and a colour, 10 five, 11 six, 12 PenTile */
  uint8_t hPitch;         /**< 0.01 mm */
  uint8_t vPitch;         /**< 0.01 mm */
  uint8_t dithering;      /**< 0 none, 1 spatial, 2 temporal, 3 both */
  uint8_t directDrive;    /**< byte 16 bit 5 */
  uint8_t noOverdrive;    /**< byte 16 bit 4: overdrive is not recommended */
  uint8_t deinterlacing;  /**< byte 16 bit 3 */
  uint8_t audio;          /**< byte 17 bit 7: over the video interface */
  uint8_t separateAudio;  /**< byte 17 bit 6 */
  uint8_t audioOverride;  /**< byte 17 bit 5 */
  uint8_t audioDelayTold; /**< 1: audioDelay holds data */
  uint8_t rateConversion; /**< 0 none, 1 single buffer, 2 double buffer, 3 advanced */
  uint8_t rateRange;      /**< Hz, 0..63, around nominalRate */
  uint8_t nominalRate;    /**< Hz */
  uint8_t interfaceDepth; /**< bits per colour, 1..16 */
  uint8_t displayDepth;   /**< bits per colour, 1..16 */
  uint8_t extraPrimaries; /**< how many of those above there are, 0..3 */
  uint8_t whiteToBlack;   /**< of responseTime: 1 white to black, 0 black to white */
  uint8_t hOverscan;      /**< %, 0..15 */
  uint8_t vOverscan;      /**< %, 0..15 */
} VesaDeviceRecord;

/** Decodes a block of 32 bytes. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetVesaDevice(const CeaDataBlock* entry, VesaDeviceRecord* record);
/** Encodes a VESA Video Display Device Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetVesaDevice(const VesaDeviceRecord* record, CeaDataBlock* entry);

/** VESA Display Transfer Characteristics, CEA_TAG_VESA_TRANSFER (VESA's standard of that name): one curve. */
typedef struct VesaTransferRecord {
  uint8_t curve; /**< 0 white, 1 red, 2 green, 3 blue */
  uint8_t count; /**< 8, 16 or 32 */
  /** At equal distances, each 0..255 above the one before, the first up to 63, the last 1023; the first `count` are used,
   * the others 0. */
  uint16_t samples[32];
} VesaTransferRecord;

/** Decodes a block of 8, 16 or 32 bytes. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetVesaTransfer(const CeaDataBlock* entry, VesaTransferRecord* record);
/** Encodes a curve. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetVesaTransfer(const VesaTransferRecord* record, CeaDataBlock* entry);

/** One resolution with its rates (CTA-861.6). */
typedef struct VideoFormatEntry {
  uint8_t rid;     /**< resolution identifier, 0..63: 1 1280x720, 4 1920x1080, 8 2560x1440, 11 3840x2160, ... 28 */
  uint8_t base50;  /**< 25 Hz times the factors */
  uint8_t rate24;  /**< 24 Hz */
  uint8_t base60;  /**< 30 Hz times the factors; 1 in a descriptor of one byte */
  uint8_t rate144; /**< 144 Hz */
  uint8_t factors; /**< bits: 0 1, 1 2, 2 4, 3 8, 4 12, 5 16 times; 3 in a descriptor of one byte */
  uint8_t rate48;  /**< 48 Hz, descriptors of three bytes */
} VideoFormatEntry;

/** Video Format Data Block, CEA_TAG_VIDEO_FORMAT (CTA-861.6). */
typedef struct VideoFormatsRecord {
  uint8_t ycc420;               /**< byte 1 bit 7: all of them in YCbCr 4:2:0, too */
  uint8_t fractionalPreferred;  /**< byte 1 bit 6: rates times 1000/1001 */
  uint8_t descriptorSize;       /**< bytes, 1..4 */
  uint8_t count;                /**< 0..30 */
  VideoFormatEntry entries[30]; /**< the first `count` are used, the others 0 */
} VideoFormatsRecord;

/** A descriptor that the block ends in is left out. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetVFDB(const CeaDataBlock* entry, VideoFormatsRecord* record);
/** Encodes a Video Format Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetVFDB(const VideoFormatsRecord* record, CeaDataBlock* entry);

/** A format of 3D audio (HDMI 2.0). */
typedef struct HdmiAudioFormat {
  uint8_t formatCode;      /**< 1 L-PCM, 9 One Bit Audio; 0..15 */
  uint8_t channels;        /**< 1..32 */
  uint8_t rate32k;         /**< 32 kHz */
  uint8_t rate44k1;        /**< 44.1 kHz */
  uint8_t rate48k;         /**< 48 kHz */
  uint8_t rate88k2;        /**< 88.2 kHz */
  uint8_t rate96k;         /**< 96 kHz */
  uint8_t rate176k4;       /**< 176.4 kHz */
  uint8_t rate192k;        /**< 192 kHz */
  uint8_t bits16;          /**< L-PCM */
  uint8_t bits20;          /**< L-PCM */
  uint8_t bits24;          /**< L-PCM */
  uint8_t formatDependent; /**< the last byte of other formats, as it stands */
} HdmiAudioFormat;

/** HDMI Audio Data Block, CEA_EXT_TAG_HDMI_AUDIO (HDMI 2.0), deprecated. */
typedef struct HdmiAudioRecord {
  uint8_t maxStreams;         /**< 1..4; 1 = no multi-stream audio */
  uint8_t nonMixed;           /**< takes streams that are not to be mixed */
  uint8_t count;              /**< formats of 3D audio, 0..6 */
  HdmiAudioFormat formats[6]; /**< the first `count` are used, the others 0 */
  SpeakerRecord speakers;     /**< with formats only, and so the next two */
  uint8_t LSd_RSd;            /**< beside `speakers` */
  uint8_t speakerSystem;      /**< 1 10.2, 2 22.2, 3 30.2 channels; 0..15 */
} HdmiAudioRecord;

/** Of as many bytes as its formats need; without formats of 3 or 4. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetHdmiAudio(const CeaDataBlock* entry, HdmiAudioRecord* record);
/** Encodes an HDMI Audio Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetHdmiAudio(const HdmiAudioRecord* record, CeaDataBlock* entry);

/** A point of a peak brightness curve. */
typedef struct ToneMappingPoint {
  uint8_t percent; /**< of the screen: 100 * (code >> 2) / 64 * 10^-(code & 3) % */
  uint8_t peak;    /**< code, probably half a 12-bit PQ code */
} ToneMappingPoint;

/** HDMI Forum Source-Based Tone Mapping Data Block, CEA_EXT_TAG_TONE_MAPPING (HDMI 2.1a). */
typedef struct ToneMappingRecord {
  uint16_t redX;              /**< chromaticity, units of 1/50000, gamut 0 only, and so on */
  uint16_t redY;              /**< 1/50000 */
  uint16_t greenX;            /**< 1/50000 */
  uint16_t greenY;            /**< 1/50000 */
  uint16_t blueX;             /**< 1/50000 */
  uint16_t blueY;             /**< 1/50000 */
  uint16_t whiteX;            /**< 1/50000 */
  uint16_t whiteY;            /**< 1/50000 */
  uint8_t version;            /**< 0..15 */
  uint8_t grdmSupport;        /**< general RDM: 0 none, 1 SDR range, 2 HDR range; 0..3 */
  uint8_t drdm;               /**< 1: all below and above holds data */
  uint8_t hgigDrdm;           /**< 0 not used, else the peak: 1 600, 2 1000, 3 4000, 4 10000 cd/m2; 0..7 */
  uint8_t useHgig;            /**< byte 3 bit 4 */
  uint8_t maxRgb;             /**< byte 3 bit 5 */
  uint8_t gamut;              /**< 0 told above, 1 BT.709, 2 SMPTE ST 2113, 3 BT.2020 */
  uint8_t minBrightness10;    /**< half a 12-bit PQ code, hgigDrdm 0 only */
  uint8_t peakBrightness100;  /**< a sixteenth of a 12-bit PQ code, hgigDrdm 0 only */
  uint8_t pointCount;         /**< 0..4 */
  ToneMappingPoint points[4]; /**< the first pointCount are used, the others 0 */
} ToneMappingRecord;

/** Decodes a Source-Based Tone Mapping Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetHFSBTMDB(const CeaDataBlock* entry, ToneMappingRecord* record);
/** Encodes a Source-Based Tone Mapping Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetHFSBTMDB(const ToneMappingRecord* record, CeaDataBlock* entry);

/** UHD Alliance, CEA_TAG_VENDOR with REEDID_OUI_UHD_ALLIANCE: filmmaker mode. */
typedef struct FilmmakerRecord {
  uint8_t contentType;    /**< code */
  uint8_t contentSubtype; /**< code */
} FilmmakerRecord;

/** Decodes a block of 6 bytes or more. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetFilmmaker(const CeaDataBlock* entry, FilmmakerRecord* record);
/** Encodes a UHD Alliance block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetFilmmaker(const FilmmakerRecord* record, CeaDataBlock* entry);

/** Microsoft, CEA_TAG_VENDOR with REEDID_OUI_MICROSOFT: head-mounted and specialised displays. */
typedef struct MicrosoftVsdbRecord {
  uint8_t version;         /**< 1, 2 head-mounted; 3 specialised */
  uint8_t desktopUsage;    /**< version 3: is a desktop, too */
  uint8_t thirdPartyUsage; /**< version 3: may be used by other software */
  uint8_t primaryUse;      /**< 0 undefined, 1 test, 2 generic, 3 television, 4 desktop productivity, 5 gaming, 6
                                presentation, 7 virtual and 8 augmented reality, 16 video wall, 17 medical, 18 dedicated
                                gaming, 19 video monitor, 20 accessory; 0..31 */
  uint8_t containerId[16]; /**< in the order in which it is printed, as in ContainerIdRecord */
} MicrosoftVsdbRecord;

/** Decodes a block of 22 bytes. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetMicrosoftVSDB(const CeaDataBlock* entry, MicrosoftVsdbRecord* record);
/** Encodes a Microsoft block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetMicrosoftVSDB(const MicrosoftVsdbRecord* record, CeaDataBlock* entry);

/** Product Information Data Block, CEA_EXT_TAG_PRODUCT_INFORMATION (CTA-861.7). Readers disagree on where the name ends. */
typedef struct ProductInformationRecord {
  uint8_t oui[3];   /**< of the maker, most significant byte first */
  uint8_t version;  /**< 0 */
  uint8_t length;   /**< 0..26 */
  uint8_t name[26]; /**< in ASCII, as it stands to the block's end; from `length` on 0 */
} ProductInformationRecord;

/** Decodes a Product Information Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetProductInformation(const CeaDataBlock* entry, ProductInformationRecord* record);
/** Encodes a Product Information Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetProductInformation(const ProductInformationRecord* record, CeaDataBlock* entry);

#ifdef __cplusplus
}
#endif

#endif
