# How the project's libraries, tests and benchmarks are declared: one room of src/ is one library, and a room links only
# the rooms named in LINKS, so a room cannot include what it may not use.

add_library(quillery_options INTERFACE)
target_compile_options(quillery_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wconversion -Wno-sign-conversion
  $<$<BOOL:${QUILLERY_WERROR}>:-Werror>)
target_compile_definitions(quillery_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH QT_NO_KEYWORDS
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(QUILLERY_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

find_program(QUILLERY_LLD ld.lld)
if(QUILLERY_LLD)
  add_link_options(-fuse-ld=lld)
endif()
find_program(QUILLERY_CCACHE ccache)
if(QUILLERY_CCACHE)
  # What ccache asks for before it keeps what is compiled with precompiled headers.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${QUILLERY_CCACHE})
endif()

# quillery_room(NAME SOURCES ... LINKS ...): the library quillery_NAME of src/NAME.
function(quillery_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;LINKS" ${ARGN})
  add_library(quillery_${name} STATIC ${ROOM_SOURCES})
  set_target_properties(quillery_${name} PROPERTIES AUTOMOC ON)
  target_include_directories(quillery_${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(quillery_${name} PUBLIC ${ROOM_LINKS} PRIVATE quillery_options)
endfunction()

# Test code is compiled for quick builds: what it tests keeps the optimisation of its build.
add_library(quillery_test_options INTERFACE)
target_link_libraries(quillery_test_options INTERFACE quillery_options)
target_compile_options(quillery_test_options INTERFACE $<IF:$<CONFIG:Debug>,-O0,-O1>)

# quillery_test_headers(NAME HEADER LINKS ...): Qt's headers, read once for all tests of one kind. QTest stays out: its
# headers look at definitions that differ from test to test.
function(quillery_test_headers name header)
  cmake_parse_arguments(HEADERS "" "" "LINKS" ${ARGN})
  file(CONFIGURE OUTPUT ${name}.cpp CONTENT "")
  add_library(${name} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  target_link_libraries(${name} PRIVATE ${HEADERS_LINKS} quillery_test_options)
  target_precompile_headers(${name} PRIVATE ${header})
endfunction()

# quillery_test_moc(TARGET SOURCE): the meta objects of the test class in SOURCE, as it includes them itself. AUTOMOC would
# add two steps and one more file to compile to each of some 150 test programs.
function(quillery_test_moc target source)
  cmake_path(GET source STEM name)
  set(moc ${CMAKE_CURRENT_BINARY_DIR}/moc/${name}.moc)
  add_custom_command(OUTPUT ${moc} COMMAND Qt6::moc -i -o ${moc} ${CMAKE_CURRENT_SOURCE_DIR}/${source}
    DEPENDS ${source} VERBATIM)
  target_sources(${target} PRIVATE ${moc})
  target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/moc)
endfunction()

# quillery_test(NAME [SOURCES ...] LINKS ... [ENVIRONMENT ...] [LABELS ...]): the test program NAME, from NAME.cpp unless
# SOURCES says otherwise. A warning that it does not expect fails it. Tests run without a display and never read the user's own settings, log or home folder.
function(quillery_test name)
  cmake_parse_arguments(TEST "" "TIMEOUT" "SOURCES;LINKS;ENVIRONMENT;LABELS" ${ARGN})
  if(NOT TEST_SOURCES)
    set(TEST_SOURCES ${name}.cpp)
  endif()
  if(NOT TEST_TIMEOUT)
    set(TEST_TIMEOUT 300)
  endif()
  add_executable(${name} ${TEST_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  quillery_test_moc(${name} ${name}.cpp)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE
    QUILLERY_TEST_DATA="${CMAKE_SOURCE_DIR}/tests/data" QUILLERY_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE ${TEST_LINKS} quillery_test_quiet Qt6::Test quillery_test_options)
  if(TEST_LINKS MATCHES "quillery_(platform|searchwindow|print|window|app)")
    target_precompile_headers(${name} REUSE_FROM quillery_test_widgets)
  elseif(NOT TEST_LINKS MATCHES "quillery_(util|generator)")
    target_precompile_headers(${name} REUSE_FROM quillery_test_gui)
  endif()
  set(home ${CMAKE_BINARY_DIR}/tests/home/${name})
  file(MAKE_DIRECTORY ${home})
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    TIMEOUT ${TEST_TIMEOUT} LABELS "${TEST_LABELS}"
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=${home};XDG_CONFIG_HOME=${home}/config;XDG_STATE_HOME=${home}/state;XDG_DATA_HOME=${home}/data;DBUS_SESSION_BUS_ADDRESS=disabled:;LC_ALL=C.UTF-8;TZ=UTC;LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/lsan.supp;${TEST_ENVIRONMENT}")
endfunction()

# quillery_bench(NAME LINKS ...): the benchmark program NAME from NAME.cpp.
function(quillery_bench name)
  cmake_parse_arguments(BENCH "" "" "LINKS" ${ARGN})
  add_executable(${name} ${name}.cpp)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/bench)
  target_link_libraries(${name} PRIVATE ${BENCH_LINKS} benchmark::benchmark quillery_options)
endfunction()

# quillery_fuzz(NAME LINKS ...): the libFuzzer target NAME from NAME.cpp; its seeds lie in fuzz/seeds/NAME.
function(quillery_fuzz name)
  cmake_parse_arguments(FUZZ "" "" "LINKS" ${ARGN})
  add_executable(${name} ${name}.cpp)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz)
  target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  target_link_libraries(${name} PRIVATE ${FUZZ_LINKS} quillery_options)
endfunction()
