/**
 * @file displayid_blocks.h
 * data blocks of DisplayID sections about what a display is made of and how it is driven: interface, tiles, colours,
 * variable refresh rates, and the blocks of vendors. The conventions are those of reedid/displayid.h, and:
 *
 * - A getter refuses another vendor's block with "invalid OUI", and a size that a block of its kind does not have with
 * "invalid parameters"; fields beyond the block's size are 0, reserved bits are left out. It reads byte 1 from the bytes.
 * - A setter refuses a record with a value that its field cannot hold with "invalid parameters", and writes nothing then.
 * What it takes is what the getter gives for the block that it writes. It fills in revision and headerFlags, too.
 *
 * DispID_ names blocks of DisplayID 1.x and DispID20_ those of 2.x. Displays put the latter into sections of 1.x, too.
 */
#ifndef REEDID_DISPLAYID_BLOCKS_H
#define REEDID_DISPLAYID_BLOCKS_H

#include <stdint.h>

#include "reedid/cea.h"
#include "reedid/displayid.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A range in which the refresh rate may vary (DisplayID 2.1). */
typedef struct AdaptiveSyncRange {
  uint16_t minRefresh;      /**< Hz, 0..255 */
  uint16_t maxRefresh;      /**< Hz, 1..1024 */
  uint8_t nativeRange;      /**< 1: the panel's own range */
  uint8_t mode;             /**< 0 fixed average V-total, 1 adaptive V-total as well; 0..3 */
  uint8_t noSeamless;       /**< 1: changes into this range are visible */
  uint8_t increaseNoJitter; /**< 1: frames may get longer by maxIncrease without flicker */
  uint8_t decreaseNoJitter; /**< 1: frames may get shorter by maxDecrease without flicker */
  uint8_t maxIncrease;      /**< 0.25 ms from one frame to the next; 0 in all displays known, no limit or none told */
  uint8_t maxDecrease;      /**< 0.25 ms, likewise */
  uint8_t extra[7];         /**< bytes that a newer standard may define, as they stand */
} AdaptiveSyncRange;

/** Adaptive-Sync, tag 0x2B (DisplayID 2.1). */
typedef struct AdaptiveSyncRecord {
  uint8_t revision;             /**< 0..7 */
  uint8_t descriptorSize;       /**< bytes of a range, 6..13: from the seventh on they stand in `extra` */
  uint16_t count;               /**< 0..41 */
  AdaptiveSyncRange ranges[41]; /**< the first `count` are used, the others 0 */
} AdaptiveSyncRecord;

/** Decodes an Adaptive-Sync block. 0, or -1 when refused. */
REEDID_API int32_t DispID20_GetAdaptiveSync(const DispIdDataBlock* entry, AdaptiveSyncRecord* record);
/** Encodes an Adaptive-Sync block. 0, or -1 when refused. */
REEDID_API int32_t DispID20_SetAdaptiveSync(const AdaptiveSyncRecord* record, DispIdDataBlock* entry);

/** Tiled display topology: tag 0x12 (DisplayID 1.3) and 0x28 (DisplayID 2.0). Tiles of a display have the
 * same vendor, product and serial number. */
typedef struct TiledDisplayRecord {
  uint32_t tileWidth;        /**< pixels, 1..65536 */
  uint32_t tileHeight;       /**< lines, 1..65536 */
  uint32_t serialNumber;     /**< 0 = not stated */
  uint16_t productCode;      /**< a number of the maker */
  uint16_t pixelMultiplier;  /**< 0..255; a bezel has multiplier * its number / 10 pixels, 0 = nothing is told */
  uint8_t vendorId[3];       /**< three letters (1.x) or an OUI, most significant byte first (2.0) */
  uint8_t revision;          /**< 0..7 */
  uint8_t singleEnclosure;   /**< 1: all tiles are in one case */
  uint8_t bezelPresent;      /**< 1: pixelMultiplier and bezels hold data */
  uint8_t someTilesBehavior; /**< when some tiles are driven: 0 undefined, 1 image at its tile; 0..3 */
  uint8_t oneTileBehavior;   /**< when this one is: 0 undefined, 1 image at its tile, 2 on the whole display, 3 on each
                                   tile; 0..7 */
  uint8_t hTiles;            /**< 1..64 */
  uint8_t vTiles;            /**< 1..64 */
  uint8_t hLocation;         /**< of this tile, 0 leftmost; 0..63 */
  uint8_t vLocation;         /**< 0 at the top; 0..63 */
  uint8_t bezelTop;          /**< see pixelMultiplier */
  uint8_t bezelBottom;       /**< likewise */
  uint8_t bezelRight;        /**< likewise */
  uint8_t bezelLeft;         /**< likewise */
} TiledDisplayRecord;

