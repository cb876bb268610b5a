#include "tool_error.h"

namespace reedid::tool {

ToolError FromDocument(const document::Error& error) {
  switch (error.kind()) {
    case document::ErrorKind::kArgument:
      return {Exit::kUsage, error.what()};
    case document::ErrorKind::kInput:
      return {Exit::kInput, error.what()};
    case document::ErrorKind::kRefused:
      return {Exit::kRefused, error.what() + std::string("; nothing was written")};
    case document::ErrorKind::kInternal:
      break;
  }
  return {Exit::kNoMemory, error.what()};
}

}  // namespace reedid::tool
