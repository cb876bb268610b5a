/**
 * @file tags.h
 * the numbers by which the standards tell blocks apart, and how large the buffers of this interface are.
 *
 * The tags include kinds of block that no codec here reads yet. A tag that the standards reserve has no name. Tag
 * fields of the structures are plain uint8_t, because a display may send any number.
 */
#ifndef REEDID_TAGS_H
#define REEDID_TAGS_H

/* Sizes in bytes of buffers that a caller supplies. */
#define REEDID_BLOCK_SIZE 128         /**< an EDID block: EdidBlock.capacity of a base block or an extension */
#define REEDID_SECTION_SIZE 256       /**< the largest DisplayID section */
#define REEDID_DTD_SIZE 18            /**< a descriptor: DtdSlot.bytes */
#define REEDID_TEXT_SIZE 14           /**< text of a display descriptor: 13 characters and the final 0 */
#define REEDID_CEA_DATA_BLOCK_SIZE 32 /**< the largest CTA data block with its header; what a CEA_ setter needs */
#define REEDID_DISPID_DATA_BLOCK_SIZE \
  251                               /**< the largest DisplayID data block with its header; see DispID_SetVESATiming */
#define REEDID_DISPID_TEXT_SIZE 249 /**< text of a DisplayID string block: 248 characters and the final 0 */
#define REEDID_DISPID_NAME_SIZE 234 /**< ProductIdRecord.name: 233 characters and the final 0 */
#define REEDID_MAX_FRAME_RATES 255  /**< as many rates as EDID_GetAllFrameRate can deliver */
#define REEDID_MAX_DTDS 255         /**< as many timings as EDID_FindOutAllDTD can deliver */

/** Byte 0 of an EDID extension block (VESA E-EDID; EDID 1.4, 2.2). What reedid makes of them: EdidBlockType. */
typedef enum EdidExtensionTag {
  EDID_EXTENSION_CTA = 0x02,               /**< CTA-861 */
  EDID_EXTENSION_VIDEO_TIMING = 0x10,      /**< VTB-EXT */
  EDID_EXTENSION_DISPLAY_INFO = 0x40,      /**< DI-EXT */
  EDID_EXTENSION_LOCALIZED_STRINGS = 0x50, /**< LS-EXT */
  EDID_EXTENSION_DPVL = 0x60,              /**< digital packet video link */
  EDID_EXTENSION_DISPLAYID = 0x70,         /**< a DisplayID section */
  EDID_EXTENSION_BLOCK_MAP = 0xF0,         /**< the tags of the other extensions */
  EDID_EXTENSION_MANUFACTURER = 0xFF       /**< defined by the display's maker */
} EdidExtensionTag;

/** Byte 3 of a display descriptor (EDID 1.4, table 3.23), which is DtdSlot.flag too. 0x00..0x0F are the maker's own. */
typedef enum EdidDescriptorTag {
  EDID_DESCRIPTOR_DUMMY = 0x10,            /**< unused slot */
  EDID_DESCRIPTOR_EST3 = 0xF7,             /**< established timings III */
  EDID_DESCRIPTOR_CVT_CODES = 0xF8,        /**< CVT 3-byte codes */
  EDID_DESCRIPTOR_COLOR_MANAGEMENT = 0xF9, /**< display colour management data */
  EDID_DESCRIPTOR_STD_TIMINGS = 0xFA,      /**< six more standard timings */
  EDID_DESCRIPTOR_COLOR_POINT = 0xFB,      /**< more white points */
  EDID_DESCRIPTOR_PRODUCT_NAME = 0xFC,     /**< the display's name */
  EDID_DESCRIPTOR_RANGE_LIMITS = 0xFD,     /**< range limits */
  EDID_DESCRIPTOR_DATA_STRING = 0xFE,      /**< any text */
  EDID_DESCRIPTOR_SERIAL_NUMBER = 0xFF     /**< the serial number as text */
} EdidDescriptorTag;

