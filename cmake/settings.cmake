# Compiler settings that every target of the project shares, as the interface target reedid_settings.
add_library(reedid_settings INTERFACE)
target_compile_options(reedid_settings INTERFACE -Wall -Wextra -Wconversion -Wshadow)
if(REEDID_WERROR)
  target_compile_options(reedid_settings INTERFACE -Werror)
endif()
if(REEDID_SANITIZE)
  set(sanitize -fsanitize=${REEDID_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(reedid_settings INTERFACE ${sanitize})
  target_link_options(reedid_settings INTERFACE ${sanitize})
endif()

# Of what uses std::string and std::vector: gcc 12 sees copies beyond their ends that cannot be, once it inlines much (its bugs
# 105329 and 105651). The library uses neither.
add_library(reedid_string_settings INTERFACE)
target_compile_options(reedid_string_settings INTERFACE
                       $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-restrict -Wno-array-bounds>)
