// How each kind of block is written; see blocks.h.
#pragma once

#include "document/text/blocks.h"

namespace reedid::document::text {

struct BlockForm {
  const char* name;
  bool (*matches)(const EdidBlock& block);
  Json (*read)(const EdidBlock& block, const ImageContext& image);  // all but "kind"
  ByteVector (*write)(const Json& json, const ImageContext& image, const Place& place);
  Json (*schema)();
};

extern const BlockForm kBaseForm, kCtaForm, kDisplayIdForm, kMapBlockForm;

// "checksum": written when it is wrong, computed when it is left out; "keep" takes that of "bytes".
void ChecksumToJson(Bytes bytes, const char* key, Json& json);
void ChecksumFromJson(const Json& json, const char* key, std::span<uint8_t> bytes, const Place& place);

// A number of a block's own keys, or what stands for it.
unsigned KeyNumber(const Json& json, const char* key, unsigned otherwise, unsigned most, const Place& place);
bool KeyFlag(const Json& json, const char* key, const Place& place);

// Puts bytes behind others, up to `limit`: "needs 3 more bytes than the block has".
void Append(const ByteVector& fresh, size_t limit, ByteVector& bytes, const Place& place);

inline const Json kNumberSchema = {{"type", "integer"}, {"minimum", 0}};

}  // namespace reedid::document::text