/** Decodes the 1.x form, 25 bytes. 0, or -1 when refused. */
REEDID_API int32_t DispID_GetTiledDisplay(const DispIdDataBlock* entry, TiledDisplayRecord* record);
/** Encodes the 1.x form. 0, or -1 when refused. */
REEDID_API int32_t DispID_SetTiledDisplay(const TiledDisplayRecord* record, DispIdDataBlock* entry);
/** Decodes the 2.0 form, 25 bytes. 0, or -1 when refused. */
REEDID_API int32_t DispID20_GetTiledDisplay(const DispIdDataBlock* entry, TiledDisplayRecord* record);
/** Encodes the 2.0 form. 0, or -1 when refused. */
REEDID_API int32_t DispID20_SetTiledDisplay(const TiledDisplayRecord* record, DispIdDataBlock* entry);

/** A colour space with its transfer function (DisplayID 2.0). */
typedef struct ColorEotf {
  uint8_t colorSpace; /**< 0 undefined, 1 sRGB, 2 BT.601, 3 BT.709, 4 Adobe RGB, 5 DCI-P3, 6 BT.2020, 7 custom; 0..15 */
  uint8_t eotf;       /**< 1..6 the same, 3 being BT.1886, 7 a gamma, 8 ST 2084, 9 hybrid log, 10 custom; 0..15 */
} ColorEotf;

/** Display interface features, tag 0x26 (DisplayID 2.0). A set of depths is a bit for each: in RGB and YCbCr 4:4:4
 * 6, 8, 10, 12, 14, 16 bits per component from bit 0 on, in 4:2:2 and 4:2:0 8, 10, 12, 14, 16. */
typedef struct InterfaceFeaturesRecord {
  uint8_t revision;        /**< 0..7 */
  uint8_t rgbDepths;       /**< six bits */
  uint8_t ycc444Depths;    /**< six bits */
  uint8_t ycc422Depths;    /**< five bits */
  uint8_t ycc420Depths;    /**< five bits */
  uint8_t min420PixelRate; /**< 74.25 MHz: the least pixel rate in 4:2:0, 0 = any */
  uint8_t audio32k;        /**< 32 kHz */
  uint8_t audio44k1;       /**< 44.1 kHz */
  uint8_t audio48k;        /**< 48 kHz */
  uint8_t colorEotfs; /**< bits: 0 sRGB, 1 BT.601, 2 BT.709 with BT.1886, 3 Adobe RGB, 4 DCI-P3, 5 BT.2020, 6 BT.2020
                                with ST 2084 */
  uint8_t additionalCount; /**< 0..7 */
  ColorEotf additional[7]; /**< more colour spaces; the first additionalCount are used, the others 0 */
} InterfaceFeaturesRecord;

/** Of 12 bytes or more; more colour spaces than the block holds are left out. 0, or -1 when refused. */
REEDID_API int32_t DispID20_GetInterfaceFeatures(const DispIdDataBlock* entry, InterfaceFeaturesRecord* record);
/** Encodes display interface features. 0, or -1 when refused. */
REEDID_API int32_t DispID20_SetInterfaceFeatures(const InterfaceFeaturesRecord* record, DispIdDataBlock* entry);

