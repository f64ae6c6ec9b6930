# Settings that hold for every target. Per-target flags come from `build_flags`.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

include(CTest)

# ccache with the sloppiness that precompiled headers ask for.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}
      CCACHE_NOHASHDIR=1
      ${CCACHE_PROGRAM})
endif()

add_library(build_flags INTERFACE)
target_include_directories(build_flags INTERFACE ${PROJECT_SOURCE_DIR}/src)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  # No fused multiply-add anywhere: fetches, normals and load levels must have
  # the same bits on every processor and at every optimisation level.
  target_compile_options(build_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wcast-align -Wformat=2 -ffp-contract=off)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(build_flags INTERFACE
      -Wduplicated-cond -Wlogical-op -fpch-preprocess)
  endif()
endif()
if(MINGW)
  target_compile_definitions(build_flags INTERFACE
    UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0A00 __USE_MINGW_ANSI_STDIO=1)
  # One file per program: no run-time libraries to ship beside it.
  target_link_options(build_flags INTERFACE -static)
endif()
if(ZANDVOET_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(ZANDVOET_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(ZANDVOET_DESKTOP)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets PrintSupport Network Svg Test)
  find_package(QCustomPlotQt6 REQUIRED)
  find_package(GDAL REQUIRED)
  set(CMAKE_AUTOMOC ON)
  set(CMAKE_AUTOUIC ON)
  set(CMAKE_AUTORCC ON)
  # Qt 6 is used without its macros-as-keywords clash and without implicit
  # conversions from raw C strings of unknown encoding.
  add_library(qt_flags INTERFACE)
  target_link_libraries(qt_flags INTERFACE build_flags)
  target_compile_definitions(qt_flags INTERFACE QT_NO_CAST_TO_ASCII QT_NO_FOREACH
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
endif()

# Precompiles the Qt headers for a target; worth it from about three files on.
function(precompile_qt target)
  target_precompile_headers(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/QtHeaders.h)
endfunction()
