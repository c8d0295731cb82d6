# A room is one folder and one static library, below src/ or, with IN, below another folder. It sees
# the headers of its own folder and of the floors that it names, and no others: every room has an
# include root of its own that holds nothing but a link to its folder, so including a room that was
# not named does not compile.

find_package(PkgConfig REQUIRED)

# Built by scripts/check: a source for each header of a room that includes it first and alone.
add_custom_target(headers_alone)

# quillo_room(<folder> [IN <directory>] [SUBJECTS <folders>...] [FLOORS <folders>...]
#             [USES <libraries>...] [WITHOUT_PCH | PRECOMPILED <headers>... | PRECOMPILED_BY <target>])
#   SUBJECTS  folders of the room itself that hold more of its sources
#   FLOORS    rooms below this one; their headers become visible to whoever links this room
#   USES      libraries that only this room's sources see
#   PRECOMPILED     what nearly every source of the room includes, besides the standard headers;
#   PRECOMPILED_BY  the same as that target's
function(quillo_room folder)
  cmake_parse_arguments(ROOM "WITHOUT_PCH" "IN;PRECOMPILED_BY" "SUBJECTS;FLOORS;USES;PRECOMPILED" ${ARGN})
  if(NOT ROOM_IN)
    set(ROOM_IN ${CMAKE_SOURCE_DIR}/src)
  endif()
  string(REPLACE "/" "_" name ${folder})
  set(target quillo_${name})
  set(source_dir ${ROOM_IN}/${folder})
  set(patterns ${source_dir}/*.cpp ${source_dir}/*.h)
  foreach(subject IN LISTS ROOM_SUBJECTS)
    list(APPEND patterns ${source_dir}/${subject}/*.cpp ${source_dir}/${subject}/*.h)
  endforeach()
  file(GLOB sources CONFIGURE_DEPENDS ${patterns})
  if(NOT sources) # a room that nobody has furnished yet
    return()
  endif()

  set(include_root ${CMAKE_BINARY_DIR}/include/${name})
  get_filename_component(parent ${include_root}/${folder} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${source_dir} ${include_root}/${folder} SYMBOLIC)

  add_library(${target} STATIC ${sources})
  target_include_directories(${target} PUBLIC ${include_root})
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
  foreach(floor IN LISTS ROOM_FLOORS)
    string(REPLACE "/" "_" floor_name ${floor})
    target_link_libraries(${target} PUBLIC quillo_${floor_name})
  endforeach()
  target_link_libraries(${target} PRIVATE ${ROOM_USES})
  if(ROOM_PRECOMPILED OR folder STREQUAL "base")
    target_precompile_headers(${target} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/precompiled.h ${ROOM_PRECOMPILED})
  elseif(ROOM_PRECOMPILED_BY)
    target_precompile_headers(${target} REUSE_FROM ${ROOM_PRECOMPILED_BY})
  elseif(NOT ROOM_WITHOUT_PCH)
    target_precompile_headers(${target} REUSE_FROM quillo_base)
  endif()
  quillo_headers_alone(${target} ${folder} ${source_dir} "${sources}" "${ROOM_USES}")
endfunction()

function(quillo_headers_alone target folder source_dir sources uses)
  list(FILTER sources INCLUDE REGEX "\\.h$")
  if(NOT sources)
    return()
  endif()
  set(units)
  foreach(header IN LISTS sources)
    file(RELATIVE_PATH path ${source_dir} ${header})
    string(REGEX REPLACE "\\.h$" ".cpp" unit ${CMAKE_BINARY_DIR}/headers_alone/${folder}/${path})
    file(CONFIGURE OUTPUT ${unit} CONTENT "#include \"${folder}/${path}\"\n")
    list(APPEND units ${unit})
  endforeach()
  add_library(${target}_headers_alone OBJECT EXCLUDE_FROM_ALL ${units})
  target_link_libraries(${target}_headers_alone PRIVATE ${target} ${uses})
  target_compile_options(${target}_headers_alone PRIVATE -g0 -O0)
  set_target_properties(${target}_headers_alone PROPERTIES AUTOMOC OFF)
  add_dependencies(headers_alone ${target}_headers_alone)
endfunction()

# What nearly every test includes, compiled once: the sources of the tests are half of the build.
function(quillo_tests_precompiled target)
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/${target}.cpp CONTENT "")
  add_library(${target} OBJECT ${CMAKE_BINARY_DIR}/${target}.cpp)
  cmake_parse_arguments(PRECOMPILED "" "" "HEADERS;LINKS" ${ARGN})
  target_link_libraries(${target} PRIVATE ${PRECOMPILED_LINKS} GTest::gmock GTest::gtest)
  target_precompile_headers(${target} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/precompiled.h
    <gmock/gmock.h> <gtest/gtest.h> ${PRECOMPILED_HEADERS})
endfunction()

# quillo_tests(<folder below tests> [SECONDS <limit of a case>] [LINKS <targets>...])
# One test program for a folder of tests; ctest knows each of its cases.
include(GoogleTest)
function(quillo_tests folder)
  cmake_parse_arguments(TESTS "" "SECONDS" "LINKS" ${ARGN})
  if(NOT TESTS_SECONDS)
    set(TESTS_SECONDS 120)
  endif()
  string(REPLACE "/" "_" name ${folder})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${folder}/*.cpp)
  add_executable(tests_${name} ${sources})
  target_include_directories(tests_${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(tests_${name} PRIVATE ${TESTS_LINKS} GTest::gmock GTest::gtest_main)
  target_precompile_headers(tests_${name} REUSE_FROM quillo_tests_precompiled)
  gtest_discover_tests(tests_${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT ${TESTS_SECONDS})
endfunction()
