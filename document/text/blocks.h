// Whole blocks as text: the base block, CTA-861 extensions, DisplayID sections, others.
#pragma once

#include "document/text/kinds.h"

namespace reedid::document::text {

// What a block has to know of the image.
struct ImageContext {
  Context parts;
  size_t blocks = 0;           // of the image
  bool isEdid = true;          // else a standalone DisplayID structure
  bool isFirst = true;         // block 0
  unsigned countByte = 0;      // what block 0 states by default
  ByteVector tagsBehind = {};  // of the blocks behind this one, for a block map
};

// A block with its "kind". What its keys do not give stands beside them; a block that no keys can give is "bytes" alone.
Json BlockToJson(const EdidBlock& block, const ImageContext& image);

// Its bytes with checksums; empty when there is something wrong. Block maps get theirs from `image.tagsBehind`.
ByteVector BlockFromJson(const Json& json, size_t index, const ImageContext& image, const Place& place);

// The kind of a block; the first one's and that of blocks with "bytes" may be left out.
std::string BlockKind(const Json& json, size_t index);

// The EDID version and what else parts of any block ask of the base block.
VesaBlock BaseOf(Bytes bytes);

// JSON Schema's definitions for all that a text may hold.
Json BlocksSchema();

}  // namespace reedid::document::text
