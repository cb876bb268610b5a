#include "document/text/fields.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstring>

#include "document/account/values.h"
#include "document/printable.h"

namespace reedid::document::text {
namespace {

// The bytes that hold 0 or 1; a name means the same in every record.
constexpr std::string_view kFlags =
    "audio separateAudio audioOverride powerManagement fixedTiming fixedPixelFormat supportsAI deinterlacing sizeIn1mm "
    "twoByteCodes reserved interlaced cvtStandard cvtReduced discreteFrequency seamlessTransition digitalInput standby "
    "suspend "
    "activeOff sRgbDefault preferredNative continuousFreq cvtAspect cvtStandardBlanking cvtReducedBlanking hShrink "
    "hStretch "
    "vShrink vStretch rate50 rate60 rate75 rate85 rate60rb underscan basicAudio ycbcr444 ycbcr422 rate32k rate44k1 "
    "rate48k "
    "rate88k2 rate96k rate176k4 rate192k bits16 bits20 bits24 FL_FR LFE1 FC BL_BR BC FLc_FRc RLC_RRC FLw_FRw TpFL_TpFR "
    "TpC TpFC "
    "LS_RS LFE2 TpBC SiL_SiR TpSiL_TpSiR TpBL_TpBR BtFC BtFL_BtFR TpLS_TpRS xvYCC601 xvYCC709 sYCC601 opYCC601 opRGB "
    "BT2020cYCC "
    "BT2020YCC BT2020RGB ICtCp DCI_P3 QY QS DC_48bit DC_36bit DC_30bit DC_Y444 DVI_Dual latencyPresent iLatencyPresent "
    "hdmiVideoPresent cnc threeD_present scdcPresent rrCapable cableStatus ccbpci lte340Scramble independentView "
    "dualView "
    "osdDisparity3d UHD_VIC dc48bit420 dc36bit420 dc30bit420 fapaEndExtended QMS mDelta cinemaVrr cnmVrr fva allm "
    "fapaStartLocation DSC_1p2 dscNative420 QMS_TFRmax QMS_TFRmin dscAllBpp dsc16bpc dsc12bpc dsc10bpc eotfSdr eotfHdr "
    "eotfPq "
    "eotfHlg staticMetadataType1 flagBit3 preferred hsyncPositive vsyncPositive ycc420 flagA flagB valid joc "
    "jocAcmod28 dtsX "
    "matObjects matNoHash frames1024 frames960 systemH mpegSurroundExplicit lowComplexityProfile baselineProfile "
    "displayPlace "
    "locations coordinates active caps0 hdrValid backlightControl localDimming replayPsrSwitch replaySprs panelReplay "
    "extraValid "
    "eotf0 eotf1 eotf3 eotfPqInterim eotf5 extra19Valid dpcdOffsetValid yuv422_12bit supports2160p60 globalDimming "
    "colorimetryP3 "
    "lowLatency parity centerZone surroundZone heightZone headphoneOnly matPcm48Only unknownFlag nativeRange "
    "noSeamless increaseNoJitter decreaseNoJitter singleEnclosure bezelPresent audio32k audio44k1 audio48k dscPresent "
    "cie1976 temporal firstIsWhite individualCurves fourParameters backlightSwitchable backlightDimmable directDrive "
    "noOverdrive audioDelayTold lensAdjustable lensDistance ipdUseful configurable cropping scalingConfigurable "
    "desktopUsage thirdPartyUsage";

constexpr const char* kAspects[] = {"1:1", "5:4", "4:3", "15:9", "16:9", "16:10", "64:27", "256:135", "unknown"};

enum class Form { kNumber, kFlag, kAspect, kAddress, kLetters, kOui, kText, kEstablished };

Form FormOf(const FieldInfo& field) {
  const std::string_view name = field.name;
  if (field.type == NumberType::kChar) return Form::kText;
  if (name == "established" || (name == "flags" && field.length == 48)) return Form::kEstablished;
  if (name == "physAddr") return Form::kAddress;
  if (name == "aspectRatio" || name == "cvtPreferredAspect") return Form::kAspect;
  if (&field == kRecordInfo<InfoFrameEntry>.Find("oui")) return Form::kOui;
  if (name == "manufacturerId" || name == "vendorId" || name == "oui" || (name == "vendor" && field.length == 3)) {
    return Form::kLetters;
  }
  return field.record == nullptr && field.type == NumberType::kU8 && Has(kFlags, name) ? Form::kFlag : Form::kNumber;
}

// "800x600@60"; empty for a code without a mode.
std::string ModeName(uint32_t code) {
  OfferedTiming mode;
  if (EstToMode(code, &mode) != 0) return "";
  const DtdTiming& t = mode.timing;
  const bool reduced = t.hblank == 160 && t.hactive != 640;
  return fmt::format("{}x{}@{}{}{}", t.hactive, t.interlaced != 0 ? 2 * t.vactive : t.vactive, (mode.rate + 500) / 1000,
                     t.interlaced != 0 ? "i" : "", reduced ? "rb" : "");
}

std::vector<std::string> ModeNames(uint32_t first, size_t count) {
  std::vector<std::string> names;
  for (uint32_t i = 0; i < count; ++i) {
    std::string name = ModeName(first + i);
    if (std::ranges::find(names, name) != names.end()) name.clear();  // its number tells it apart
    names.push_back(std::move(name));
  }
  return names;
}

// Of the codes of EstToMode: 17 in the base block, 48 in a descriptor.
const std::vector<std::string>& EstablishedNames(const FieldInfo& field) {
  static const std::vector<std::string> base = ModeNames(0, 17), descriptor = ModeNames(128, 48);
  return field.length == base.size() ? base : descriptor;
}

bool IsCount(const RecordInfo& info, const FieldInfo& field) {
  return std::ranges::any_of(info.fields, [&](const FieldInfo& other) { return info.CountOf(other) == &field; });
}

// An entry that says something is a valid one.
bool IsKey(const RecordInfo& info, const FieldInfo& field, Left left) {
  return !Has(left, field.name) && !IsCount(info, field) && field.name != std::string_view("valid");
}

std::pair<int64_t, int64_t> RangeOf(const FieldInfo& field) {
  switch (field.type) {
    case NumberType::kI8:
      return {-128, 127};
    case NumberType::kI16:
      return {-0x8000, 0x7FFF};
    case NumberType::kU16:
      return {0, 0xFFFF};
    case NumberType::kU32:
      return {0, 0xFFFFFFFF};
    default:
      return {0, FormOf(field) == Form::kFlag ? 1 : 0xFF};
  }
}

bool IsEmpty(const Json& json) {
  if (json.is_array())
    return std::ranges::all_of(json, [](const Json& item) { return !item.is_object() && IsEmpty(item); });
  return json == 0 || json == false || json == "";
}

std::string TextAt(const FieldInfo& field, const void* record) {
  const char* text = static_cast<const char*>(record) + field.offset;
  return {text, strnlen(text, field.length)};
}

// Three bytes as letters, or as an OUI, whose most significant byte people write first.
Json ThreeBytes(const FieldInfo& field, const void* record) {
  const auto byte = [&](size_t i) { return static_cast<uint8_t>(NumberAt(field, record, i)); };
  const uint8_t bytes[] = {byte(0), byte(1), byte(2)};
  const auto isLetter = [](uint8_t c) { return c >= 'A' && c <= 'Z'; };
  if (FormOf(field) == Form::kLetters && std::ranges::all_of(bytes, isLetter)) return std::string(bytes, bytes + 3);
  if (FormOf(field) == Form::kOui) return fmt::format("{:02x}-{:02x}-{:02x}", bytes[2], bytes[1], bytes[0]);
  return fmt::format("{:02x}-{:02x}-{:02x}", bytes[0], bytes[1], bytes[2]);
}

Json EstablishedToJson(const FieldInfo& field, const void* record) {
  Json names = Json::array();
  for (size_t i = 0; i < field.length; ++i) {
    if (NumberAt(field, record, i) == 0) continue;
    const std::string& name = EstablishedNames(field)[i];
    names.push_back(name.empty() ? Json(i) : Json(name));
  }
  return names;
}

Json NumberToJson(const FieldInfo& field, const void* record, size_t index) {
  const int64_t number = NumberAt(field, record, index);
  switch (FormOf(field)) {
    case Form::kFlag:
      return number <= 1 ? Json(number != 0) : Json(number);
    case Form::kAspect:
      return number < static_cast<int64_t>(std::size(kAspects)) ? Json(kAspects[number]) : Json(number);
    case Form::kAddress:
      return PhysAddrText(static_cast<uint16_t>(number));
    default:
      return number;
  }
}

Json FieldToJson(const RecordInfo& info, const FieldInfo& field, const void* record, bool all) {
  switch (FormOf(field)) {
    case Form::kText:
      return TextAt(field, record);
    case Form::kLetters:
    case Form::kOui:
      return ThreeBytes(field, record);
    case Form::kEstablished:
      return EstablishedToJson(field, record);
    default:
      break;
  }
  const auto item = [&](size_t i) {
    if (field.record == nullptr) return NumberToJson(field, record, i);
    const char* at = static_cast<const char*>(record) + field.offset + i * field.record->size;
    return FieldsToJson(*field.record, at, "", all);
  };
  if (field.length == 0) return item(0);
  Json items = Json::array();
  for (size_t i = 0; i < UsedLength(info, field, record); ++i) items.push_back(item(i));
  const bool mayEnd = !all && info.CountOf(field) == nullptr;
  while (mayEnd && !items.empty() && items.back() == Json::object()) items.erase(items.size() - 1);
  return items;
}

std::optional<int64_t> AddressFromText(std::string_view text) {
  int64_t address = 0;
  if (text.size() != 7) return std::nullopt;
  for (size_t i = 0; i < text.size(); ++i) {
    int digit = 0;
    if (i % 2 == 1 && text[i] != '.') return std::nullopt;
    if (i % 2 == 1) continue;
    if (std::from_chars(&text[i], &text[i] + 1, digit, 16).ec != std::errc()) return std::nullopt;
    address = address << 4 | digit;
  }
  return address;
}

std::optional<int64_t> NumberFromJson(const FieldInfo& field, const Json& json) {
  const Form form = FormOf(field);
  if (json.is_boolean() && form == Form::kFlag) return json.get<bool>() ? 1 : 0;
  if (json.is_string() && form == Form::kAddress) {
    if (const auto address = AddressFromText(json.get_ref<const std::string&>())) return address;
  }
  if (json.is_string() && form == Form::kAspect) {
    const auto* const aspect = std::ranges::find(kAspects, json.get_ref<const std::string&>());
    if (aspect != std::end(kAspects)) return aspect - kAspects;
    if (json == "5:3") return ASPECT_5_3;
  }
  return NumberOf(json);
}

std::string WantedText(const FieldInfo& field) {
  const auto [min, max] = RangeOf(field);
  switch (FormOf(field)) {
    case Form::kFlag:
      return "true or false";
    case Form::kAddress:
      return "an address such as \"1.2.0.0\"";
    case Form::kAspect:
      return "an aspect ratio such as \"16:9\"";
    default:
      return fmt::format("a number from {} to {}", min, max);
  }
}

void NumberFromJson(const FieldInfo& field, const Json& json, void* record, size_t index, const Place& place) {
  const auto [min, max] = RangeOf(field);
  const auto number = NumberFromJson(field, json);
  if (!number || *number < min || *number > max)
    return place.Fail(fmt::format("{} is not {}", Shown(json), WantedText(field)));
  SetNumber(field, record, index, *number);
}

void TextFromJson(const FieldInfo& field, const Json& json, void* record, const Place& place) {
  char* text = static_cast<char*>(record) + field.offset;
  if (!json.is_string() || json.get_ref<const std::string&>().size() >= field.length) {
    return place.Fail(fmt::format("{} is no text of up to {} characters", Shown(json), field.length - 1));
  }
  std::memset(text, 0, field.length);
  json.get_ref<const std::string&>().copy(text, field.length);
}

void ThreeFromJson(const FieldInfo& field, const Json& json, void* record, const Place& place) {
  ByteVector bytes;
  std::string text = json.is_string() ? json.get<std::string>() : "";
  if (text.size() == 3) {
    bytes.assign(text.begin(), text.end());
  } else if (text.size() == 8 && text[2] == '-' && text[5] == '-') {
    Problems problems;
    std::ranges::replace(text, '-', ' ');
    bytes = BytesFromJson(text, place.Quiet(problems));
    if (FormOf(field) == Form::kOui) std::ranges::reverse(bytes);
  }
  if (bytes.size() != 3) return place.Fail(fmt::format("{} is neither \"ABC\" nor \"00-0c-03\"", Shown(json)));
  for (size_t i = 0; i < 3; ++i) SetNumber(field, record, i, bytes[i]);
}

void EstablishedFromJson(const FieldInfo& field, const Json& json, void* record, const Place& place) {
  for (size_t i = 0; i < field.length; ++i) SetNumber(field, record, i, 0);
  const std::vector<std::string>& names = EstablishedNames(field);
  for (size_t at = 0; at < json.size(); ++at) {
    const std::string text = json[at].is_string() ? json[at].get<std::string>() : "";
    const auto name = text.empty() ? names.end() : std::ranges::find(names, text);
    const int64_t index = name != names.end() ? name - names.begin() : NumberOf(json[at]).value_or(-1);
    if (index < 0 || index >= static_cast<int64_t>(field.length)) {
      place.At(at).Fail(fmt::format("{} {}", Shown(json[at]), UnknownText(text, names)));
    } else {
      SetNumber(field, record, static_cast<size_t>(index), 1);
    }
  }
}

void ArrayFromJson(const RecordInfo& info, const FieldInfo& field, const Json& json, void* record, const Place& place) {
  const size_t unit = field.record != nullptr ? field.record->size : 0;
  char* at = static_cast<char*>(record) + field.offset;
  for (size_t i = 0; i < field.length; ++i) {
    const bool given = i < json.size();
    if (field.record == nullptr) {
      SetNumber(field, record, i, 0);
      if (given) NumberFromJson(field, json[i], record, i, place.At(i));
    } else {
      std::memset(at + i * unit, 0, unit);
      if (given) FieldsFromJson(json[i], *field.record, at + i * unit, "", {}, place.At(i));
    }
  }
  if (const FieldInfo* count = info.CountOf(field)) SetNumber(*count, record, 0, static_cast<int64_t>(json.size()));
}

void FieldFromJson(const RecordInfo& info, const FieldInfo& field, const Json& json, void* record, const Place& place) {
  const Form form = FormOf(field);
  if (form == Form::kText) return TextFromJson(field, json, record, place);
  if (form == Form::kLetters || form == Form::kOui) return ThreeFromJson(field, json, record, place);
  if (field.length != 0) {
    if (!json.is_array()) return place.Fail(fmt::format("{} is no list", Shown(json)));
    if (form == Form::kEstablished) return EstablishedFromJson(field, json, record, place);
    if (json.size() > field.length)
      return place.Fail(fmt::format("{} entries, there is room for {}", json.size(), field.length));
    return ArrayFromJson(info, field, json, record, place);
  }
  if (field.record == nullptr) return NumberFromJson(field, json, record, 0, place);
  FieldsFromJson(json, *field.record, static_cast<char*>(record) + field.offset, "", {}, place);
}

Json NumberSchema(const FieldInfo& field) {
  const auto [min, max] = RangeOf(field);
  Json number = {{"type", "integer"}, {"minimum", min}, {"maximum", max}};
  switch (FormOf(field)) {
    case Form::kFlag:
      return {{"type", Json::array({"boolean", "integer"})}, {"minimum", 0}, {"maximum", 255}};
    case Form::kAspect:
      return {{"type", Json::array({"string", "integer"})}};
    case Form::kAddress:
      return {{"type", "string"}, {"pattern", "^[0-9a-f](\\.[0-9a-f]){3}$"}};
    case Form::kText:
    case Form::kLetters:
    case Form::kOui:
      return {{"type", "string"}};
    case Form::kEstablished:
      return {{"type", Json::array({"string", "integer"})}};
    default:
      return number;
  }
}

Json FieldSchema(const FieldInfo& field) {
  Json item =
      field.record == nullptr ? NumberSchema(field) : Json{{"$ref", fmt::format("#/$defs/{}", field.record->name)}};
  const Form form = FormOf(field);
  const bool single = form == Form::kText || form == Form::kLetters || form == Form::kOui;
  if (field.length == 0 || single) return item;
  return {{"type", "array"}, {"items", std::move(item)}, {"maxItems", field.length}};
}

}  // namespace

bool Has(std::string_view words, std::string_view word) {
  for (size_t at = words.find(word); at != words.npos; at = words.find(word, at + 1)) {
    const size_t end = at + word.size();
    if ((at == 0 || words[at - 1] == ' ') && (end == words.size() || words[end] == ' ')) return true;
  }
  return false;
}

std::optional<int64_t> NumberOf(const Json& json) {
  if (json.is_number_unsigned() && json.get<uint64_t>() > INT64_MAX) return std::nullopt;
  if (json.is_number_integer()) return json.get<int64_t>();
  if (!json.is_string()) return std::nullopt;
  std::string_view text = json.get_ref<const std::string&>();
  const bool hex = text.starts_with("0x");
  if (hex) text.remove_prefix(2);
  int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, hex ? 16 : 10);
  return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::string Shown(const Json& json) {
  if (json.is_structured()) return json.is_array() ? "a list" : "an object";
  return Shortened(json.dump(-1, ' ', true, Json::error_handler_t::replace));
}

Json FieldsToJson(const RecordInfo& info, const void* record, Left left, bool all, const Json& keep) {
  Json json = Json::object();
  const FieldInfo* valid = info.Find("valid");
  if (valid != nullptr && NumberAt(*valid, record) == 0) return json;
  for (const FieldInfo& field : info.fields) {
    if (!IsKey(info, field, left)) continue;
    Json value = FieldToJson(info, field, record, all);
    const bool isZero = field.length == 0 && field.record == nullptr && NumberAt(field, record) == 0;
    if (all || !(isZero || IsEmpty(value)) || keep.contains(field.name)) json[field.name] = std::move(value);
  }
  return json;
}

void FieldsFromJson(const Json& json, const RecordInfo& info, void* record, Left left,
                    const std::vector<std::string>& known, const Place& place) {
  if (!json.is_object()) return place.Fail(fmt::format("{} is no object with fields", Shown(json)));
  if (const FieldInfo* valid = info.Find("valid")) SetNumber(*valid, record, 0, json.empty() ? 0 : 1);
  for (const auto& [key, value] : json.items()) {
    const FieldInfo* field = info.Find(key);
    if (field != nullptr && IsKey(info, *field, left)) {
      FieldFromJson(info, *field, value, record, place.Key(key));
    } else if (std::ranges::find(known, key) == known.end()) {
      std::vector<std::string> words = KeysOf(info, left);
      words.insert(words.end(), known.begin(), known.end());
      place.Key(key).Fail(UnknownText(key, words));
    }
  }
}

void CompareFields(const Json& json, const RecordInfo& info, const void* wanted, const void* got, Left left,
                   const Place& place) {
  for (const FieldInfo& field : info.fields) {
    if (!json.contains(field.name) || !IsKey(info, field, left)) continue;
    const Json want = FieldToJson(info, field, wanted, true), have = FieldToJson(info, field, got, true);
    if (want == have) continue;
    place.Key(field.name).Fail(fmt::format("{} cannot be written here; it would read as {}", Shown(want), Shown(have)));
  }
}

Json FieldsSchema(const RecordInfo& info, Left left) {
  Json properties = Json::object();
  for (const FieldInfo& field : info.fields) {
    if (IsKey(info, field, left)) properties[field.name] = FieldSchema(field);
  }
  return properties;
}

std::vector<std::string> KeysOf(const RecordInfo& info, Left left) {
  std::vector<std::string> keys;
  for (const FieldInfo& field : info.fields) {
    if (IsKey(info, field, left)) keys.emplace_back(field.name);
  }
  return keys;
}

Json ListOf(const Json& json, const char* key, const Place& place) {
  Json list = json.value(key, Json::array());
  if (list.is_array()) return list;
  place.Key(key).Fail(fmt::format("{} is no list", Shown(list)));
  return Json::array();
}

void CheckKeys(const Json& json, const std::vector<std::string>& keys, const Place& place) {
  for (const auto& [key, value] : json.items()) {
    if (std::ranges::find(keys, key) == keys.end()) place.Key(key).Fail(UnknownText(key, keys));
  }
}

ByteVector BytesFromJson(const Json& json, const Place& place) {
  ByteVector bytes;
  const std::string text = json.is_string() ? json.get<std::string>() : "?";
  int high = -1;
  for (const char c : text) {
    int digit = 0;
    if (c == ' ' && high < 0) continue;
    if (std::from_chars(&c, &c + 1, digit, 16).ec != std::errc()) {
      place.Fail(fmt::format("{} are no bytes such as \"00 ff 10\"", Shown(json)));
      return {};
    }
    if (high >= 0) bytes.push_back(static_cast<uint8_t>(high << 4 | digit));
    high = high < 0 ? digit : -1;
  }
  if (high >= 0) place.Fail("ends in half a byte");
  return bytes;
}

}  // namespace reedid::document::text
