#include "document/account/cta_infoframe.h"

#include <fmt/format.h>

#include "document/account/records.h"
#include "document/account/values.h"
#include "document/account/vendors.h"

namespace reedid::document {
namespace {

constexpr unsigned kVendorType = 1;

std::string FrameText(const InfoFrameEntry& entry) {
  static constexpr const char* kTypes[] = {"reserved", "vendor-specific", "AVI (video)", "SPD (source product)",
                                           "audio",    "MPEG source",     "NTSC VBI",    "dynamic range"};
  std::string text = NameOf(kTypes, entry.type);
  if (entry.type == kVendorType) {
    text += ", " + VendorText(entry.oui[0] | uint32_t{entry.oui[1]} << 8 | uint32_t{entry.oui[2]} << 16);
  }
  if (entry.payloadLength != 0) text += ": " + Hex({entry.payload, entry.payloadLength});
  return text;
}

}  // namespace

bool DescribeInfoFrame(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  InfoFrameRecord r;
  if (CEA_GetInfoFrame(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Vendor-specific", fmt::format("{} more at once", r.additionalVendor), at(3));
  size_t first = 4u + r.headerLength;
  for (unsigned i = 0; i < r.count; ++i) {
    const size_t size = 1u + (r.entries[i].type == kVendorType ? 3u : 0u) + r.entries[i].payloadLength;
    node.Add(fmt::format("InfoFrame {}", i + 1), FrameText(r.entries[i]), at(first, size));
    first += size;
  }
  return true;
}

}  // namespace reedid::document