/** Display interface, tag 0x0F (DisplayID 1.3). Sets of depths are as in InterfaceFeaturesRecord. */
typedef struct DisplayInterfaceRecord {
  uint8_t revision;      /**< 0..7 */
  uint8_t interfaceType; /**< 0 analogue, 1 LVDS, 2 TMDS, 3 RSDS, 4 DVI-D, 5 DVI-I analogue, 6 DVI-I digital, 7 HDMI-A,
                              8 HDMI-B, 9 MDDI, 10 DisplayPort, 11 proprietary digital; 0..15 */
  uint8_t links;         /**< links or lanes, 0..15; analogue: 0 15-pin VGA, 1 NAVI-V, 2 NAVI-D */
  uint8_t version;       /**< of the interface's standard, 0..15 */
  uint8_t release;       /**< likewise, behind the point */
  uint8_t rgbDepths;     /**< six bits */
  uint8_t ycc444Depths;  /**< six bits */
  uint8_t ycc422Depths;  /**< five bits */
  uint8_t contentProtection; /**< 0 none, 1 HDCP, 2 DTCP, 3 DPCP; 0..15 */
  uint8_t protectionVersion; /**< of its standard, 0..15 */
  uint8_t protectionRelease; /**< likewise, behind the point */
  uint8_t spreadType;        /**< of the spectrum: 0 none, 1 down, 2 centre; 0..3 */
  uint8_t spreadPercent;     /**< 0.1 %, 0..15 */
  uint8_t attribute1; /**< LVDS: 6-bit compatible map 4, 2.8 V 3, 12 V 2, 5 V 1, 3.3 V 0. Proprietary: fixed mode 2,
                                  low 1, rising edge 0. As it stands */
  uint8_t attribute2; /**< LVDS: fixed mode 2, low 1, rising edge 0. As it stands */
} DisplayInterfaceRecord;

/** Decodes a display interface block of 13 bytes. 0, or -1 when refused. */
REEDID_API int32_t DispID_GetDisplayInterface(const DispIdDataBlock* entry, DisplayInterfaceRecord* record);
/** Encodes a display interface block. 0, or -1 when refused. */
REEDID_API int32_t DispID_SetDisplayInterface(const DisplayInterfaceRecord* record, DispIdDataBlock* entry);

/** ContainerID, tag 0x29 (DisplayID 2.0): the same in all that one device says of itself. */
typedef struct ContainerIdRecord {
  uint8_t revision; /**< 0..7 */
  uint8_t id[16];   /**< in the order in which it is printed, 4-2-2-2-6 */
} ContainerIdRecord;

/** Decodes a ContainerID block of 19 bytes. 0, or -1 when refused. */
REEDID_API int32_t DispID20_GetContainerID(const DispIdDataBlock* entry, ContainerIdRecord* record);
/** Encodes a ContainerID block. 0, or -1 when refused. */
REEDID_API int32_t DispID20_SetContainerID(const ContainerIdRecord* record, DispIdDataBlock* entry);

/** Vendor-specific block of anybody: tag 0x7F (DisplayID 1.3) and 0x7E (DisplayID 2.0). */
typedef struct DispIdVendorRecord {
  uint8_t revision;  /**< 0..7 */
  uint8_t flags;     /**< the vendor's, byte 1 bits 7..3 */
  uint8_t vendor[3]; /**< an OUI, most significant byte first, or three letters (1.x); some displays turn it round */
  uint8_t length;    /**< 0..245 */
  uint8_t data[245]; /**< as it stands; from `length` on 0 */
} DispIdVendorRecord;

/** Decodes the 1.x form. 0, or -1 when refused. */
REEDID_API int32_t DispID_GetVendor(const DispIdDataBlock* entry, DispIdVendorRecord* record);
/** Encodes the 1.x form. 0, or -1 when refused. */
REEDID_API int32_t DispID_SetVendor(const DispIdVendorRecord* record, DispIdDataBlock* entry);
/** Decodes the 2.0 form. 0, or -1 when refused. */
REEDID_API int32_t DispID20_GetVendor(const DispIdDataBlock* entry, DispIdVendorRecord* record);
/** Encodes the 2.0 form. 0, or -1 when refused. */
REEDID_API int32_t DispID20_SetVendor(const DispIdVendorRecord* record, DispIdDataBlock* entry);

/** VESA's own block, tag 0x7E with REEDID_OUI_VESA (DisplayID 2.1). */
typedef struct VesaVendorRecord {
  uint16_t dscBppX16;    /**< target of DSC in timings that are passed through, 1/16 bit per pixel, 0..1023 */
  uint8_t dscPresent;    /**< 1: the block is long enough for dscBppX16 */
  uint8_t revision;      /**< 0..7 */
  uint8_t structureType; /**< 0 eDP, 1 DisplayPort; 0..7 */
  uint8_t nativeColor;   /**< colours by default: 0 sRGB, 1 as in the display parameters */
  uint8_t overlapPixels; /**< that are shared with the next panel, 0..15; the standard has up to 8 */
  uint8_t multiSst;      /**< 0 no, 1 two streams, 2 four streams; 0..3 */
} VesaVendorRecord;

