// What vendors say of the display as a product. Bytes 1..3 of a vendor-specific block are the OUI.
//
// UHD Alliance, OUI 1A-BB-FB: 4 content type, 5 content subtype
// Microsoft, OUI CA-12-5C, 22 bytes: 4 version, 5 desktop 6, third parties 5 (version 3), use 4..0, 6-21 ContainerID
// Product information (CTA-861.7), extended tag 33: 2-4 OUI, high byte first, 5 version, 6.. name

#include "base/pinned.h"
#include "cea/exact_codec.h"
#include "reedid/cea_display.h"

namespace reedid {
namespace {

PIN_FIELDS(FilmmakerRecord, 0, 1, contentType, contentSubtype);
PIN_SIZE(FilmmakerRecord, 2);
PIN_FIELDS(MicrosoftVsdbRecord, 0, 1, version, desktopUsage, thirdPartyUsage, primaryUse);
PIN_FIELDS(MicrosoftVsdbRecord, 4, 16, containerId);
PIN_SIZE(MicrosoftVsdbRecord, 20);
PIN_FIELDS(ProductInformationRecord, 0, 3, oui);
PIN_FIELDS(ProductInformationRecord, 3, 1, version, length);
PIN_FIELDS(ProductInformationRecord, 5, 26, name);
PIN_SIZE(ProductInformationRecord, 31);

struct Filmmaker : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_VENDOR, 0, 6, 32};
  static constexpr uint32_t kOui = REEDID_OUI_UHD_ALLIANCE;
  static unsigned Size(const FilmmakerRecord&, const uint8_t*) { return 6; }

  static void Layout(const ExactIo& io, FilmmakerRecord& r, unsigned) {
    io(r.contentType, Place{4});
    io(r.contentSubtype, Place{5});
  }
};

struct Microsoft : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_VENDOR, 0, 22, 22};
  static constexpr uint32_t kOui = REEDID_OUI_MICROSOFT;
  static bool Takes(Bytes bytes) { return bytes[4] >= 1 && bytes[4] <= 3; }
  static unsigned Size(const MicrosoftVsdbRecord&, const uint8_t*) { return 22; }

  static void Layout(const ExactIo& io, MicrosoftVsdbRecord& r, unsigned) {
    io(r.version, Place{4});
    if (r.version == 3) {
      io(r.desktopUsage, Place{5, 6, 1});
      io(r.thirdPartyUsage, Place{5, 5, 1});
    }
    io(r.primaryUse, Place{5, 0, 5});
    io.Copy(r.containerId, sizeof r.containerId, 6);
  }
};

struct ProductInformation : ExactDefaults {
  static constexpr unsigned kFixed = 6;
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_PRODUCT_INFORMATION, kFixed, 32};
  static bool Takes(Bytes bytes) { return bytes[5] == 0; }
  static bool Holds(const ProductInformationRecord& r) { return r.length <= sizeof r.name; }
  static unsigned Size(const ProductInformationRecord& r, const uint8_t*) { return kFixed + r.length; }

  static void Layout(const ExactIo& io, ProductInformationRecord& r, unsigned size) {
    io.Copy(r.oui, sizeof r.oui, 2);
    io(r.version, Place{5});
    if (io.Reads()) r.length = Low8(size - kFixed);
    io.Copy(r.name, r.length, kFixed);
  }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetFilmmaker(const CeaDataBlock* entry, FilmmakerRecord* record) {
  return GetExact<Filmmaker>(entry, record);
}

int32_t CEA_SetFilmmaker(const FilmmakerRecord* record, CeaDataBlock* entry) {
  return SetExact<Filmmaker>(record, entry);
}

int32_t CEA_GetMicrosoftVSDB(const CeaDataBlock* entry, MicrosoftVsdbRecord* record) {
  return GetExact<Microsoft>(entry, record);
}

int32_t CEA_SetMicrosoftVSDB(const MicrosoftVsdbRecord* record, CeaDataBlock* entry) {
  return SetExact<Microsoft>(record, entry);
}

int32_t CEA_GetProductInformation(const CeaDataBlock* entry, ProductInformationRecord* record) {
  return GetExact<ProductInformation>(entry, record);
}

int32_t CEA_SetProductInformation(const ProductInformationRecord* record, CeaDataBlock* entry) {
  return SetExact<ProductInformation>(record, entry);
}
