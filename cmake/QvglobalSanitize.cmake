# With QVGLOBAL_SANITIZE=ON every target of this directory and below is
# compiled and linked with AddressSanitizer and UndefinedBehaviorSanitizer.
# Undefined behaviour aborts instead of printing and going on, so a test that
# triggers it fails.
#
# QVGLOBAL_SANITIZE_FLAGS holds the flags as one string (for projects that
# are configured separately, such as the install test's consumer).
# QVGLOBAL_SANITIZE_PRELOAD lists the sanitizer runtimes (a CMake list; join
# it with ":" for LD_PRELOAD). A process that is not itself instrumented (the
# Python interpreter loading the bridge) needs them in LD_PRELOAD, and
# usually ASAN_OPTIONS=detect_leaks=0 as well, since the interpreter keeps
# memory until exit by design.
set(QVGLOBAL_SANITIZE_FLAGS "")
set(QVGLOBAL_SANITIZE_PRELOAD "")

if(QVGLOBAL_SANITIZE)
  set(_qvglobal_sanitize_options
      -fsanitize=address,undefined
      -fno-omit-frame-pointer
      -fno-sanitize-recover=undefined)
  add_compile_options(${_qvglobal_sanitize_options})
  add_link_options(${_qvglobal_sanitize_options})
  list(JOIN _qvglobal_sanitize_options " " QVGLOBAL_SANITIZE_FLAGS)

  foreach(_runtime libasan.so libubsan.so)
    execute_process(
      COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${_runtime}
      OUTPUT_VARIABLE _path
      OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(IS_ABSOLUTE "${_path}")
      file(REAL_PATH "${_path}" _path)
      list(APPEND QVGLOBAL_SANITIZE_PRELOAD "${_path}")
    endif()
  endforeach()
  message(STATUS "qvglobal: sanitizers on (${QVGLOBAL_SANITIZE_FLAGS})")
endif()
