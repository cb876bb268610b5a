// An EDID as text that people write and keep under version control (docs/text-form.md): JSON with the fields of every
// part. Nothing is lost: the text of an image builds the same bytes, however odd they are.
#pragma once

#include <string>
#include <string_view>

#include "document/account/tree.h"
#include "document/read/image.h"

namespace reedid::document {

enum class Fields : bool {
  kSet,  // those that are not false, 0 or empty
  kAll,
};

// The text of an image, and as JSON.
Json ExportJson(const Image& image, Fields fields = Fields::kSet);
std::string ExportText(const Image& image, Fields fields = Fields::kSet);

// JSON as the text form has it: a line for what fits one, comments are not kept.
std::string FormText(const Json& json);

// The JSON of a text, in which comments may stand. Throws kInput, with the place of the fault.
Json ParseText(const std::string& name, std::string_view text);

// The bytes of a text. What is wrong is told at once, a line each: "blocks[1].dataBlocks[3].vics[2]: 300 is no VIC".
// Throws kInput. Notes tell where bytes that stood beside changed fields were given up.
ByteVector Build(const std::string& name, const Json& json, Notes& notes);
ByteVector BuildText(const std::string& name, std::string_view text, Notes& notes);

// The JSON Schema of the form.
Json TextSchema();

}  // namespace reedid::document
