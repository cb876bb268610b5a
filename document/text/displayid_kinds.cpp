// Data blocks of DisplayID sections, by their tag.

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

#include "document/text/displayid_own.h"
#include "document/text/shims.h"

namespace reedid::document::text {
namespace {

// A head is the tag; behind it the OUI, which stands behind the header.

constexpr size_t kHeader = 3;

ByteVector Head(uint8_t tag) {
  return {tag};
}

template <auto kGet>
bool GetList(Bytes bytes, const Context&, void* box, size_t& count) {
  using Call = GetterSignature<decltype(kGet)>;
  const auto entry = EntryOf<DispIdDataBlock>(bytes);
  if (bytes.size() < kHeader || bytes.size() > REEDID_DISPID_DATA_BLOCK_SIZE) return false;
  count = static_cast<size_t>(std::max(DispID_GetTimingCnt(&entry), 0));
  return kGet(&entry, static_cast<typename Call::RecordType*>(box), static_cast<uint32_t>(count)) == 0;
}

template <class Record, auto kGet, auto kSet>
Kind ListKind(const char* name, uint8_t tag, const char* left = "") {
  return {name, Head(tag), &kListForm, &kRecordInfo<Record>, left, GetList<kGet>, SetSeveral<kSet>, "timings"};
}

// The name stands behind the record.
template <auto kGet>
bool GetProduct(Bytes bytes, const Context&, void* box, size_t&) {
  const auto entry = EntryOf<DispIdDataBlock>(bytes);
  auto* record = static_cast<ProductIdRecord*>(box);
  record->name = reinterpret_cast<char*>(record + 1);
  const bool done = kGet(&entry, record) == 0;
  record->name = nullptr;
  return done;
}

template <auto kSet>
bool SetProduct(const void* box, size_t, const Context& context, ByteVector& bytes) {
  ProductIdRecord record = *static_cast<const ProductIdRecord*>(box);
  record.name = const_cast<char*>(static_cast<const char*>(box) + sizeof record);  // setters only read
  return SetOne<kSet>(&record, 1, context, bytes);
}

template <auto kGet, auto kSet>
Kind ProductKind(const char* name, uint8_t tag) {
  return {name,
          Head(tag),
          &kRecordForm,
          &kRecordInfo<ProductIdRecord>,
          "",
          GetProduct<kGet>,
          SetProduct<kSet>,
          "name",
          Tail::kText,
          Json::parse(R"({"year": 2000})")};
}

// The codec writes the aspect ratio over the tag.
bool SetParams(const void* box, size_t count, const Context& context, ByteVector& bytes) {
  constexpr size_t kAspect = 13;
  if (!SetOne<DispID_SetDPDB>(box, count, context, bytes)) return false;
  const unsigned ratio = static_cast<const DisplayParamsRecord*>(box)->aspectRatioX100;
  bytes[0] = DISPID_TAG_DISPLAY_PARAMS;
  bytes[kAspect] = static_cast<uint8_t>(ratio < 100 ? 0 : ratio - 100);
  return true;
}

// The codec gives every text the tag of a serial number.
bool SetDataString(const void* box, size_t count, const Context& context, ByteVector& bytes) {
  if (!SetOne<DispID_SetDataString>(box, count, context, bytes)) return false;
  bytes[0] = DISPID_TAG_DATA_STRING;
  return true;
}

Kind WithFlags(Kind kind, uint8_t flags) {
  kind.flags = flags;
  return kind;
}

constexpr char kNoSize[] = "frameRate hImageSize vImageSize";

const std::vector<Kind>& Kinds() {
  static const std::vector<Kind> kinds = {
      ProductKind<DispID_GetPIDB, DispID_SetPIDB>("product", DISPID_TAG_PRODUCT_ID),
      ProductKind<DispID20_GetPIDB, DispID20_SetPIDB>("product20", DISPID20_TAG_PRODUCT_ID),
      {"parameters", Head(DISPID_TAG_DISPLAY_PARAMS), &kRecordForm, &kRecordInfo<DisplayParamsRecord>, "",
       GetOne<DispID_GetDPDB>, SetParams, "", Tail::kNone,
       Json::parse(R"({"aspectRatioX100": 178, "nativeColorDepth": 8, "overallColorDepth": 8})")},
      WithFlags(RecordKind<DisplayParams20Record, DispID20_GetDPDB, DispID20_SetDPDB>(
                    "parameters20", Head(DISPID20_TAG_DISPLAY_PARAMS)),
                0x10),
      ListKind<DtdTiming, DispID_Get20ByteDTD, DispID_Set20ByteDTD>("typeI", DISPID_TAG_TYPE_I, kNoSize),
      ListKind<DtdTiming, DispID20_Get20ByteDTD, DispID20_Set20ByteDTD>("typeVII", DISPID20_TAG_TYPE_VII, kNoSize),
      ListKind<DtdTiming, DispID_Get11ByteDTD, DispID_Set11ByteDTD>("typeII", DISPID_TAG_TYPE_II, kNoSize),
      ListKind<DtdTiming, DispID_Get17ByteDTD, DispID_Set17ByteDTD>("typeVI", DISPID_TAG_TYPE_VI, "frameRate"),
      ListKind<CvtTiming, DispID_Get3ByteCVT, DispID_Set3ByteCVT>("typeIII", DISPID_TAG_TYPE_III),
      ListKind<CvtTiming, DispID_Get7ByteCVT, DispID_Set7ByteCVT>("typeV", DISPID_TAG_TYPE_V),
      ListKind<CvtTiming, DispID20_Get6ByteCVT, DispID20_Set6ByteCVT>("typeIX", DISPID20_TAG_TYPE_IX),
      ListKind<CvtTiming, DispID20_Get6ByteCVT, DispID20_Set6ByteCVT>("typeX", DISPID20_TAG_TYPE_X),
      CodesKind<DispID_GetTimingCode, DispID_SetTimingCode>("typeIV", Head(DISPID_TAG_TYPE_IV)),
      CodesKind<DispID20_GetTimingCode, DispID20_SetTimingCode>("typeVIII", Head(DISPID20_TAG_TYPE_VIII)),
      {"vesaTimings", Head(DISPID_TAG_VESA_TIMINGS), &kBitmapForm},
      {"ctaTimings", Head(DISPID_TAG_CTA_TIMINGS), &kBitmapForm},
      RecordKind<DispIdRangeLimits, DispID_GetRangeLimits, DispID_SetRangeLimits>(
          "rangeLimits", Head(DISPID_TAG_RANGE_LIMITS), "seamlessTransition"),
      RecordKind<DispIdRangeLimits, DispID20_GetRangeLimits, DispID20_SetRangeLimits>(
          "rangeLimits20", Head(DISPID20_TAG_RANGE_LIMITS),
          "minHRate maxHRate minHBlank minVBlank interlaced cvtStandard cvtReduced discreteFrequency"),
      TextKind<DispID_GetSerialNumber, DispID_SetSerialNumber>("serialNumber", Head(DISPID_TAG_SERIAL_NUMBER)),
      {"dataString", Head(DISPID_TAG_DATA_STRING), &kRecordForm, nullptr, "", GetOne<DispID_GetDataString>,
       SetDataString, "text", Tail::kText},
      {"cta", Head(DISPID20_TAG_CTA), &kCtaBlocksForm},
      RecordKind<DispIdColorRecord, DispID_GetColor, DispID_SetColor>("color", Head(DISPID_TAG_COLOR)),
      RecordKind<DisplayDeviceRecord, DispID_GetDisplayDevice, DispID_SetDisplayDevice>(
          "displayDevice", Head(DISPID_TAG_DISPLAY_DEVICE)),
      RecordKind<PowerSequencingRecord, DispID_GetPowerSequencing, DispID_SetPowerSequencing>(
          "powerSequencing", Head(DISPID_TAG_POWER_SEQUENCING)),
      RecordKind<DispIdTransferRecord, DispID_GetTransfer, DispID_SetTransfer>("transfer", Head(DISPID_TAG_TRANSFER)),
      RecordKind<DisplayInterfaceRecord, DispID_GetDisplayInterface, DispID_SetDisplayInterface>(
          "displayInterface", Head(DISPID_TAG_DISPLAY_INTERFACE)),
      RecordKind<StereoRecord, DispID_GetStereo, DispID_SetStereo>("stereo", Head(DISPID_TAG_STEREO)),
      RecordKind<TiledDisplayRecord, DispID_GetTiledDisplay, DispID_SetTiledDisplay>("tiled", Head(DISPID_TAG_TILED)),
      RecordKind<DispIdVendorRecord, DispID_GetVendor, DispID_SetVendor>("vendor", Head(DISPID_TAG_VENDOR)),
      RecordKind<InterfaceFeaturesRecord, DispID20_GetInterfaceFeatures, DispID20_SetInterfaceFeatures>(
          "interfaceFeatures", Head(DISPID20_TAG_INTERFACE_FEATURES)),
      RecordKind<StereoRecord, DispID20_GetStereo, DispID20_SetStereo>("stereo20", Head(DISPID20_TAG_STEREO)),
      RecordKind<TiledDisplayRecord, DispID20_GetTiledDisplay, DispID20_SetTiledDisplay>("tiled20",
                                                                                         Head(DISPID20_TAG_TILED)),
      RecordKind<ContainerIdRecord, DispID20_GetContainerID, DispID20_SetContainerID>("containerId",
                                                                                      Head(DISPID20_TAG_CONTAINER_ID)),
      RecordKind<AdaptiveSyncRecord, DispID20_GetAdaptiveSync, DispID20_SetAdaptiveSync>(
          "adaptiveSync", Head(DISPID20_TAG_ADAPTIVE_SYNC)),
      RecordKind<HeadMountedRecord, DispID20_GetHeadMounted, DispID20_SetHeadMounted>("headMounted",
                                                                                      Head(DISPID20_TAG_HEAD_MOUNTED)),
      RecordKind<HeadMountedLayerRecord, DispID20_GetHeadMountedLayer, DispID20_SetHeadMountedLayer>(
          "headMountedLayer", Head(DISPID20_TAG_HEAD_MOUNTED_LAYER)),
      RecordKind<BrightnessRecord, DispID20_GetBrightness, DispID20_SetBrightness>("brightness",
                                                                                   Head(DISPID20_TAG_BRIGHTNESS)),
      RecordKind<VesaVendorRecord, DispID20_GetVesaVendor, DispID20_SetVesaVendor>(
          "vesaVendor", {DISPID20_TAG_VENDOR, 0x3A, 0x02, 0x92}),
      RecordKind<DispIdVendorRecord, DispID20_GetVendor, DispID20_SetVendor>("vendor20", Head(DISPID20_TAG_VENDOR)),
  };
  return kinds;
}

bool Matches(const Kind& kind, Bytes bytes) {
  if (bytes.size() < kHeader || bytes.size() != kHeader + bytes[2] || bytes[0] != kind.head[0]) return false;
  const Bytes payload = bytes.subspan(kHeader);
  return payload.size() + 1 >= kind.head.size() && std::equal(kind.head.begin() + 1, kind.head.end(), payload.begin());
}

}  // namespace

const Family kDisplayIdDataBlocks = {"data block", Kinds, Matches, true};

}  // namespace reedid::document::text
