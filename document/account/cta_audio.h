// The accounts of the CTA-861 data blocks about sound.
#pragma once

#include <string>

#include "document/account/tree.h"

namespace reedid::document {

// "Enhanced AC-3", and "8 channels; 32, 44.1, 48 kHz; Dolby Atmos (JOC)".
std::string AudioFormatName(const AudioFormat& format);
std::string AudioFormatText(const AudioFormat& format);

// "FL/FR, LFE1, FC"
std::string SpeakersText(const SpeakerRecord& speakers);

// Each is false when the block cannot be decoded; `at` has the data block from its header on.
bool DescribeAudio(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeSpeakers(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeHdmiAudio(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeDolbyAudio(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);

}  // namespace reedid::document
