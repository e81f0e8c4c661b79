# Unit tests (one GoogleTest binary) and the install tests (a separate
# project and a plain compiler call that use the installed package).

# ---------------------------------------------------------------------------
# qvglobal_tests: every *_test.cpp under src/ and tools/, plus the shared
# fixtures and fakes in src/testing/.
# ---------------------------------------------------------------------------
file(GLOB_RECURSE QVGLOBAL_TEST_SOURCES CONFIGURE_DEPENDS
     "${PROJECT_SOURCE_DIR}/src/*_test.cpp")
file(GLOB_RECURSE QVGLOBAL_TOOL_TEST_SOURCES CONFIGURE_DEPENDS
     "${PROJECT_SOURCE_DIR}/tools/*_test.cpp")
file(GLOB QVGLOBAL_TESTING_SOURCES CONFIGURE_DEPENDS
     "${PROJECT_SOURCE_DIR}/src/testing/*.cpp")
list(FILTER QVGLOBAL_TESTING_SOURCES EXCLUDE REGEX "_test\\.cpp$")

if(QVGLOBAL_TEST_SOURCES OR QVGLOBAL_TOOL_TEST_SOURCES)
  find_package(GTest REQUIRED)
  include(GoogleTest)

  add_executable(qvglobal_tests
    ${QVGLOBAL_TEST_SOURCES} ${QVGLOBAL_TOOL_TEST_SOURCES} ${QVGLOBAL_TESTING_SOURCES})
  target_include_directories(qvglobal_tests PRIVATE "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(qvglobal_tests PRIVATE
    qvglobal GTest::gtest_main GTest::gmock fmt::fmt SQLiteCpp SQLite::SQLite3)
  # The paths of this checkout go into one file only, so that every other
  # test source compiles to the same command in any checkout (a compiler
  # cache then serves a second checkout or worktree).
  set(_tool_path "")
  if(TARGET qv)
    # Tests that run the tool find it here; building the tests builds it.
    set(_tool_path "$<TARGET_FILE:qv>")
    target_compile_definitions(qvglobal_tests PRIVATE
      "QVGLOBAL_QV_TOOL=::qv::testing::QvToolPath()")
    add_dependencies(qvglobal_tests qv)
  endif()
  set_source_files_properties("${PROJECT_SOURCE_DIR}/src/testing/run_tool.cpp"
    TARGET_DIRECTORY qvglobal_tests PROPERTIES COMPILE_DEFINITIONS
    "QVGLOBAL_SOURCE_DIR_PATH=\"${PROJECT_SOURCE_DIR}\";QVGLOBAL_QV_TOOL_PATH=\"${_tool_path}\"")
  if(QVGLOBAL_TOOL_TEST_SOURCES AND TARGET qv_core)
    target_link_libraries(qvglobal_tests PRIVATE qv_core)
  endif()
  qvglobal_enable_warnings(qvglobal_tests)

  gtest_discover_tests(qvglobal_tests DISCOVERY_TIMEOUT 60)
endif()

# ---------------------------------------------------------------------------
# Install tests: install into the build tree, then build and run
# tests/consumer against that installation, once through find_package and
# once through pkg-config. The fixtures chain the steps in order.
# ---------------------------------------------------------------------------
set(_prefix "${CMAKE_BINARY_DIR}/consumer-install")
set(_consumer_build "${CMAKE_BINARY_DIR}/consumer-build")
set(_consumer_src "${PROJECT_SOURCE_DIR}/tests/consumer")

add_test(NAME install.clean
  COMMAND ${CMAKE_COMMAND} -E rm -rf "${_prefix}" "${_consumer_build}")
set_tests_properties(install.clean PROPERTIES FIXTURES_SETUP qvglobal_clean)

add_test(NAME install.run
  COMMAND ${CMAKE_COMMAND} --install "${CMAKE_BINARY_DIR}" --prefix "${_prefix}"
          --config $<CONFIG>)
set_tests_properties(install.run PROPERTIES
  FIXTURES_REQUIRED qvglobal_clean
  FIXTURES_SETUP qvglobal_installed)

set(_consumer_configure_args
  -S "${_consumer_src}" -B "${_consumer_build}"
  "-DCMAKE_PREFIX_PATH=${_prefix}"
  "-DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}")
if(CMAKE_BUILD_TYPE)
  list(APPEND _consumer_configure_args "-DCMAKE_BUILD_TYPE=${CMAKE_BUILD_TYPE}")
endif()
if(QVGLOBAL_SANITIZE)
  # An instrumented library needs an instrumented executable.
  list(APPEND _consumer_configure_args
    "-DCMAKE_CXX_FLAGS=${QVGLOBAL_SANITIZE_FLAGS}"
    "-DCMAKE_EXE_LINKER_FLAGS=${QVGLOBAL_SANITIZE_FLAGS}")
endif()

add_test(NAME install.consumer.configure
  COMMAND ${CMAKE_COMMAND} ${_consumer_configure_args})
set_tests_properties(install.consumer.configure PROPERTIES
  FIXTURES_REQUIRED qvglobal_installed
  FIXTURES_SETUP qvglobal_consumer_configured)

add_test(NAME install.consumer.build
  COMMAND ${CMAKE_COMMAND} --build "${_consumer_build}" --config $<CONFIG>)
set_tests_properties(install.consumer.build PROPERTIES
  FIXTURES_REQUIRED qvglobal_consumer_configured
  FIXTURES_SETUP qvglobal_consumer_built)

add_test(NAME install.consumer.run COMMAND "${_consumer_build}/consumer")
set_tests_properties(install.consumer.run PROPERTIES
  FIXTURES_REQUIRED qvglobal_consumer_built)

# pkg-config: compile main.cpp by hand with the flags from qvglobal.pc.
find_program(QVGLOBAL_PKG_CONFIG NAMES pkg-config pkgconf)
if(QVGLOBAL_PKG_CONFIG)
  set(_pc_binary "${CMAKE_BINARY_DIR}/consumer-pkgconfig")
  add_test(NAME install.pkgconfig
    COMMAND /bin/sh -c
      "\"$0\" -std=c++20 ${QVGLOBAL_SANITIZE_FLAGS} \"$1\" -o \"$2\" $(\"$3\" --cflags --libs qvglobal) && \"$2\""
      "${CMAKE_CXX_COMPILER}" "${_consumer_src}/main.cpp" "${_pc_binary}"
      "${QVGLOBAL_PKG_CONFIG}")
  set_tests_properties(install.pkgconfig PROPERTIES
    FIXTURES_REQUIRED qvglobal_installed
    ENVIRONMENT
      "PKG_CONFIG_PATH=${_prefix}/${CMAKE_INSTALL_LIBDIR}/pkgconfig;LD_LIBRARY_PATH=${_prefix}/${CMAKE_INSTALL_LIBDIR}")
else()
  message(WARNING "pkg-config not found: the pkg-config install test is skipped")
endif()