/** CeaDataBlock.tag (CTA-861, 7.4). */
typedef enum CeaTag {
  CEA_TAG_AUDIO = 1,         /**< short audio descriptors */
  CEA_TAG_VIDEO = 2,         /**< short video descriptors */
  CEA_TAG_VENDOR = 3,        /**< an IeeeOui in bytes 1..3, least significant byte first */
  CEA_TAG_SPEAKERS = 4,      /**< speaker allocation */
  CEA_TAG_VESA_TRANSFER = 5, /**< VESA display transfer characteristics */
  CEA_TAG_VIDEO_FORMAT = 6,  /**< video formats by resolution identifier */
  CEA_TAG_EXTENDED = 7       /**< a CeaExtTag in byte 1 */
} CeaTag;

/** CeaDataBlock.extTag of blocks with CEA_TAG_EXTENDED (CTA-861, 7.4). */
typedef enum CeaExtTag {
  CEA_EXT_TAG_VIDEO_CAPABILITY = 0,     /**< quantization ranges, over- and underscan */
  CEA_EXT_TAG_VENDOR_VIDEO = 1,         /**< an IeeeOui in bytes 2..4, least significant byte first */
  CEA_EXT_TAG_VESA_DISPLAY_DEVICE = 2,  /**< VESA video display device */
  CEA_EXT_TAG_COLORIMETRY = 5,          /**< colour spaces beyond the default */
  CEA_EXT_TAG_STATIC_HDR = 6,           /**< HDR static metadata */
  CEA_EXT_TAG_DYNAMIC_HDR = 7,          /**< HDR dynamic metadata */
  CEA_EXT_TAG_NATIVE_RESOLUTION = 8,    /**< native video resolution */
  CEA_EXT_TAG_FORMAT_PREFERENCE = 13,   /**< short video references, most wanted first */
  CEA_EXT_TAG_420_VIDEO = 14,           /**< formats in YCbCr 4:2:0 only */
  CEA_EXT_TAG_420_MAP = 15,             /**< which short video descriptors exist in YCbCr 4:2:0 too */
  CEA_EXT_TAG_VENDOR_AUDIO = 17,        /**< an IeeeOui in bytes 2..4, least significant byte first */
  CEA_EXT_TAG_HDMI_AUDIO = 18,          /**< HDMI multi-stream and 3D audio */
  CEA_EXT_TAG_ROOM_CONFIGURATION = 19,  /**< speakers in the room */
  CEA_EXT_TAG_SPEAKER_LOCATION = 20,    /**< where they stand */
  CEA_EXT_TAG_INFOFRAME = 32,           /**< InfoFrames that the display takes */
  CEA_EXT_TAG_PRODUCT_INFORMATION = 33, /**< maker and product as text */
  CEA_EXT_TAG_TYPE_VII = 34,            /**< a DisplayID type VII timing */
  CEA_EXT_TAG_TYPE_VIII = 35,           /**< DisplayID type VIII timing codes */
  CEA_EXT_TAG_TYPE_X = 42,              /**< DisplayID type X formula timings */
  CEA_EXT_TAG_EXTENSION_OVERRIDE = 120, /**< HDMI Forum: the true number of extensions */
  CEA_EXT_TAG_SINK_CAPABILITY = 121,    /**< HDMI Forum: the content of its vendor-specific block */
  CEA_EXT_TAG_TONE_MAPPING = 122        /**< HDMI Forum: source-based tone mapping */
} CeaExtTag;

