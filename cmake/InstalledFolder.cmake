# The program is a folder that can be moved: the build lays it out as it will
# be installed, the tests start the program from it, `cmake --install` copies it.
set(ZANDVOET_FOLDER ${PROJECT_BINARY_DIR}/Zandvoet)

# Puts a program (or a library that is loaded at run time) into that folder.
function(add_to_installed_folder target)
  set_target_properties(${target} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${ZANDVOET_FOLDER}
    LIBRARY_OUTPUT_DIRECTORY ${ZANDVOET_FOLDER})
endfunction()

# Files in which the program stores what its user sets, and where each stands in
# the folder.
set(SETTINGS_FILES data/Zandvoet.ini data/Instellingen.ini)
set(SETTINGS_TARGETS Zandvoet.ini data/Instellingen.ini)

# What an installation carries besides programs: data/ and Legenda/ of the source
# tree, each file copied when it changed. Settings files are brought up to date
# and keep what the user has set (UpdateSettings.cmake); as they were delivered
# they stand in data/standaard.
function(add_installed_data)
  file(GLOB_RECURSE files CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
    ${PROJECT_SOURCE_DIR}/data/* ${PROJECT_SOURCE_DIR}/Legenda/*)
  foreach(file IN LISTS files)
    list(FIND SETTINGS_FILES ${file} settings)
    if(settings EQUAL -1)
      add_custom_command(
        OUTPUT ${ZANDVOET_FOLDER}/${file}
        COMMAND ${CMAKE_COMMAND} -E copy ${PROJECT_SOURCE_DIR}/${file} ${ZANDVOET_FOLDER}/${file}
        DEPENDS ${PROJECT_SOURCE_DIR}/${file}
        VERBATIM)
      list(APPEND copies ${ZANDVOET_FOLDER}/${file})
    else()
      get_filename_component(name ${file} NAME)
      list(GET SETTINGS_TARGETS ${settings} target)
      set(delivered ${ZANDVOET_FOLDER}/data/standaard/${name})
      add_custom_command(
        OUTPUT ${delivered}
        COMMAND ${CMAKE_COMMAND} -DFRESH=${PROJECT_SOURCE_DIR}/${file} -DDELIVERED=${delivered}
          -DTARGET=${ZANDVOET_FOLDER}/${target} -P ${PROJECT_SOURCE_DIR}/cmake/UpdateSettings.cmake
        DEPENDS ${PROJECT_SOURCE_DIR}/${file} ${PROJECT_SOURCE_DIR}/cmake/UpdateSettings.cmake
        VERBATIM)
      list(APPEND copies ${delivered})
    endif()
  endforeach()
  file(MAKE_DIRECTORY ${ZANDVOET_FOLDER}/data/databases ${ZANDVOET_FOLDER}/Legenda)
  add_custom_target(installed_data ALL DEPENDS ${copies})
endfunction()
add_installed_data()

# An installation that is there already keeps its settings too.
install(DIRECTORY ${ZANDVOET_FOLDER} DESTINATION . USE_SOURCE_PERMISSIONS
  REGEX "/Zandvoet/(Zandvoet\\.ini|data/Instellingen\\.ini|data/standaard)$" EXCLUDE)
foreach(file target IN ZIP_LISTS SETTINGS_FILES SETTINGS_TARGETS)
  get_filename_component(name ${file} NAME)
  install(CODE "
    set(folder \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/Zandvoet\")
    execute_process(COMMAND_ERROR_IS_FATAL ANY COMMAND \"${CMAKE_COMMAND}\"
      \"-DFRESH=${PROJECT_SOURCE_DIR}/${file}\"
      \"-DDELIVERED=\${folder}/data/standaard/${name}\"
      \"-DTARGET=\${folder}/${target}\"
      -P \"${PROJECT_SOURCE_DIR}/cmake/UpdateSettings.cmake\")")
endforeach()
