// How fast a picture may be that two displays both take over their links.

#include "patch/hdmi_video.h"
#include "transform/common/mixes.h"
#include "transform/common/records.h"

namespace reedid {
namespace {

// Places in an HDMI 1.4b VSDB (HDMI 1.4b, table 8-16) and in both HDMI Forum blocks (HDMI 2.1, table 10-6).
constexpr unsigned kTmdsByte = 7, kForumTmdsByte = 5, kForumFrlByte = 7, kForumDscByte = 11;
constexpr uint32_t kTmdsStep = 5000;  // kHz
constexpr uint32_t kUntold = 165000;  // kHz that a display is counted on which tells none, or is none of HDMI

struct HdmiLink {
  bool hdmi = false, forum = false, dsc = false;
  uint32_t tmds = 0, forumTmds = 0;  // kHz; 0 where none is told
  uint8_t frl = 0;

  uint32_t clock() const {
    const uint32_t told = Higher(tmds, forumTmds);
    return told == 0 ? kNoClock : Higher(told, FrlClock(frl, dsc));
  }
};

HdmiLink LinkOf(const EdidHandle& image) {
  const Bytes hdmi = FirstDataBlock(image, IsHdmi14b), forum = FirstDataBlock(image, IsHdmiForum);
  HdmiLink link;
  link.hdmi = hdmi.size() != 0;
  link.tmds = hdmi[kTmdsByte] * kTmdsStep;
  if (forum.size() <= kForumFrlByte) return link;  // cut off: no codec reads it
  link.forum = true;
  link.dsc = Bit(forum[kForumDscByte], 7) != 0;
  link.forumTmds = forum[kForumTmdsByte] * kTmdsStep;
  link.frl = forum[kForumFrlByte] >> 4;
  return link;
}

}  // namespace

uint32_t CommonClock(const EdidHandle& a, const EdidHandle& b) {
  const HdmiLink first = LinkOf(a), second = LinkOf(b);
  if (!first.hdmi && !second.hdmi) return kNoClock;
  const auto told = [](const HdmiLink& link) { return link.hdmi && link.tmds != 0 ? link.tmds : kUntold; };
  if (!first.hdmi || !second.hdmi) return Lower(told(first), told(second));
  HdmiLink common;
  common.tmds = first.tmds == second.tmds ? first.tmds : Lower(told(first), told(second));
  if (first.forum && second.forum) {
    common.forumTmds = Lower(first.forumTmds, second.forumTmds);
    common.frl = Lower(first.frl, second.frl);
    common.dsc = first.dsc && second.dsc;
  }
  // Displays of one and the same link: what they offer above it is their own affair.
  const bool same = common.clock() == first.clock() && common.clock() == second.clock();
  return same ? kNoClock : common.clock();
}

}  // namespace reedid