/** Decodes a block of 8 or 10 bytes. 0, or -1 when refused. */
REEDID_API int32_t DispID20_GetVesaVendor(const DispIdDataBlock* entry, VesaVendorRecord* record);
/** Encodes VESA's block. 0, or -1 when refused. */
REEDID_API int32_t DispID20_SetVesaVendor(const VesaVendorRecord* record, DispIdDataBlock* entry);

/**
 * CTA-861 data blocks inside a DisplayID block, tag 0x81 of both versions: how many there are, 0..248. A block that the
 * outer one cuts short counts, what stands from a header byte 0 on does not. 0 with "invalid parameters" for another tag.
 */
REEDID_API int32_t DispID20_GetCtaCnt(const DispIdDataBlock* entry);
/**
 * Fills `blocks` with min(requested, DispID20_GetCtaCnt) entries for the CEA_ getters. Their `bytes` point into
 * `entry`'s; the size of one that is cut short is what there is of it. 0, or -1 when refused.
 */
REEDID_API int32_t DispID20_GetCtaBlocks(const DispIdDataBlock* entry, CeaDataBlock* blocks, uint32_t requested);
/**
 * Keeps the entry's revision and headerFlags. Refuses a sum of sizes above 248, and blocks that would not be read again:
 * whose header byte is 0, or tells another size; the last one may be cut short.
 */
REEDID_API int32_t DispID20_SetCtaBlocks(const CeaDataBlock* blocks, uint32_t count, DispIdDataBlock* entry);

/** A point in a chromaticity diagram, units of 1/4096, 0..4095. */
typedef struct ColorPoint {
  uint16_t x; /**< x, or u' */
  uint16_t y; /**< y, or v' */
} ColorPoint;

/** Colour characteristics, tag 0x02 (DisplayID 1.3). */
typedef struct DispIdColorRecord {
  ColorPoint primaries[7];     /**< the first primaryCount are used, the others 0 */
  ColorPoint whites[15];       /**< the first whiteCount are used, the others 0 */
  uint16_t standardColorSpace; /**< without primaries: 0 sRGB, 1 BT.601, 2 BT.709, 3 Adobe RGB, 4 DCI-P3, 5 NTSC, 6 EBU,
                                    7 Adobe wide gamut, 8 DICOM; 0..255 */
  uint8_t revision;            /**< 0..7 */
  uint8_t cie1976;             /**< 0 CIE 1931 x, y; 1 CIE 1976 u', v' */
  uint8_t transferId;          /**< of the transfer characteristics that belong to this, 0..15, 0 = none */
  uint8_t temporal;            /**< 1: primaries are shown one after another */
  uint8_t primaryCount;        /**< 0..7 */
  uint8_t whiteCount;          /**< 0..15 */
} DispIdColorRecord;

/** Decodes colour characteristics, of as many bytes as their counts tell. 0, or -1 when refused. */
REEDID_API int32_t DispID_GetColor(const DispIdDataBlock* entry, DispIdColorRecord* record);
/** Encodes colour characteristics. 0, or -1 when refused. */
REEDID_API int32_t DispID_SetColor(const DispIdColorRecord* record, DispIdDataBlock* entry);

/** Transfer characteristics, tag 0x0E (DisplayID 1.3). Readers disagree on how many steps a curve has, so that
 * curves are kept as they stand. */
typedef struct DispIdTransferRecord {
  uint8_t revision;         /**< 0..7 */
  uint8_t identifier;       /**< by which colour characteristics name it, 0..15, 0 = none */
  uint8_t firstIsWhite;     /**< byte 3 bit 7 */
  uint8_t individualCurves; /**< byte 3 bit 6: a curve for each primary */
  uint8_t fourParameters;   /**< byte 3 bit 5: a curve is 5 bytes, A0 to A3 and 100 * (gamma - 1) */
  uint8_t length;           /**< 0..247 */
  uint8_t curves[247];      /**< curve after curve, each behind the number of its bytes; from `length` on 0 */
} DispIdTransferRecord;

