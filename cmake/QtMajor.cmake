# The only file that knows how each Qt major names its targets. Everything else links to
#   qtdriver::qt       core, gui, widgets and network of the chosen Qt
#   qtdriver::qttest   the above and QtTest
#   qtdriver::qregexp  the class QRegExp, for tests only: in Qt 6 it is a library of its own, which need not be there
# and adds tests with qtdriver_add_pytests.

set(QTDRIVER_QT "" CACHE STRING "Qt major version to build for: 4, 5 or 6")
if(NOT QTDRIVER_QT MATCHES "^[456]$")
  message(FATAL_ERROR "Set QTDRIVER_QT to 4, 5 or 6 (scripts/build.sh N does it)")
endif()

add_library(qtdriver_qt INTERFACE)
add_library(qtdriver_qttest INTERFACE)
add_library(qtdriver::qt ALIAS qtdriver_qt)
add_library(qtdriver::qttest ALIAS qtdriver_qttest)

if(QTDRIVER_QT EQUAL 4)
  find_package(Qt4 4.8 REQUIRED COMPONENTS QtCore QtGui QtNetwork QtTest)
  set(qt_version ${QTVERSION})
  target_link_libraries(qtdriver_qt INTERFACE Qt4::QtCore Qt4::QtGui Qt4::QtNetwork)
  target_link_libraries(qtdriver_qttest INTERFACE qtdriver_qt Qt4::QtTest)
elseif(QTDRIVER_QT EQUAL 5)
  find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Widgets Network Test)
  set(qt_version ${Qt5_VERSION})
  target_link_libraries(qtdriver_qt INTERFACE Qt5::Core Qt5::Gui Qt5::Widgets Qt5::Network)
  target_link_libraries(qtdriver_qttest INTERFACE qtdriver_qt Qt5::Test)
else()
  find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets Network Test OPTIONAL_COMPONENTS Core5Compat)
  set(qt_version ${Qt6_VERSION})
  target_link_libraries(qtdriver_qt INTERFACE Qt6::Core Qt6::Gui Qt6::Widgets Qt6::Network)
  target_link_libraries(qtdriver_qttest INTERFACE qtdriver_qt Qt6::Test)
endif()
set(QTDRIVER_QT_VERSION ${qt_version} CACHE INTERNAL "The whole version of the Qt that was found")
add_library(qtdriver_qregexp INTERFACE)
add_library(qtdriver::qregexp ALIAS qtdriver_qregexp)
if(QTDRIVER_QT LESS 6)
  target_compile_definitions(qtdriver_qregexp INTERFACE QTDRIVER_HAS_QREGEXP)
elseif(TARGET Qt6::Core5Compat)
  target_compile_definitions(qtdriver_qregexp INTERFACE QTDRIVER_HAS_QREGEXP)
  target_link_libraries(qtdriver_qregexp INTERFACE Qt6::Core5Compat)
endif()
target_compile_definitions(qtdriver_qt INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS)

if(QTDRIVER_QT EQUAL 6)
  set(CMAKE_CXX_STANDARD 17)
else()
  set(CMAKE_CXX_STANDARD 14)
endif()
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
# The runner looks for agents in FOLDER/qtN/lib: this folder serves it whatever the build folder is called.
if(UNIX)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/agents)
  file(CREATE_LINK ${CMAKE_BINARY_DIR} ${CMAKE_BINARY_DIR}/agents/qt${QTDRIVER_QT} SYMBOLIC)
endif()
find_program(CCACHE ccache)
if(CCACHE)
  # ccache goes by the lists of headers that the compiler writes. Its other way is to have the compiler preprocess first, and
  # without such a list, with which -fpch-deps (see below) has GCC 12 crash. The first two kinds of sloppiness are needed for
  # precompiled headers. The locale changes only the language of warnings, and packages are made in another one.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_DEPEND=1 CCACHE_SLOPPINESS=pch_defines,time_macros,locale ${CCACHE})
endif()
# Some fifty programs are linked for each Qt, and GNU ld takes five times as long.
find_program(LLD ld.lld)
if(LLD AND UNIX AND NOT APPLE AND NOT CMAKE_CROSSCOMPILING)
  add_link_options(-fuse-ld=lld)
endif()

if(NOT MSVC)
  add_compile_options(-Wall -Wextra $<$<BOOL:${QTDRIVER_WERROR}>:-Werror>)
endif()
if(QTDRIVER_ASAN OR QTDRIVER_FUZZ)
  # Without vptr: the type information of other libraries, hidden or in headers of Qt 4, makes false reports.
  set(sanitizers -fsanitize=address,undefined$<$<BOOL:${QTDRIVER_FUZZ}>:,fuzzer-no-link> -fno-sanitize=vptr)
  # Less optimised and with less debug information than what is installed, since it is compiled far more often than it runs.
  add_compile_options(${sanitizers} -fno-omit-frame-pointer -fno-sanitize-recover=undefined -O1 -g1)
  add_link_options(${sanitizers})
  # Qt's own checks in its headers, of indexes above all, which it has in debug builds only.
  add_compile_definitions($<$<BOOL:${QTDRIVER_FUZZ}>:QT_FORCE_ASSERTS>)
elseif(QTDRIVER_TOGETHER AND NOT MSVC)
  # Nobody looks at variables in a build for tests and packages, and functions and lines take a third less time to compile.
  add_compile_options(-g1)
endif()

