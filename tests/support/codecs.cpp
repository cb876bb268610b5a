#include "tests/support/codecs.h"

#include "tests/support/codec_boxes.h"

namespace reedid::test {
namespace {

// The capability map belongs to a video block: here VIC 1 to 9, 154, and 11 to 30.
const DataBlock kMapped(
    Hex("5E 01 02 03 04 05 06 07 08 09 DA 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D "
        "1E"));

int32_t GetMap(const CeaDataBlock* entry, Vic420Record* record) {
  return CEA_Get420CMDB(&kMapped, entry, record);
}

int32_t SetMap(const Vic420Record* record, CeaDataBlock* entry) {
  return CEA_Set420CMDB(record, &kMapped, entry);
}

// The version and the continuous frequencies of the base block that range limits stand in.
template <uint8_t kRevision, uint8_t kContinuous>
VesaBlock BaseBlock() {
  VesaBlock model = {};
  model.version = 1;
  model.revision = kRevision;
  model.continuousFreq = kContinuous;
  return model;
}

template <uint8_t kRevision, uint8_t kContinuous>
int32_t GetRange(const DtdSlot* slot, RangeLimits* limits) {
  const VesaBlock model = BaseBlock<kRevision, kContinuous>();
  return VESA_GetRangeLimits(&model, slot, limits);
}

template <uint8_t kRevision, uint8_t kContinuous>
int32_t SetRange(const RangeLimits* limits, DtdSlot* slot) {
  const VesaBlock model = BaseBlock<kRevision, kContinuous>();
  return VESA_SetRangeLimits(&model, limits, slot);
}

template <class Entry>
Codec<Entry> Shared(Codec<Entry> codec) {
  codec.shared = true;
  return codec;
}

template <class Entry>
Codec<Entry> Exact(Codec<Entry> codec, std::vector<unsigned> sizes = {}) {
  codec.exact = true;
  codec.sizes = std::move(sizes);
  return codec;
}

// Name, prefix and rest of the exported names, box, what tells the kind of block, sizes, fidelity.
#define CODEC(name, prefix, function, ...) \
  CODEC_BY(name, prefix, function, prefix##_Get##function, prefix##_Set##function, __VA_ARGS__)
// Through functions of our own, when a codec wants to know more than its block.
#define CODEC_BY(name, prefix, function, get, set, Box, head, ...) \
  Row<Box, get, set, Entry>({name, #prefix "_Get" #function, #prefix "_Set" #function, Hex(head), __VA_ARGS__})

CodecList<CeaDataBlock> CtaCodecs() {
  using Entry = CeaDataBlock;
  return {
      CODEC("VDB", CEA, VDB, Plain<VdbRecord>, "40", 2, 32, kNormalises, "one native mark, and none above VIC 64"),
      CODEC("ADB", CEA, ADB, Audio, "20", 4, 31, kNormalises, "what the format of a descriptor has no place for"),
      CODEC("SADB", CEA, SADB, Plain<SpeakerRecord>, "80", 4, 31),
      CODEC("CDB", CEA, CDB, Plain<ColorimetryRecord>, "E0 05", 4, 31),
      CODEC("VCDB", CEA, VCDB, Plain<VideoCapRecord>, "E0 00", 3, 31),
      CODEC("420VDB", CEA, 420VDB, Plain<Vic420Record>, "E0 0E", 3, 32),
      CODEC_BY("420CMDB", CEA, 420CMDB, GetMap, SetMap, Plain<Vic420Record>, "E0 0F", 3, 6),
      CODEC("H14bVSDB", CEA, H14bVSDB, Plain<H14bRecord>, "60 03 0C 00", 6, 31, kNormalises,
            "latencies without their flag, parts without content"),
      CODEC("HFVSDB", CEA, HFVSDB, Plain<HfVsdbRecord>, "60 D8 5D C4", 8, 31, kNormalises,
            "parts that others do not call for"),
      CODEC("StaticHDR", CEA, StaticHDR, Plain<StaticHdrRecord>, "E0 06", 4, 31),
      CODEC("CTA type VII", CEA, 20ByteDTD, Plain<Cea20ByteDtdRecord>, "E0 22", 23, 32),
      CODEC("CTA type VIII", CEA, TimingCode, Codes, "E0 23", 4, 32),
      CODEC("CTA type X", CEA, 6ByteCVT, Items<CvtTiming>, "E0 2A", 9, 32, kNormalises,
            "descriptors are as long as the first needs"),
      // Versions are kinds of their own here.
      Exact(CODEC("FreeSync 1", CEA, AmdVSDB, Plain<AmdVsdbRecord>, "60 1A 00 00 01", 9, 32)),
      Exact(CODEC("FreeSync 2", CEA, AmdVSDB, Plain<AmdVsdbRecord>, "60 1A 00 00 02", 9, 32)),
      Exact(CODEC("FreeSync 3", CEA, AmdVSDB, Plain<AmdVsdbRecord>, "60 1A 00 00 03", 9, 32)),
      Exact(CODEC("G-SYNC", CEA, NvidiaVSDB, Plain<NvidiaVsdbRecord>, "60 4B 04 00 01", 6, 32)),
      Exact(CODEC("Dolby Vision 0", CEA, DolbyVision, Plain<DolbyVisionRecord>, "E0 01 46 D0 00 07", 26, 26)),
      Exact(CODEC("Dolby Vision 1", CEA, DolbyVision, Plain<DolbyVisionRecord>, "E0 01 46 D0 00 24", 12, 15), {12, 15}),
      Exact(CODEC("Dolby Vision 2", CEA, DolbyVision, Plain<DolbyVisionRecord>, "E0 01 46 D0 00 44", 12, 32)),
      Exact(CODEC("Dolby audio", CEA, DolbyAudio, Plain<DolbyAudioRecord>, "E0 11 46 D0 00", 6, 32)),
      Exact(CODEC("HDR10+", CEA, Hdr10Plus, Plain<Hdr10PlusRecord>, "E0 01 8B 84 90", 6, 32)),
      Exact(CODEC("HDMI 1.4b 3D", CEA, H14b3D, Plain<H14b3dRecord>, "60 03 0C 00", 6, 32)),
      Exact(CODEC("HDMI Forum in full", CEA, HFVSDBScds, Plain<HfScdsRecord>, "60 D8 5D C4", 8, 32)),
      Exact(CODEC("sink capability", CEA, HFSCDB, Plain<HfScdsRecord>, "E0 79", 8, 32)),
      Exact(CODEC("extension override", CEA, HFEEODB, Plain<ExtensionOverrideRecord>, "E0 78", 3, 32)),
      Exact(CODEC("audio formats", CEA, AudioFormats, Plain<AudioFormatsRecord>, "20", 4, 32)),
      Exact(CODEC("native resolution", CEA, NVRDB, Plain<NativeResolutionRecord>, "E0 08", 3, 8), {3, 4, 8}),
      Exact(CODEC("format preference", CEA, VFPDB, Plain<FormatPreferenceRecord>, "E0 0D", 3, 32)),
      Exact(CODEC("InfoFrame", CEA, InfoFrame, Plain<InfoFrameRecord>, "E0 20", 4, 32)),
      Exact(CODEC("room", CEA, RCDB, Plain<RoomRecord>, "E0 13", 6, 32)),
      Exact(CODEC("speaker location", CEA, SLDB, Plain<SpeakerLocationRecord>, "E0 14", 4, 32)),
      Exact(CODEC("VESA device", CEA, VesaDevice, Plain<VesaDeviceRecord>, "E0 02", 32, 32)),
      Exact(CODEC("VESA transfer", CEA, VesaTransfer, Plain<VesaTransferRecord>, "A0", 8, 32), {8, 16, 32}),
      Exact(CODEC("video formats", CEA, VFDB, Plain<VideoFormatsRecord>, "C0", 2, 32)),
      // What stands in byte 3 tells the size.
      Exact(CODEC("HDMI audio", CEA, HdmiAudio, Plain<HdmiAudioRecord>, "E0 12 00 02", 3, 16), {3, 16}),
      Exact(CODEC("HDMI audio without 3D", CEA, HdmiAudio, Plain<HdmiAudioRecord>, "E0 12 04 00", 3, 4), {3, 4}),
      Exact(CODEC("tone mapping", CEA, HFSBTMDB, Plain<ToneMappingRecord>, "E0 7A 80 00", 22, 32)),
      Exact(CODEC("tone mapping of a gamut", CEA, HFSBTMDB, Plain<ToneMappingRecord>, "E0 7A 80 C1", 4, 32)),
      Exact(CODEC("filmmaker mode", CEA, Filmmaker, Plain<FilmmakerRecord>, "60 FB BB 1A", 6, 32)),
      Exact(CODEC("Microsoft", CEA, MicrosoftVSDB, Plain<MicrosoftVsdbRecord>, "60 5C 12 CA 03", 22, 22)),
      Exact(CODEC("product information", CEA, ProductInformation, Plain<ProductInformationRecord>, "E0 21 00 00 00 00",
                  6, 32)),
      Exact(CODEC("dynamic HDR", CEA, DynamicHDR, Plain<DynamicHdrRecord>, "E0 07", 2, 32)),
  };
}

CodecList<DispIdDataBlock> DispIdCodecs() {
  using Entry = DispIdDataBlock;
  return {
      CODEC("PIDB", DispID, PIDB, Product, "00", 15, 255),
      CODEC("PIDB 2.0", DispID20, PIDB, Product, "20", 15, 255),
      CODEC("DPDB", DispID, DPDB, Plain<DisplayParamsRecord>, "01", 15, 15, kNormalises, "the aspect ratio"),
      CODEC("DPDB 2.0", DispID20, DPDB, Plain<DisplayParams20Record>, "21", 32, 32),
      Shared(CODEC("type I", DispID, 20ByteDTD, Items<DtdTiming>, "03", 23, 251)),
      Shared(CODEC("type VII", DispID20, 20ByteDTD, Items<DtdTiming>, "22", 23, 251)),
      CODEC("type II", DispID, 11ByteDTD, Items<DtdTiming>, "04", 14, 251),
      CODEC("type VI", DispID, 17ByteDTD, Items<DtdTiming>, "13", 3, 251, kDrifts, "aspect ratio and image size"),
      CODEC("type III", DispID, 3ByteCVT, Items<CvtTiming>, "05", 6, 251),
      CODEC("type V", DispID, 7ByteCVT, Items<CvtTiming>, "11", 10, 251),
      CODEC("type IX", DispID20, 6ByteCVT, Items<CvtTiming>, "24", 3, 251),
      CODEC("type X", DispID20, 6ByteCVT, Items<CvtTiming>, "2A", 3, 251),
      Shared(CODEC("type IV", DispID, TimingCode, Codes, "06", 3, 251)),
      Shared(CODEC("type VIII", DispID20, TimingCode, Codes, "23", 3, 251)),
      CODEC("VESA map", DispID, VESATiming, Items<uint8_t>, "07", 13, 251, kOneWay, "written a byte too long"),
      CODEC("CTA map", DispID, CEATiming, Items<uint8_t>, "08", 11, 251, kOneWay, "written a byte too long"),
      CODEC("range limits", DispID, RangeLimits, Plain<DispIdRangeLimits>, "09", 18, 18),
      CODEC("range limits 2.0", DispID20, RangeLimits, Plain<DispIdRangeLimits>, "25", 12, 12),
      CODEC("serial number", DispID, SerialNumber, Text, "0A", 4, 255, kNormalises, "what stands behind the end"),
      CODEC("data string", DispID, DataString, Text, "0B", 4, 255, kOneWay, "written as a serial number"),
      CODEC("CTA blocks", DispID20, CtaBlocks, InnerBlocks, "81", 3, 251, kNormalises, "padding"),
      Exact(CODEC("Adaptive-Sync", DispID20, AdaptiveSync, Plain<AdaptiveSyncRecord>, "2B", 3, 251)),
      Exact(CODEC("tiles", DispID, TiledDisplay, Plain<TiledDisplayRecord>, "12", 25, 25)),
      Exact(CODEC("tiles 2.0", DispID20, TiledDisplay, Plain<TiledDisplayRecord>, "28", 25, 25)),
      Exact(CODEC("interface features", DispID20, InterfaceFeatures, Plain<InterfaceFeaturesRecord>, "26", 12, 19)),
      Exact(CODEC("display interface", DispID, DisplayInterface, Plain<DisplayInterfaceRecord>, "0F", 13, 13)),
      Exact(CODEC("ContainerID", DispID20, ContainerID, Plain<ContainerIdRecord>, "29", 19, 19)),
      Exact(CODEC("vendor", DispID, Vendor, Plain<DispIdVendorRecord>, "7F", 6, 251)),
      Exact(CODEC("vendor 2.0", DispID20, Vendor, Plain<DispIdVendorRecord>, "7E", 6, 251)),
      Exact(CODEC("VESA vendor", DispID20, VesaVendor, Plain<VesaVendorRecord>, "7E 00 00 3A 02 92", 8, 10), {8, 10}),
      // What stands in byte 3 tells the size.
      Exact(CODEC("colours", DispID, Color, Plain<DispIdColorRecord>, "02 00 00 31", 16, 16)),
      Exact(CODEC("standard colours", DispID, Color, Plain<DispIdColorRecord>, "02 00 00 82", 11, 11)),
      Exact(CODEC("transfer", DispID, Transfer, Plain<DispIdTransferRecord>, "0E", 4, 251)),
      Exact(CODEC("stereo", DispID, Stereo, Plain<StereoRecord>, "10 41 00 03", 7, 251)),
      Exact(CODEC("stereo 2.0", DispID20, Stereo, Plain<StereoRecord>, "27 81 00 01", 5, 251)),
      Exact(CODEC("brightness", DispID20, Brightness, Plain<BrightnessRecord>, "2E", 9, 9)),
      Exact(CODEC("display device", DispID, DisplayDevice, Plain<DisplayDeviceRecord>, "0C", 16, 16)),
      Exact(CODEC("power sequencing", DispID, PowerSequencing, Plain<PowerSequencingRecord>, "0D", 9, 9)),
      Exact(CODEC("head-mounted", DispID20, HeadMounted, Plain<HeadMountedRecord>, "2C", 82, 82)),
      Exact(CODEC("layer", DispID20, HeadMountedLayer, Plain<HeadMountedLayerRecord>, "2D", 23, 23)),
  };
}

CodecList<DtdSlot> SlotCodecs() {
  using Entry = DtdSlot;
  using SixTimings = Items<StdTiming, 6>;
  constexpr auto kText = "what stands behind the end";
  return {
      CODEC("DTD", VESA, DTD, Plain<DtdTiming>, ""),
      CODEC("serial number", VESA, SerialNumber, Text, "00 00 00 FF", 18, 18, kNormalises, kText),
      CODEC("data string", VESA, DataString, Text, "00 00 00 FE", 18, 18, kNormalises, kText),
      CODEC("product name", VESA, ProductName, Text, "00 00 00 FC", 18, 18, kNormalises, kText),
      CODEC_BY("range limits 1.3", VESA, RangeLimits, (GetRange<3, 1>), (SetRange<3, 1>), Plain<RangeLimits>,
               "00 00 00 FD", 18, 18),
      CODEC_BY("range limits 1.4", VESA, RangeLimits, (GetRange<4, 1>), (SetRange<4, 1>), Plain<RangeLimits>,
               "00 00 00 FD", 18, 18, kNormalises, "offsets that do not serve"),
      CODEC_BY("discrete range limits", VESA, RangeLimits, (GetRange<4, 0>), (SetRange<4, 0>), Plain<RangeLimits>,
               "00 00 00 FD", 18, 18, kNormalises, "what only continuous frequencies have"),
      CODEC("standard timings", VESA, StandardTimings, SixTimings, "00 00 00 FA", 18, 18, kNormalises,
            "rates are read in six bits and written in five"),
      CODEC("CVT codes", VESA, CvtTiming, Plain<VesaCvtRecord>, "00 00 00 F8", 18, 18, kNormalises, "unused codes"),
      CODEC("established timings III", VESA, Est3Timing, Plain<Est3Record>, "00 00 00 F7", 18, 18),
  };
}

}  // namespace

const CodecTable& AllCodecs() {
  static const CodecTable table = {CtaCodecs(), DispIdCodecs(), SlotCodecs()};
  return table;
}

ByteVector BlockOf(const Codec<CeaDataBlock>& codec, const ByteVector& payload) {
  ByteVector block = Concat({codec.head, payload});
  block[0] = static_cast<uint8_t>(block[0] | (block.size() - 1));
  return block;
}

ByteVector BlockOf(const Codec<DispIdDataBlock>& codec, const ByteVector& payload) {
  ByteVector block = Concat({codec.head, payload});
  if (codec.head.size() == 1) block.insert(block.begin() + 2, 0);  // else its place is in the head
  block[2] = static_cast<uint8_t>(block.size() - 3);
  return block;
}

ByteVector BlockOf(const Codec<DtdSlot>& codec, const ByteVector& payload) {
  ByteVector block = Concat({codec.head, payload});
  block.resize(18);
  return block;
}

}  // namespace reedid::test
