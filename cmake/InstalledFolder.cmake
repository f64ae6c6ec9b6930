# The program is a folder that can be moved: the build lays it out as it will
# be installed, the tests start the program from it, `cmake --install` copies it.
set(ZANDVOET_FOLDER ${PROJECT_BINARY_DIR}/Zandvoet)

# Puts a program (or a library that is loaded at run time) into that folder.
function(add_to_installed_folder target)
  set_target_properties(${target} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${ZANDVOET_FOLDER}
    LIBRARY_OUTPUT_DIRECTORY ${ZANDVOET_FOLDER})
endfunction()

# What an installation carries besides programs: data/ and Legenda/ of the source
# tree, each file copied when it changed. The program's own ini stands beside
# the program; what a user has set in it is lost when the source file changes.
function(add_installed_data)
  file(GLOB_RECURSE files CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
    ${PROJECT_SOURCE_DIR}/data/* ${PROJECT_SOURCE_DIR}/Legenda/*)
  foreach(file IN LISTS files)
    set(target ${file})
    if(file STREQUAL data/Zandvoet.ini)
      set(target Zandvoet.ini)
    endif()
    add_custom_command(
      OUTPUT ${ZANDVOET_FOLDER}/${target}
      COMMAND ${CMAKE_COMMAND} -E copy ${PROJECT_SOURCE_DIR}/${file} ${ZANDVOET_FOLDER}/${target}
      DEPENDS ${PROJECT_SOURCE_DIR}/${file}
      VERBATIM)
    list(APPEND copies ${ZANDVOET_FOLDER}/${target})
  endforeach()
  file(MAKE_DIRECTORY ${ZANDVOET_FOLDER}/data/databases ${ZANDVOET_FOLDER}/Legenda)
  add_custom_target(installed_data ALL DEPENDS ${copies})
endfunction()
add_installed_data()

install(DIRECTORY ${ZANDVOET_FOLDER} DESTINATION . USE_SOURCE_PERMISSIONS)
