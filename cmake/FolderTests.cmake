# add_folder_tests(<name> SOURCES <file>... LIBRARIES <target>... [QT])
#
# One test program per source folder: <name>_tests, its tests listed by ctest
# as <name>.<Suite>.<Test>. Its main comes from testing_tools; with QT from
# testing_tools_qt, which picks the offscreen platform before QApplication
# (test discovery runs the program during the build).
# Tests read tests/data through TEST_DATA_FOLDER and never write there.
function(add_folder_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "QT" "" "SOURCES;LIBRARIES")
  add_executable(${name}_tests ${arg_SOURCES})
  if(arg_QT)
    set(tools testing_tools_qt qt_flags)
  else()
    set(tools testing_tools build_flags)
  endif()
  target_link_libraries(${name}_tests PRIVATE ${arg_LIBRARIES} ${tools})
  target_compile_definitions(${name}_tests PRIVATE
    TEST_DATA_FOLDER="${PROJECT_SOURCE_DIR}/tests/data"
    INSTALLED_FOLDER="${ZANDVOET_FOLDER}")
  if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
    return() # built, but nothing here can run it
  endif()
  gtest_discover_tests(${name}_tests
    TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endfunction()
