# Compresses `file` and installs it as `name` in the directory `destination`. The compressed file
# contains no time stamp, so that two builds make the same package.
find_program(GZIP gzip REQUIRED)
function(autoreport_install_compressed file destination name)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/${name})
  add_custom_command(OUTPUT ${output}
    COMMAND ${GZIP} --best --no-name --stdout ${PROJECT_SOURCE_DIR}/${file} > ${output}
    DEPENDS ${PROJECT_SOURCE_DIR}/${file} VERBATIM)
  string(MAKE_C_IDENTIFIER ${name} target)
  add_custom_target(${target} ALL DEPENDS ${output})
  install(FILES ${output} DESTINATION ${destination})
endfunction()
