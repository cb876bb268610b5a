# Runs before cpack packs what it has installed: what Debian wants otherwise than the installed tree has it.
file(GLOB documents ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/man/man1/*.1
     ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/doc/*/changelog*)
if(documents)
  execute_process(COMMAND gzip -9n ${documents} COMMAND_ERROR_IS_FATAL ANY)
endif()

# Debian's zsh looks into site-functions below /usr/local only.
file(GLOB functions ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/zsh/site-functions)
foreach(folder ${functions})
  get_filename_component(zsh ${folder} DIRECTORY)
  file(RENAME ${folder} ${zsh}/vendor-completions)
endforeach()
