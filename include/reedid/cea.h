/**
 * @file cea.h
 * the CTA-861 extension block: an editable model of its data blocks and detailed timings, and one
 * pair of codecs for each kind of data block. The conventions are those of reedid/image.h, and for codecs:
 *
 * - A getter takes (entry, record): it needs the entry's bytes and the right tag, extended tag and size, clears the
 * record and fills it. An entry that lacks them is "invalid parameters", -1, and leaves the record untouched; what a
 * timing codec of DisplayID refuses after that (CEA_GetTimingCode, CEA_Get20ByteDTD, CEA_Get6ByteCVT) leaves it
 * begun.
 * - A setter takes (record, entry): the caller supplies the entry with `bytes` pointing at 32 bytes or more; tag,
 * extTag, size and bytes are written, unused bytes are 0. Hand the entry to CEA_AddDataBlock or CEA_ReplaceDataBlock,
 * which copy.
 */
#ifndef REEDID_CEA_H
#define REEDID_CEA_H

#include <stdint.h>

#include "reedid/displayid.h"
#include "reedid/image.h"
#include "reedid/timing.h"

#ifdef __cplusplus
extern "C" {
#endif

/** One data block (CTA-861, 7.4). */
typedef struct CeaDataBlock {
  uint8_t tag;    /**< bits 7..5 of the header byte: 1 audio, 2 video, 3 vendor, 4 speaker, 7 extended */
  uint8_t extTag; /**< byte 1 when tag is 7, else 0 */
  uint8_t size;   /**< bytes with the header, 1..32 */
  uint8_t* bytes; /**< the whole block, header first; in a model a heap copy that it owns (null without memory) */
} CeaDataBlock;

/** The extension block. Entries are addressed by pointers into its arrays, which go stale with any add or delete. */
typedef struct CeaBlock {
  uint8_t revision;         /**< byte 1 */
  uint8_t dtdOffset;        /**< byte 2 as read; recomputed when generating */
  uint8_t underscan;        /**< byte 3 bit 7 */
  uint8_t basicAudio;       /**< byte 3 bit 6 */
  uint8_t ycbcr444;         /**< byte 3 bit 5 */
  uint8_t ycbcr422;         /**< byte 3 bit 4 */
  uint8_t nativeDtdCount;   /**< byte 3 bits 3..0 */
  uint8_t dataBlockCount;   /**< entries of dataBlocks */
  CeaDataBlock* dataBlocks; /**< owned; null when the block has no collection, which cannot be generated */
  uint8_t dtdCount;         /**< entries of dtds */
  DtdSlot* dtds;            /**< owned; null when there are none */
  uint8_t checksum;         /**< byte 127 as read */
  uint8_t freeSpace;        /**< bytes left for data blocks and DTDs */
  uint8_t checksumValid;    /**< 1 the checksum was right when read */
} CeaBlock;

/**
 * Parses an EdidBlock of type EDID_BLOCK_CEA. Null for bad arguments, a wrong tag byte ("error extension tag") or no
 * memory. A wrong checksum is a warning. The DTD list ends at the first descriptor without a clock, active, blanking,
 * porch or sync width; the collection ends at the first header with tag 0. When memory runs out over the bytes of an
 * entry or over the DTDs ("malloc fail"), the model has a gap there: ask CEA_IsComplete before you generate it.
 */
REEDID_API CeaBlock* CEA_Open(const EdidBlock* block);
/** Frees a model, its entries and their bytes. Null is ignored. */
REEDID_API void CEA_Close(CeaBlock* model);

/**
 * Whether a model has the bytes of all its data blocks and the array of its DTDs: 1, or 0 for one that CEA_Open had too
 * little memory for. Generating such a model loses what it lacks. 0 with "invalid parameters" for null.
 */
REEDID_API int32_t CEA_IsComplete(const CeaBlock* model);

/**
 * Writes the model into `out` (bytes and capacity of at least 128 given by the caller) with a fresh DTD offset and
 * checksum. Data blocks and DTDs that do not fit are reported ("outof range") and left out; the call still succeeds.
 * What a model without all its memory lacks is left out without a word (CEA_IsComplete).
 */
REEDID_API int32_t CEA_GenerateBlock(const CeaBlock* model, EdidBlock* out);

/** Inserts a copy of `block` at min(index, count). "not enough space" when it is larger than freeSpace. */
REEDID_API int32_t CEA_AddDataBlock(CeaBlock* model, const CeaDataBlock* block, uint32_t index);

/** Removes the entry at this address; an address outside the collection changes nothing and is no error. */
REEDID_API int32_t CEA_DeleteDataBlock(CeaBlock* model, const CeaDataBlock* entry);

/** Replaces the content of an entry by a copy of `block`; the entry keeps its place. */
REEDID_API int32_t CEA_ReplaceDataBlock(CeaBlock* model, CeaDataBlock* entry, const CeaDataBlock* block);

/** The first entry with this tag and, for tag 7 only, this extended tag; null if there is none. */
REEDID_API CeaDataBlock* CEA_FindDataBlock(const CeaBlock* model, uint32_t tag, uint32_t extTag);

/** Inserts a copy of a slot with flag 1 at min(index, count); needs 18 bytes of freeSpace. */
REEDID_API int32_t CEA_AddDTD(CeaBlock* model, const DtdSlot* slot, uint32_t index);

/** Removes the slot at this address; without any left, dtds becomes null. */
REEDID_API int32_t CEA_DeleteDTD(CeaBlock* model, const DtdSlot* slot);

/** Video Data Block, tag 2 (CTA-861, 7.5.1). VICs 193..219 stand as timing table indexes 129..155 (VIC - 64). */
typedef struct VdbRecord {
  uint8_t nativeVic; /**< the last VIC marked native, else the first VIC */
  uint8_t vicCount;  /**< 0..31 */
  uint8_t vics[31];  /**< timing table indexes */
} VdbRecord;

/** Decodes a Video Data Block of 1 to 32 bytes. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetVDB(const CeaDataBlock* entry, VdbRecord* record);
/** Only VICs up to 64 can carry the native mark. */
REEDID_API int32_t CEA_SetVDB(const VdbRecord* record, CeaDataBlock* entry);

/** One short audio descriptor (CTA-861, tables 37 to 47). */
typedef struct SadRecord {
  uint8_t formatCode;      /**< 1 L-PCM, 2 AC-3, 7 DTS, 10 E-AC-3, 11 DTS-HD, 12 MAT, 15 extended, ... */
  uint8_t extFormatCode;   /**< format 15: the extended format code */
  uint8_t channels;        /**< count, not count - 1 */
  uint8_t rate32k;         /**< 32 kHz */
  uint8_t rate44k1;        /**< 44.1 kHz */
  uint8_t rate48k;         /**< 48 kHz */
  uint8_t rate88k2;        /**< 88.2 kHz */
  uint8_t rate96k;         /**< 96 kHz */
  uint8_t rate176k4;       /**< 176.4 kHz */
  uint8_t rate192k;        /**< 192 kHz */
  uint8_t bits16;          /**< L-PCM: 16-bit samples */
  uint8_t bits20;          /**< L-PCM: 20-bit samples */
  uint8_t bits24;          /**< L-PCM: 24-bit samples */
  uint8_t maxBitrate;      /**< formats 2..8: byte 3, units of 8 kbit/s */
  uint8_t formatDependent; /**< other formats: the format's own part of byte 3 */
} SadRecord;

/** Audio Data Block, tag 1. */
typedef struct AdbRecord {
  uint8_t sadCount;   /**< 0..10 */
  SadRecord sads[10]; /**< the first sadCount are used */
} AdbRecord;

/** Decodes an Audio Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetADB(const CeaDataBlock* entry, AdbRecord* record);
/** Encodes an Audio Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetADB(const AdbRecord* record, CeaDataBlock* entry);

/** Speaker Allocation Data Block, tag 4 (CTA-861, table 59): flags in the order of its bits. */
typedef struct SpeakerRecord {
  uint8_t FL_FR;       /**< byte 1 bit 0, front left and right */
  uint8_t LFE1;        /**< bit 1, low-frequency effects 1 */
  uint8_t FC;          /**< bit 2, front centre */
  uint8_t BL_BR;       /**< bit 3, back left and right */
  uint8_t BC;          /**< bit 4, back centre */
  uint8_t FLc_FRc;     /**< bit 5, front left and right of centre */
  uint8_t RLC_RRC;     /**< bit 6, rear left and right of centre */
  uint8_t FLw_FRw;     /**< bit 7, front left and right wide */
  uint8_t TpFL_TpFR;   /**< byte 2 bit 0, top front left and right */
  uint8_t TpC;         /**< bit 1, top centre */
  uint8_t TpFC;        /**< bit 2, top front centre */
  uint8_t LS_RS;       /**< bit 3, left and right surround */
  uint8_t LFE2;        /**< bit 4, low-frequency effects 2 */
  uint8_t TpBC;        /**< bit 5, top back centre */
  uint8_t SiL_SiR;     /**< bit 6, side left and right */
  uint8_t TpSiL_TpSiR; /**< bit 7, top side left and right */
  uint8_t TpBL_TpBR;   /**< byte 3 bit 0, top back left and right */
  uint8_t BtFC;        /**< bit 1, bottom front centre */
  uint8_t BtFL_BtFR;   /**< bit 2, bottom front left and right */
  uint8_t TpLS_TpRS;   /**< bit 3, top left and right surround */
} SpeakerRecord;

/** Decodes a Speaker Allocation Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetSADB(const CeaDataBlock* entry, SpeakerRecord* record);
/** Encodes a Speaker Allocation Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetSADB(const SpeakerRecord* record, CeaDataBlock* entry);

/** Colorimetry Data Block, extended tag 5 (CTA-861, table 79). */
typedef struct ColorimetryRecord {
  uint8_t xvYCC601;         /**< byte 2 bit 0 */
  uint8_t xvYCC709;         /**< bit 1 */
  uint8_t sYCC601;          /**< bit 2 */
  uint8_t opYCC601;         /**< bit 3 */
  uint8_t opRGB;            /**< bit 4 */
  uint8_t BT2020cYCC;       /**< bit 5, constant luminance */
  uint8_t BT2020YCC;        /**< bit 6 */
  uint8_t BT2020RGB;        /**< bit 7 */
  uint8_t metadataProfiles; /**< byte 3 bits 3..0 */
  uint8_t ICtCp;            /**< byte 3 bit 6 */
  uint8_t DCI_P3;           /**< byte 3 bit 7 */
} ColorimetryRecord;

/** Decodes a Colorimetry Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetCDB(const CeaDataBlock* entry, ColorimetryRecord* record);
/** Encodes a Colorimetry Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetCDB(const ColorimetryRecord* record, CeaDataBlock* entry);

/** Video Capability Data Block, extended tag 0 (CTA-861, table 77). */
typedef struct VideoCapRecord {
  uint8_t QY;   /**< YCC quantization range selectable */
  uint8_t QS;   /**< RGB quantization range selectable */
  uint8_t S_PT; /**< over- and underscan of preferred timings, 0..3 */
  uint8_t S_IT; /**< of IT formats, 0..3 */
  uint8_t S_CE; /**< of CE formats, 0..3 */
} VideoCapRecord;

/** Decodes a Video Capability Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetVCDB(const CeaDataBlock* entry, VideoCapRecord* record);
/** Encodes a Video Capability Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetVCDB(const VideoCapRecord* record, CeaDataBlock* entry);

/** VICs of the YCbCr 4:2:0 blocks. */
typedef struct Vic420Record {
  uint8_t vicCount; /**< 0..31; at most 30 for CEA_Set420VDB */
  uint8_t vics[31]; /**< timing table indexes */
} Vic420Record;

/** Formats that exist in YCbCr 4:2:0 only, CEA_EXT_TAG_420_VIDEO (CTA-861, 7.5.10). */
REEDID_API int32_t CEA_Get420VDB(const CeaDataBlock* entry, Vic420Record* record);
/** The other way; at most 30 VICs. 0, or -1 when refused. */
REEDID_API int32_t CEA_Set420VDB(const Vic420Record* record, CeaDataBlock* entry);

/**
 * The map of CEA_EXT_TAG_420_MAP (CTA-861, 7.5.11): which descriptors of the Video Data Block exist in YCbCr 4:2:0
 * too. The getter needs the map's size in 3..6 (a map without bitmap is refused). The setter writes a bit for every
 * descriptor of the video block; a record with more VICs than the block has descriptors is refused with a message.
 */
REEDID_API int32_t CEA_Get420CMDB(const CeaDataBlock* videoBlock, const CeaDataBlock* mapBlock, Vic420Record* record);
/** Encodes the map of `videoBlock` into `out`. 0, or -1 when refused. */
REEDID_API int32_t CEA_Set420CMDB(const Vic420Record* record, const CeaDataBlock* videoBlock, CeaDataBlock* out);

/** Kinds of vendor-specific data blocks that matter to HDMI. */
typedef enum VsdbType {
  VSDB_NONE = 0,      /**< another vendor's, or a refused argument */
  VSDB_HDMI14B = 1,   /**< OUI 00-0C-03, HDMI 1.4b */
  VSDB_HDMI_FORUM = 2 /**< OUI C4-5D-D8, HDMI Forum */
} VsdbType;

/** A VsdbType; entries without bytes, of another tag or of a size outside 4..31 are "invalid parameters", 0. */
REEDID_API int32_t CEA_GetVSDBType(const CeaDataBlock* entry);

/** HDMI 1.4b Vendor-Specific Data Block (HDMI 1.4b, table 8-16). */
typedef struct H14bRecord {
  uint16_t physAddr;        /**< CEC physical address, 0x1200 = 1.2.0.0 */
  uint8_t supportsAI;       /**< byte 6 bit 7 */
  uint8_t DC_48bit;         /**< byte 6 bit 6 */
  uint8_t DC_36bit;         /**< byte 6 bit 5 */
  uint8_t DC_30bit;         /**< byte 6 bit 4 */
  uint8_t DC_Y444;          /**< byte 6 bit 3 */
  uint8_t DVI_Dual;         /**< byte 6 bit 0 */
  uint16_t max_TMDS_Clock;  /**< MHz, multiples of 5 */
  uint8_t latencyPresent;   /**< byte 8 bit 7 */
  uint8_t iLatencyPresent;  /**< byte 8 bit 6 */
  uint8_t hdmiVideoPresent; /**< byte 8 bit 5 */
  uint8_t cnc[4];           /**< content types: graphics, photo, cinema, game */
  uint16_t videoLatency;    /**< ms, 0 = not stated; likewise below */
  uint16_t audioLatency;    /**< ms */
  uint16_t iVideoLatency;   /**< ms */
  uint16_t iAudioLatency;   /**< ms */
  uint8_t imageSize;        /**< what the base block's size means: bits 4..3 behind the latencies */
  uint8_t hdmiVicLen;       /**< 0..7; CEA_SetH14bVSDB refuses more than 8 */
  uint8_t hdmiVics[8];      /**< HDMI VICs: 1 = 2160p30, 2 = 2160p25, 3 = 2160p24, 4 = 4096x2160p24 */
} H14bRecord;

/** A wrong OUI is "invalid OUI", -1. Fields beyond the block's size stay 0. */
REEDID_API int32_t CEA_GetH14bVSDB(const CeaDataBlock* entry, H14bRecord* record);
/** A physical address 0.0.0.0 or F.F.F.F and a clock below 25 MHz are reported and written all the same. */
REEDID_API int32_t CEA_SetH14bVSDB(const H14bRecord* record, CeaDataBlock* entry);

/** HDMI Forum Vendor-Specific Data Block (HDMI 2.1, table 10-6). */
typedef struct HfVsdbRecord {
  uint8_t version;              /**< byte 4 */
  uint16_t TMDS_Character_Rate; /**< MHz, multiples of 5; 0 = at most 340 */
  uint8_t scdcPresent;          /**< byte 6 bit 7 */
  uint8_t rrCapable;            /**< byte 6 bit 6 */
  uint8_t ccbpci;               /**< byte 6 bit 4 */
  uint8_t lte340Scramble;       /**< byte 6 bit 3 */
  uint8_t independentView;      /**< byte 6 bit 2 */
  uint8_t dualView;             /**< byte 6 bit 1 */
  uint8_t osdDisparity3d;       /**< byte 6 bit 0 */
  uint8_t Max_FRL_Rate;         /**< 0 none, 1 9G/3 lanes, 2 18G/3, 3 24G, 4 32G, 5 40G, 6 48G */
  uint8_t dc48bit420;           /**< byte 7 bit 2 */
  uint8_t dc36bit420;           /**< byte 7 bit 1 */
  uint8_t dc30bit420;           /**< byte 7 bit 0 */
  uint8_t mDelta;               /**< byte 8 bit 5 */
  uint8_t cinemaVrr;            /**< byte 8 bit 4 */
  uint8_t cnmVrr;               /**< byte 8 bit 3 */
  uint8_t fva;                  /**< byte 8 bit 2 */
  uint8_t allm;                 /**< byte 8 bit 1 */
  uint8_t fapaStartLocation;    /**< byte 8 bit 0 */
  uint16_t VRRmax;              /**< Hz, 0 or 100..1023 */
  uint8_t VRRmin;               /**< Hz, 0..48 */
  uint8_t DSC_1p2;              /**< byte 11 bit 7 */
  uint8_t dscNative420;         /**< byte 11 bit 6 */
  uint8_t dscAllBpp;            /**< byte 11 bit 3 */
  uint8_t dsc16bpc;             /**< bit 2 */
  uint8_t dsc12bpc;             /**< bit 1 */
  uint8_t dsc10bpc;             /**< bit 0 */
  uint8_t DSC_Max_FRL_Rate;     /**< as Max_FRL_Rate */
  uint8_t DSC_MaxSlices;        /**< code, 0..15 */
  uint8_t DSC_TotalChunkKBytes; /**< KiB, 1..64 */
} HfVsdbRecord;

/** Decodes an HDMI Forum VSDB. A wrong OUI is "invalid OUI", -1. Fields beyond the block's size stay 0. */
REEDID_API int32_t CEA_GetHFVSDB(const CeaDataBlock* entry, HfVsdbRecord* record);
/** Rates, VRR and DSC values that contradict each other are reported and written all the same. */
REEDID_API int32_t CEA_SetHFVSDB(const HfVsdbRecord* record, CeaDataBlock* entry);

/** HDR static metadata, CEA_EXT_TAG_STATIC_HDR (CTA-861, 7.5.13). */
typedef struct StaticHdrRecord {
  uint8_t eotfSdr;              /**< traditional gamma, SDR luminance range */
  uint8_t eotfHdr;              /**< traditional gamma, HDR luminance range */
  uint8_t eotfPq;               /**< SMPTE ST 2084 */
  uint8_t eotfHlg;              /**< hybrid log-gamma */
  uint8_t staticMetadataType1;  /**< static metadata descriptor type 1 */
  uint8_t maxLuminance;         /**< code v = 50 * 2^(v / 32) cd/m2; 0 = absent */
  uint8_t maxFrameAvgLuminance; /**< likewise */
  uint8_t minLuminance;         /**< code v = maximum * (v / 255)^2 / 100; 0 = absent */
} StaticHdrRecord;

/** Does not clear the record: luminance fields beyond the block's size keep the caller's values. */
REEDID_API int32_t CEA_GetStaticHDR(const CeaDataBlock* entry, StaticHdrRecord* record);
/** Encodes an HDR Static Metadata Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetStaticHDR(const StaticHdrRecord* record, CeaDataBlock* entry);

/** Whose CEA_EXT_TAG_VENDOR_VIDEO block it is: 1 for REEDID_OUI_DOLBY, else 0 (also for refused arguments). */
REEDID_API int32_t CEA_GetVSVDBType(const CeaDataBlock* entry);

/** DisplayID Type VII Video Timing Data Block, extended tag 0x22 (CTA-861, 7.5.17). */
typedef struct Cea20ByteDtdRecord {
  uint8_t flagBit3;   /**< byte 2 bit 3 */
  uint8_t extraBytes; /**< byte 2 bits 6..4: bytes beyond 20 per descriptor */
  uint8_t preferred;  /**< descriptor byte 3 bit 7; in a CTA block this is the YCbCr 4:2:0 flag */
  DtdTiming timing;   /**< its own `preferred` is 0 */
} Cea20ByteDtdRecord;

/** Reads the first descriptor only. */
REEDID_API int32_t CEA_Get20ByteDTD(const CeaDataBlock* entry, Cea20ByteDtdRecord* record);
/** Encodes a block with one descriptor. 0, or -1 when refused. */
REEDID_API int32_t CEA_Set20ByteDTD(const Cea20ByteDtdRecord* record, CeaDataBlock* entry);

/** DisplayID Type VIII Video Timing Data Block, extended tag 0x23. `codes` needs room for 29 codes. */
REEDID_API int32_t CEA_GetTimingCode(const CeaDataBlock* entry, TimingCodeRecord* record);
/** Encodes a Type VIII block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetTimingCode(const TimingCodeRecord* record, CeaDataBlock* entry);

/** DisplayID Type X Video Timing Data Block, extended tag 0x2A. The getter's array needs room for 4 records. */
REEDID_API int32_t CEA_Get6ByteCVT(const CeaDataBlock* entry, CvtTiming* timings);
/** Encodes a Type X block of `count` records. 0, or -1 when refused. */
REEDID_API int32_t CEA_Set6ByteCVT(const CvtTiming* timings, uint32_t count, CeaDataBlock* entry);

#ifdef __cplusplus
}
#endif

#endif