/** Decodes transfer characteristics. 0, or -1 when refused. */
REEDID_API int32_t DispID_GetTransfer(const DispIdDataBlock* entry, DispIdTransferRecord* record);
/** Encodes transfer characteristics. 0, or -1 when refused. */
REEDID_API int32_t DispID_SetTransfer(const DispIdTransferRecord* record, DispIdDataBlock* entry);

/** Stereo display interface: tag 0x10 (DisplayID 1.3) and 0x27 (DisplayID 2.0). */
typedef struct StereoRecord {
  uint8_t revision;        /**< 0..7 */
  uint8_t timingSupport;   /**< 3D in: 0 timings that say so, 1 those and the codes here, 2 all, 3 the codes here */
  uint8_t method;          /**< 0 field sequential, 1 side by side, 2 pixel interleaved, 3 dual interface, 4 multi-view,
                                5 stacked frames, 255 the maker's own */
  uint8_t parameterCount;  /**< 0..246 */
  uint8_t parameters[246]; /**< as they stand: of methods 0, 1, 5 bit 0 turns the eyes round; of 2 8 rows of 8 pixels, 1
                                for the left eye; of 3 bit 0 right eye, 2..1 mirroring; of 4 views, interleaving */
  uint8_t codeLength;      /**< 0..246; timingSupport 1 and 3 */
  uint8_t codes[246]; /**< list after list: a byte with its type 7..6, 0 DMT, 1 VIC, 2 HDMI VIC, and its count 4..0,
                                then the codes. As they stand */
} StereoRecord;

/** Decodes the 1.x form. 0, or -1 when refused. */
REEDID_API int32_t DispID_GetStereo(const DispIdDataBlock* entry, StereoRecord* record);
/** Encodes the 1.x form. 0, or -1 when refused. */
REEDID_API int32_t DispID_SetStereo(const StereoRecord* record, DispIdDataBlock* entry);
/** Decodes the 2.0 form. 0, or -1 when refused. */
REEDID_API int32_t DispID20_GetStereo(const DispIdDataBlock* entry, StereoRecord* record);
/** Encodes the 2.0 form. 0, or -1 when refused. */
REEDID_API int32_t DispID20_SetStereo(const StereoRecord* record, DispIdDataBlock* entry);

/** Brightness luminance range, tag 0x2E (DisplayID 2.1). Luminances are half-precision codes of cd/m2, 0x8000 = not
 * told. */
typedef struct BrightnessRecord {
  uint16_t minSdrLuminance;   /**< full coverage */
  uint16_t maxSdrLuminance;   /**< full coverage, as suggested */
  uint16_t maxBoostLuminance; /**< the most that the display can do */
  uint16_t revision;          /**< 0..7 */
} BrightnessRecord;

/** Decodes a brightness luminance range of 9 bytes. 0, or -1 when refused. */
REEDID_API int32_t DispID20_GetBrightness(const DispIdDataBlock* entry, BrightnessRecord* record);
/** Encodes a brightness luminance range. 0, or -1 when refused. */
REEDID_API int32_t DispID20_SetBrightness(const BrightnessRecord* record, DispIdDataBlock* entry);

/** Display device data, tag 0x0C (DisplayID 1.3). */
typedef struct DisplayDeviceRecord {
  uint32_t nativeWidth;        /**< pixels, 2..65536, 0 = none */
  uint32_t nativeHeight;       /**< lines, 2..65536, 0 = none */
  uint16_t aspectRatioX100;    /**< 100..355 */
  uint16_t responseTime;       /**< ms, 0..127 */
  uint16_t hPitch;             /**< 0.01 mm, 0..255 */
  uint16_t vPitch;             /**< 0.01 mm, 0..255 */
  uint8_t revision;            /**< 0..7 */
  uint8_t technology;          /**< 0x00 CRT and so on: 0x1n LCD, 0x2n plasma, 0x4n LED, 0x5n OLED, ... */
  uint8_t operatingMode;       /**< 0..2 reflective, 3..5 transmissive, 6 emissive, 7..8 transflective, ...; 0..15 */
  uint8_t backlightSwitchable; /**< byte 4 bit 3 */
  uint8_t backlightDimmable;   /**< byte 4 bit 2 */
  uint8_t orientation;         /**< 0 landscape, 1 portrait, 2 not fixed, 3 undefined */
  uint8_t rotation;            /**< 0 none, 1 clockwise, 2 counter-clockwise, 3 both */
  uint8_t zeroPixel;           /**< 0 upper left, 1 upper right, 2 lower left, 3 lower right */
  uint8_t scanDirection;       /**< 0 not told, 1 along the long axis, 2 along the short one */
  uint8_t subPixels;           /**< 0 not told, 1 RGB vertical stripes, 2 horizontal, ...; 12 PenTile */
  uint8_t bitDepth;            /**< byte 14 bits 3..0 as they stand; readers disagree whether it is less by 1 */
  uint8_t whiteToBlack;        /**< of responseTime: 1 white to black, 0 black to white */
} DisplayDeviceRecord;

