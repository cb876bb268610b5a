// Established timings (EDID 1.4, 3.8 and 3.10.3.9) and their DMT identifiers.
//
// Two tables that do not mirror each other, and are not to be derived from each other (odd on purpose:
// docs/oddities.md): the codes 140..143 expand into other formats than those that yield these codes, code 159 (DMT 44)
// has no way back, and the DMT row of our own yields established index 0.

#include <cstdint>
#include <iterator>

#include "reedid/timing.h"
#include "timing/tables.h"

namespace reedid {
namespace {

constexpr uint8_t kFirstEst3Code = 128;
constexpr uint8_t kNoEst12 = 17;
constexpr uint8_t kNoEst3 = 176;

// One entry for each bit of bytes 35 and 36, lowest bit first, then the only one of byte 37, its highest.
constexpr uint8_t kEst12ToDmt[] = {9, 8, 6, 5, 0, 4, 0, 0, 36, 18, 17, 16, 0, 0, 11, 10, 0};
static_assert(std::size(kEst12ToDmt) == kNoEst12);

// By code - 128, one row for each byte of the bitmap, bit 0 first.
constexpr uint8_t kEst3ToDmt[] = {
    21, 19, 12, 14, 7,  3,  2,  1,   //
    37, 35, 33, 32, 33, 0,  32, 0,   //
    43, 42, 41, 49, 48, 47, 46, 39,  //
    53, 52, 51, 60, 59, 58, 57, 44,  //
    69, 68, 66, 65, 63, 62, 55, 54,  //
    0,  0,  0,  0,  74, 73, 71, 70,  //
};
static_assert(std::size(kEst3ToDmt) == kNoEst3 - kFirstEst3Code);

// By DMT identifier, ten a row: below 17 an index, from 128 on a code.
constexpr uint8_t kDmtToEst[] = {
    176, 135, 134, 133, 5,   3,   2,   132, 1,   0,    // 0
    15,  14,  130, 176, 131, 176, 11,  10,  9,   129,  // 10
    176, 128, 143, 142, 141, 140, 176, 176, 176, 176,  // 20
    176, 176, 139, 138, 176, 137, 8,   136, 176, 151,  // 30
    176, 146, 145, 144, 176, 176, 150, 149, 148, 147,  // 40
    176, 154, 153, 152, 167, 166, 176, 158, 157, 156,  // 50
    155, 176, 165, 164, 176, 163, 162, 176, 161, 160,  // 60
    175, 174, 176, 173, 172, 176, 176, 176, 176, 176,  // 70
    176, 176, 176, 176, 176, 176, 176, 176, 176, 0,    // 80
};
static_assert(std::size(kDmtToEst) == kDmtRows);

}  // namespace
}  // namespace reedid

using namespace reedid;

uint32_t Est12ToDmt(uint32_t index) {
  return index < kNoEst12 ? kEst12ToDmt[index] : 0;
}

uint32_t Est3ToDmt(uint32_t code) {
  return code >= kFirstEst3Code && code < kNoEst3 ? kEst3ToDmt[code - kFirstEst3Code] : 0;
}

uint32_t DmtToEst12(uint32_t id) {
  return id < kDmtRows && kDmtToEst[id] < kNoEst12 ? kDmtToEst[id] : kNoEst12;
}

uint32_t DmtToEst3(uint32_t id) {
  return id < kDmtRows && kDmtToEst[id] >= kFirstEst3Code ? kDmtToEst[id] : kNoEst3;
}
