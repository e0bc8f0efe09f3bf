# velmora_add_test(<Name> LABEL unit|integration|gui SOURCES <files...> [LIBS <targets...>])
# One executable and one CTest per test class. Tests run without a display
# and with their own settings and data folders, so they never touch the
# user's.
function(velmora_add_test name)
  cmake_parse_arguments(T "" "LABEL;TIMEOUT" "SOURCES;LIBS" ${ARGN})
  if(NOT T_LABEL MATCHES "^(unit|integration|gui)$")
    message(FATAL_ERROR "velmora_add_test(${name}): LABEL must be unit, integration or gui")
  endif()
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 120)
  endif()
  add_executable(${name} ${T_SOURCES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  target_link_libraries(${name} PRIVATE velmora_test_support Qt6::Test ${T_LIBS})
  target_compile_options(${name} PRIVATE ${VELMORA_WARNINGS})
  add_test(NAME ${name} COMMAND ${name})
  # Under the sanitizers leaks count too, but for the third-party ones
  # named in tests/lsan.supp.
  set(sanitizer_env
    "ASAN_OPTIONS=detect_leaks=1:abort_on_error=0"
    "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0"
    "UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1")
  set_tests_properties(${name} PROPERTIES
    LABELS ${T_LABEL}
    TIMEOUT ${T_TIMEOUT}
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;VELMORA_BIN_DIR=${CMAKE_BINARY_DIR}/bin;VELMORA_TEST_DATA=${CMAKE_SOURCE_DIR}/tests/data;${sanitizer_env}")
endfunction()