/** Decodes display device data of 16 bytes. 0, or -1 when refused. */
REEDID_API int32_t DispID_GetDisplayDevice(const DispIdDataBlock* entry, DisplayDeviceRecord* record);
/** Encodes display device data. 0, or -1 when refused. */
REEDID_API int32_t DispID_SetDisplayDevice(const DisplayDeviceRecord* record, DispIdDataBlock* entry);

/** Interface power sequencing, tag 0x0D (DisplayID 1.3). */
typedef struct PowerSequencingRecord {
  uint8_t revision; /**< 0..7 */
  uint8_t minT1;    /**< 0.1 ms, 0..15 */
  uint8_t maxT1;    /**< 2 ms, 0..15 */
  uint8_t maxT2;    /**< 2 ms, 0..63 */
  uint8_t maxT3;    /**< 2 ms, 0..63 */
  uint8_t minT4;    /**< 10 ms, 0..127 */
  uint8_t minT5;    /**< 10 ms, 0..63 */
  uint8_t minT6;    /**< 10 ms, 0..63 */
} PowerSequencingRecord;

/** Decodes interface power sequencing of 9 bytes. 0, or -1 when refused. */
REEDID_API int32_t DispID_GetPowerSequencing(const DispIdDataBlock* entry, PowerSequencingRecord* record);
/** Encodes interface power sequencing. 0, or -1 when refused. */
REEDID_API int32_t DispID_SetPowerSequencing(const PowerSequencingRecord* record, DispIdDataBlock* entry);

/** Head-mounted display, tag 0x2C (DisplayID 2.1). Lengths and angles are units of 1/8192 cm and 1/8192 rad. */
typedef struct HeadMountedRecord {
  uint32_t rightFocal;       /**< 1/65536 pixels per rad */
  uint32_t leftFocal;        /**< likewise */
  uint32_t rightCenterY;     /**< lines, an IEEE 754 single's 32 bits */
  uint32_t rightCenterX;     /**< pixels, likewise */
  uint32_t leftCenterY;      /**< lines, likewise */
  uint32_t leftCenterX;      /**< pixels, likewise */
  uint16_t rightX;           /**< of the area of low distortion: where it begins for the right eye, pixels */
  uint16_t rightY;           /**< lines */
  uint16_t leftX;            /**< for the left eye */
  uint16_t leftY;            /**< lines */
  uint16_t width;            /**< pixels */
  uint16_t height;           /**< lines */
  uint16_t rightLens;        /**< distance of the lens */
  uint16_t leftLens;         /**< distance of the lens */
  uint16_t interocularAngle; /**< angle */
  uint16_t lensMin;          /**< least distance of the lenses */
  uint16_t lensRange;        /**< what may be added */
  int16_t ipdOffset;         /**< of the distance between pupils */
  uint16_t ipdMin;           /**< least distance between pupils */
  uint16_t ipdRange;         /**< what may be added */
  uint16_t hFov;             /**< horizontal field of view of both eyes */
  uint16_t rightFov[4];      /**< right, left, up, down */
  uint16_t leftFov[4];       /**< right, left, up, down */
  uint8_t revision;          /**< 0..7 */
  uint8_t dualLayer;         /**< bit 0 interleaved, bit 1 in an extended frame */
  uint8_t interleaveStacked; /**< interleaved layers: 0 side by side, 1 stacked */
  uint8_t extendedMode;      /**< stacked, not side by side: 1 the eyes, 2 the layers; 0..3 */
  uint8_t displays;          /**< 1..16; the standard has up to 4 */
  uint8_t streams;           /**< 1..16; the standard has up to 2 */
  uint8_t layers;            /**< 1..16; the standard has up to 2 */
  uint8_t layerMetadata;     /**< bit 0 in the first line of layer 0, bit 1 in a secondary data packet */
  uint8_t replication;       /**< of that line: 0 once, 1 4 times, 2 8 times, 3 16 times */
  uint8_t rightRotation;     /**< 0..7 */
  uint8_t leftRotation;      /**< 0..7 */
  uint8_t lensAdjustable;    /**< byte 25 bit 0 */
  uint8_t lensMotion;        /**< 0 not straight, 1 with the displays, 2 without them; 0..3 */
  uint8_t lensDistance;      /**< byte 25 bit 3 */
  uint8_t ipdUseful;         /**< byte 25 bit 4 */
  uint8_t rightDisplay;      /**< whether its distance is available */
  uint8_t leftDisplay;       /**< likewise */
  uint8_t rightEye;          /**< likewise */
  uint8_t leftEye;           /**< likewise */
  uint8_t foveated;          /**< bit 0 in one stream, bit 1 in two */
  uint8_t layer0Streams;     /**< bit 0 one, bit 1 two */
  uint8_t layer1Streams;     /**< likewise */
} HeadMountedRecord;