# qtdriver_precompile(GROUP TARGET HEADERS...): the first target of a group, which is any word, compiles these headers for
# all that follow; their options have to be the same. Without, most of a build's time goes into Qt's headers.
# cmake -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON does without.
function(qtdriver_precompile group target)
  get_property(first GLOBAL PROPERTY qtdriver_precompiled_${group})
  if(first)
    target_precompile_headers(${target} REUSE_FROM ${first})
  else()
    target_precompile_headers(${target} PRIVATE ${ARGN})
    set_property(GLOBAL PROPERTY qtdriver_precompiled_${group} ${target})
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # For ccache, and so that a change of a header is seen in what was compiled with it.
    target_compile_options(${target} PRIVATE -fpch-preprocess -fpch-deps)
  endif()
endfunction()

# qtdriver_declares_objects_in_sources(TARGET): no header of the target has anything for moc. The file that CMake makes for
# the headers' meta-objects is empty then, and is compiled without the precompiled headers, which would take a second.
function(qtdriver_declares_objects_in_sources target)
  set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/mocs_compilation.cpp
    PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
endfunction()

# qtdriver_compile_together(TARGET): has the sources of a target share Qt's headers, a dozen at a time.
function(qtdriver_compile_together target)
  if(CMAKE_HOST_WIN32) # where Python is elsewhere, and nobody compiles often
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  execute_process(COMMAND /usr/bin/python3 ${PROJECT_SOURCE_DIR}/scripts/together.py ${sources}
    WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} OUTPUT_VARIABLE lines COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE ";" " " lines "${lines}")
  string(REGEX MATCHALL "[^\n]+" lines "${lines}")
  set(number 0)
  foreach(line IN LISTS lines)
    math(EXPR number "${number} + 1")
    string(REPLACE " " ";" members "${line}")
    set_source_files_properties(${members} PROPERTIES UNITY_GROUP ${number})
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()

# Tests run on a private desktop, so that each owns the mouse, the keyboard focus and port 4242.
set(with_desktop ${PROJECT_SOURCE_DIR}/scripts/with-desktop.sh)

# Test files are compiled once for all suites, outside of the sources.
set(python_cache "PYTHONDONTWRITEBYTECODE=;PYTHONPYCACHEPREFIX=${PROJECT_SOURCE_DIR}/build/pycache")

# qtdriver_add_pytests(PREFIX SOURCES...): each file of pytest tests is a test of its own. Not quiet: how many tests pytest
# has found, and how many of them ran, are compared (scripts/count_tests.py).
function(qtdriver_add_pytests prefix)
  foreach(source IN LISTS ARGN)
    get_filename_component(name ${source} NAME_WE)
    add_test(NAME ${prefix}/${name}
      COMMAND ${with_desktop} /usr/bin/python3 -m pytest -p no:cacheprovider --tb=short ${source})
    set_tests_properties(${prefix}/${name} PROPERTIES TIMEOUT 600
      ENVIRONMENT "QTDRIVER_BUILD=${CMAKE_BINARY_DIR};QTDRIVER_QT=${QTDRIVER_QT};${python_cache}")
    if(WIN32) # Wine finds Qt's libraries there
      set_property(TEST ${prefix}/${name} APPEND PROPERTY ENVIRONMENT "QT${QTDRIVER_QT}_WINDOWS=${QTDRIVER_WINDOWS_QT}")
    endif()
  endforeach()
endfunction()

# qtdriver_add_wine_pytests(NAME SOURCES...): all files of pytest tests are one test, of programs for Windows. What Wine
# cannot do is skipped, and said.
function(qtdriver_add_wine_pytests name)
  add_test(NAME ${name} COMMAND ${with_desktop} /usr/bin/python3 -m pytest -p no:cacheprovider --tb=short -rs ${ARGN})
  set_tests_properties(${name} PROPERTIES TIMEOUT 1800 COST 200
    ENVIRONMENT "QTDRIVER_BUILD=${CMAKE_BINARY_DIR};QTDRIVER_QT=${QTDRIVER_QT};QT${QTDRIVER_QT}_WINDOWS=${QTDRIVER_WINDOWS_QT};${python_cache}")
endfunction()

# qtdriver_add_pytests_once(PREFIX SOURCES...): tests that do not depend on the Qt. When several builds are tested, they
# run once. They are told of no build, so that one which uses it fails.
function(qtdriver_add_pytests_once prefix)
  qtdriver_add_pytests(${prefix} ${ARGN})
  foreach(source IN LISTS ARGN)
    get_filename_component(name ${source} NAME_WE)
    set_tests_properties(${prefix}/${name} PROPERTIES LABELS once
      ENVIRONMENT "QTDRIVER_BUILD=/nonexistent;QTDRIVER_QT=none;${python_cache}")
  endforeach()
endfunction()

# qtdriver_add_pytests_with_any_build(PREFIX SOURCES...): tests that use what a build has made, and for which it does not
# matter which. When several builds are tested, they run once, with the first of them.
function(qtdriver_add_pytests_with_any_build prefix)
  qtdriver_add_pytests(${prefix} ${ARGN})
  get_filename_component(build ${CMAKE_BINARY_DIR} NAME)
  foreach(source IN LISTS ARGN)
    get_filename_component(name ${source} NAME_WE)
    set_tests_properties(${prefix}/${name} PROPERTIES LABELS once FIXTURES_REQUIRED build/${build})
  endforeach()
endfunction()
