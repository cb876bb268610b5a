// The view's part of CTA extensions: data blocks, detailed timings, video codes and the two HDMI blocks.
#include <algorithm>

#include "document/check/image_view.h"

namespace reedid::document::check {
namespace {

// CTA-861, 7.5.1: codes with the native mark are 64 VICs only.
Svd ReadSvd(const DataBlock& block, size_t byte) {
  Svd svd;
  svd.at = block.at + byte;
  svd.code = block.bytes[byte];
  svd.dataBlock = &block;
  svd.native = svd.code >= 129 && svd.code <= 192;
  const bool isVic = (svd.code >= 1 && svd.code <= 127) || (svd.code >= 193 && svd.code <= 253);
  svd.vic = svd.native ? svd.code - 128 : isVic ? svd.code : 0;
  svd.timing = TimingOfVic(svd.vic);
  return svd;
}

}  // namespace

void ImageView::ReadCta(unsigned block) {
  CtaBlock cta;
  cta.block = block;
  cta.at = block * kBlockSize;
  cta.bytes = Block(block);
  cta.revision = cta.bytes[1];
  cta.dtdOffset = cta.bytes[2];
  cta.flags = cta.bytes[3];
  const bool hasDataBlocks = cta.revision >= 3 && cta.dtdOffset >= 4 && cta.dtdOffset <= 127;
  const size_t end = hasDataBlocks ? cta.dtdOffset : 4;
  for (size_t at = 4, index = 0; at < end; ++index) {
    const size_t size = (cta.bytes[at] & 0x1F) + 1;
    if (at + size > end) {
      cta.overlongAt = cta.at + at;
      break;
    }
    DataBlock data;
    data.at = cta.at + at;
    data.cta = static_cast<unsigned>(ctas.size());
    data.index = static_cast<unsigned>(index);
    data.bytes = cta.bytes.From(at, size);
    data.kind = data.bytes[0] >> 5;
    if (data.kind == CEA_TAG_EXTENDED && size > 1) data.kind = kExtended + data.bytes[1];
    data.place = PlaceAt(data.at);
    data.place.dataBlock = data.index;
    dataBlocks.push_back(data);
    at += size;
  }
  size_t at = cta.dtdOffset < 4 ? 127 : cta.dtdOffset;
  for (; at + kSlotSize <= 127 && !cta.bytes.From(at, kSlotSize).AllZero(); at += kSlotSize) {
    if (cta.bytes[at] != 0 || cta.bytes[at + 1] != 0) ReadDtd(cta.at + at, std::nullopt);
  }
  cta.timingsEnd = cta.dtdOffset == 0 ? 4 : at;
  ctas.push_back(cta);
}

// What refers to other data blocks or counts them: after all of them are known.
void ImageView::ReadCodes() {
  for (const DataBlock& block : dataBlocks) {
    if (block.kind == kVideo) {
      for (size_t i = 1; i < block.bytes.size(); ++i) svds.push_back(ReadSvd(block, i));
    } else if (block.kind == kY420Video) {
      for (size_t i = 2; i < block.bytes.size(); ++i) y420Svds.push_back(ReadSvd(block, i));
    } else if (block.kind == kVideoCapability && block.L() >= 2 && videoCapability == nullptr) {
      videoCapability = &block;
    } else if (block.kind == kExtensionOverride && extensionOverride == nullptr) {
      extensionOverride = &block;
    } else if (block.IsVendor(REEDID_OUI_HDMI) && !hdmi) {
      ReadHdmi(block);
    } else if ((block.IsVendor(REEDID_OUI_HDMI_FORUM) || block.kind == kSinkCapability) && !sink) {
      sink = SinkCapability{&block};
    }
  }
}

// HDMI 1.4b, table 8-16: latencies, video formats and 3D stand one behind the other as far as byte 8 announces them.
void ImageView::ReadHdmi(const DataBlock& block) {
  const Bytes& v = block.bytes;
  HdmiBlock& h = hdmi.emplace();
  h.block = &block;
  h.flags = v[6];
  h.maxTmds = v[7] * 5;
  const unsigned announced = v[8];
  size_t at = 9;
  if ((announced & 0x80) != 0) at += 2;
  if ((announced & 0xC0) == 0xC0) at += 2;
  h.hasVideo = (announced & 0x20) != 0;
  if (h.hasVideo) {
    const unsigned vicLength = v[at + 1] >> 5, length3d = v[at + 1] & 0x1F;
    h.has3d = (v[at] & 0x80) != 0;
    h.multi3d = v[at] >> 5 & 3;
    h.imageSize = v[at] >> 3 & 3;
    h.vics = v.From(at + 2, vicLength);
    h.part3d = v.From(at + 2 + vicLength, length3d);
    at += 2 + vicLength + length3d;
  }
  h.wanted = v.size() > 8 ? static_cast<unsigned>(at) : 0;
}

}  // namespace reedid::document::check
