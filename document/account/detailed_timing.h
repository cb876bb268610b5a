// Detailed timings with their porches, and where the forms that they are stored in have what.
#pragma once

#include <string>

#include "document/account/tree.h"

namespace reedid::document {

// The bytes of the title (clock and flags) and of the two directions.
struct TimingBytes {
  SourceBytes title, horizontal, vertical;
};

// A timing with its porches.
Node DescribeTiming(const std::string& title, const TimingItem& item, TimingBytes from = {});

// An 18-byte descriptor: also with sync, image size and border.
Node DescribeDtd(const std::string& title, const DtdSlot& slot, const ByteSource& at);

// A timing that was looked up or computed: also with sync, and the identifiers that it has in the tables.
Node DescribeIdentified(const std::string& title, const TimingItem& item);

// One DisplayID 20-byte descriptor, type I or VII.
TimingBytes TypeIBytes(const ByteSource& at);

}  // namespace reedid::document