/** Decodes a head-mounted display block of 82 bytes. 0, or -1 when refused. */
REEDID_API int32_t DispID20_GetHeadMounted(const DispIdDataBlock* entry, HeadMountedRecord* record);
/** Encodes a head-mounted display block. 0, or -1 when refused. */
REEDID_API int32_t DispID20_SetHeadMounted(const HeadMountedRecord* record, DispIdDataBlock* entry);

/** One layer of a head-mounted display, tag 0x2D (DisplayID 2.1). Of a pair of bits, bit 0 says that a step is
 * supported and bit 1 that it may be switched. */
typedef struct HeadMountedLayerRecord {
  uint32_t serialNumber;          /**< as in product identification */
  uint16_t productCode;           /**< as in product identification */
  uint8_t vendorId[3];            /**< an OUI, most significant byte first */
  uint8_t revision;               /**< 0..7 */
  uint8_t layer;                  /**< 0..15; the standard has 0 and 1 */
  uint8_t configurable;           /**< byte 12 bit 4 */
  uint8_t cropping;               /**< byte 12 bit 5 */
  uint8_t lensCorrection;         /**< 0 none, 1 chromatic, 2 distortion as well; 0..3 */
  uint8_t lensConfigurable;       /**< which of it may be switched, likewise */
  uint8_t gamma;                  /**< a pair of bits */
  uint8_t degamma;                /**< a pair of bits */
  uint8_t mura;                   /**< a pair of bits */
  uint8_t blankingData;           /**< a pair of bits: data in the vertical blanking interval */
  uint8_t reprojection;           /**< asynchronous: 0 none, 1 3DoF, 2 6DoF as well; 0..3 */
  uint8_t reprojectionSwitchable; /**< bit 0 3DoF, bit 1 6DoF */
  uint8_t scalings;               /**< bits: 0 2x, 1 3x, 2 4x, 3 5x, 4 6x, 5 8x, 6 those of otherScaling */
  uint8_t scalingConfigurable;    /**< byte 17 bit 7 */
  uint8_t otherScaling[4];        /**< 1/32, 0 = none */
  uint8_t layerStreams;           /**< bits: layers on streams of their own 0 side by side, 1 stacked */
} HeadMountedLayerRecord;

/** Decodes a layer of 23 bytes. 0, or -1 when refused. */
REEDID_API int32_t DispID20_GetHeadMountedLayer(const DispIdDataBlock* entry, HeadMountedLayerRecord* record);
/** Encodes a layer. 0, or -1 when refused. */
REEDID_API int32_t DispID20_SetHeadMountedLayer(const HeadMountedLayerRecord* record, DispIdDataBlock* entry);

#ifdef __cplusplus
}
#endif

#endif
