// Whether memory ran out. The library answers a question with what it could hold then, and a stream swallows the
// exception: a list that is too short looks like any other. So every allocation that fails is noted, and after one no
// result is told and no file is written; a program that cannot even throw ends with Exit::kNoMemory.
#pragma once

namespace reedid::tool {

// Throws std::bad_alloc when an allocation has failed.
void RequireMemory();

// Whether one has failed; forgets it, for what has nothing to do with it.
bool MemoryRanOut();

}  // namespace reedid::tool