/** DispIdDataBlock.tag (DisplayID 1.3 and 2.0, section 4): 1.x below 0x20 and 0x7F, 2.x the rest. */
typedef enum DispIdTag {
  DISPID_TAG_PRODUCT_ID = 0x00,           /**< who made what */
  DISPID_TAG_DISPLAY_PARAMS = 0x01,       /**< size, native format, features */
  DISPID_TAG_COLOR = 0x02,                /**< colour characteristics */
  DISPID_TAG_TYPE_I = 0x03,               /**< detailed timings, 20 bytes */
  DISPID_TAG_TYPE_II = 0x04,              /**< detailed timings, 11 bytes */
  DISPID_TAG_TYPE_III = 0x05,             /**< short timings, 3 bytes */
  DISPID_TAG_TYPE_IV = 0x06,              /**< timing codes */
  DISPID_TAG_VESA_TIMINGS = 0x07,         /**< a bit for each VESA timing */
  DISPID_TAG_CTA_TIMINGS = 0x08,          /**< a bit for each CTA-861 timing */
  DISPID_TAG_RANGE_LIMITS = 0x09,         /**< video timing range limits */
  DISPID_TAG_SERIAL_NUMBER = 0x0A,        /**< the serial number as text */
  DISPID_TAG_DATA_STRING = 0x0B,          /**< any text */
  DISPID_TAG_DISPLAY_DEVICE = 0x0C,       /**< display device data */
  DISPID_TAG_POWER_SEQUENCING = 0x0D,     /**< interface power sequencing */
  DISPID_TAG_TRANSFER = 0x0E,             /**< transfer characteristics */
  DISPID_TAG_DISPLAY_INTERFACE = 0x0F,    /**< display interface */
  DISPID_TAG_STEREO = 0x10,               /**< stereo display interface */
  DISPID_TAG_TYPE_V = 0x11,               /**< short timings, 7 bytes */
  DISPID_TAG_TILED = 0x12,                /**< tiled display topology */
  DISPID_TAG_TYPE_VI = 0x13,              /**< detailed timings, 14 or 17 bytes */
  DISPID_TAG_VENDOR = 0x7F,               /**< the maker's own, behind three letters or an OUI */
  DISPID20_TAG_PRODUCT_ID = 0x20,         /**< who made what */
  DISPID20_TAG_DISPLAY_PARAMS = 0x21,     /**< size, native format, colours */
  DISPID20_TAG_TYPE_VII = 0x22,           /**< detailed timings, 20 bytes */
  DISPID20_TAG_TYPE_VIII = 0x23,          /**< timing codes */
  DISPID20_TAG_TYPE_IX = 0x24,            /**< formula timings, 6 bytes */
  DISPID20_TAG_RANGE_LIMITS = 0x25,       /**< dynamic video timing range limits */
  DISPID20_TAG_INTERFACE_FEATURES = 0x26, /**< display interface features */
  DISPID20_TAG_STEREO = 0x27,             /**< stereo display interface */
  DISPID20_TAG_TILED = 0x28,              /**< tiled display topology */
  DISPID20_TAG_CONTAINER_ID = 0x29,       /**< ContainerID */
  DISPID20_TAG_TYPE_X = 0x2A,             /**< formula timings, 6 bytes and more */
  DISPID20_TAG_ADAPTIVE_SYNC = 0x2B,      /**< ranges of a variable refresh rate */
  DISPID20_TAG_HEAD_MOUNTED = 0x2C,       /**< head-mounted display */
  DISPID20_TAG_HEAD_MOUNTED_LAYER = 0x2D, /**< one layer of it */
  DISPID20_TAG_BRIGHTNESS = 0x2E,         /**< brightness luminance range */
  DISPID20_TAG_VENDOR = 0x7E,             /**< the maker's own, behind an OUI */
  DISPID20_TAG_CTA = 0x81                 /**< CTA-861 data blocks, one after another */
} DispIdTag;

/** IEEE identifiers of those who define vendor-specific blocks, 00-0C-03 being 0x000C03. */
typedef enum IeeeOui {
  REEDID_OUI_AMD = 0x00001A,
  REEDID_OUI_NVIDIA = 0x00044B,
  REEDID_OUI_HDMI = 0x000C03, /**< HDMI Licensing: HDMI 1.4b */
  REEDID_OUI_APPLE = 0x0010FA,
  REEDID_OUI_DOLBY = 0x00D046,
  REEDID_OUI_UHD_ALLIANCE = 0x1ABBFB,
  REEDID_OUI_VESA = 0x3A0292,
  REEDID_OUI_HDR10_PLUS = 0x90848B,
  REEDID_OUI_HDMI_FORUM = 0xC45DD8, /**< HDMI 2.0 and 2.1 */
  REEDID_OUI_MICROSOFT = 0xCA125C
} IeeeOui;

#endif
