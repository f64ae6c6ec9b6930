# The program is a folder that can be moved: the build lays it out as it will
# be installed, the tests start the program from it, `cmake --install` copies it.
set(ZANDVOET_FOLDER ${PROJECT_BINARY_DIR}/Zandvoet)

# Puts a program (or a library that is loaded at run time) into that folder.
function(add_to_installed_folder target)
  set_target_properties(${target} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${ZANDVOET_FOLDER}
    LIBRARY_OUTPUT_DIRECTORY ${ZANDVOET_FOLDER})
endfunction()

install(DIRECTORY ${ZANDVOET_FOLDER} DESTINATION . USE_SOURCE_PERMISSIONS)
