#include "document/account/displayid_vendor.h"

#include <fmt/format.h>

#include <algorithm>

#include "document/account/cta_data_blocks.h"
#include "document/account/pnp_ids.h"
#include "document/account/records.h"
#include "document/account/values.h"
#include "document/account/vendors.h"
#include "document/printable.h"

namespace reedid::document {
namespace {

uint32_t OuiOf(const uint8_t (&id)[3]) {
  return uint32_t{id[0]} << 16 | uint32_t{id[1]} << 8 | id[2];
}

bool IsVesa(const uint8_t (&id)[3]) {
  return OuiOf(id) == REEDID_OUI_VESA;
}

// Some displays have the OUI the other way round.
bool IsApple(const uint8_t (&id)[3]) {
  const uint8_t reversed[3] = {id[2], id[1], id[0]};
  return OuiOf(id) == REEDID_OUI_APPLE || OuiOf(reversed) == REEDID_OUI_APPLE;
}

bool DescribeVesa(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  static constexpr const char* kTypes[] = {"eDP", "DisplayPort"};
  static constexpr const char* kStreams[] = {"one", "two, on 2 or 4 lanes", "four, on 4 lanes"};
  VesaVendorRecord r;
  if (DispID20_GetVesaVendor(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Interface", NameOf(kTypes, r.structureType), at(6));
  node.Add("Default colours", r.nativeColor != 0 ? "native, as in the display parameters" : "sRGB", at(6));
  node.Add("Overlap", fmt::format("{} pixels with the next panel", r.overlapPixels), at(7));
  node.Add("Streams", NameOf(kStreams, r.multiSst), at(7));
  if (r.dscPresent != 0) node.Add("DSC target", fmt::format("{:.2f} bits per pixel", r.dscBppX16 / 16.0), at(8, 2));
  return true;
}

}  // namespace

std::string MakerOrVendorText(const uint8_t (&id)[3], bool isOui) {
  const bool letters = !isOui && std::all_of(id, id + 3, [](uint8_t c) { return c >= 'A' && c <= 'Z'; });
  return letters ? MakerText(std::string(id, id + 3)) : VendorText(OuiOf(id));
}

bool DescribeVendor(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  const bool is20 = entry.tag == DISPID20_TAG_VENDOR;
  DispIdVendorRecord r;
  if ((is20 ? DispID20_GetVendor(&entry, &r) : DispID_GetVendor(&entry, &r)) != 0) return false;
  node.isPrivate = IsApple(r.vendor);  // calibration of the unit, and texts with its serial number
  node.Add("Vendor", node.isPrivate ? "Apple" : MakerOrVendorText(r.vendor, is20), at(3, 3));
  if (IsVesa(r.vendor) && DescribeVesa(entry, at, node)) return true;
  node.record = r;
  if (r.length != 0) node.AddBytes("Bytes", at(6, r.length));
  return true;
}

bool DescribeCtaInside(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  const int32_t count = DispID20_GetCtaCnt(&entry);
  std::vector<CeaDataBlock> blocks(static_cast<size_t>(std::max(count, 0)));
  if (!blocks.empty() && DispID20_GetCtaBlocks(&entry, blocks.data(), static_cast<uint32_t>(blocks.size())) != 0) {
    return false;
  }
  // What refers to other blocks, such as a map of video formats, means those beside it.
  CeaBlock model = {};
  model.dataBlocks = blocks.data();
  model.dataBlockCount = static_cast<uint8_t>(blocks.size());
  std::vector<std::string> kinds;
  for (const CeaDataBlock& block : blocks) {
    const ByteSource inside = at.Part(static_cast<size_t>(block.bytes - entry.bytes), block.size);
    Node& child = node.Child(DescribeCtaDataBlock(block, model, inside));
    kinds.push_back(child.label.empty() ? child.title : child.label);
  }
  node.summary = Joined(kinds);
  return true;
}

}  // namespace reedid::document
