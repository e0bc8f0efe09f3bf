# cmake -DBUILD_DIR=... -DEXPECTED=... -DVERSION=... -P InstallTest.cmake
# Installs the build into a prefix of its own and holds what lands there
# against the list of files a desktop expects, then lets the desktop's own
# tools read the menu entry and the AppStream metadata.
set(prefix ${BUILD_DIR}/install-test)
file(REMOVE_RECURSE ${prefix})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix}
  RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE problem)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "cmake --install failed: ${problem}")
endif()

file(GLOB_RECURSE found RELATIVE ${prefix} LIST_DIRECTORIES false ${prefix}/*)
list(SORT found)
file(STRINGS ${EXPECTED} expected)
set(missing ${expected})
list(REMOVE_ITEM missing ${found})
set(extra ${found})
list(REMOVE_ITEM extra ${expected})
if(missing OR extra)
  list(JOIN missing "\n  " missing)
  list(JOIN extra "\n  " extra)
  message(FATAL_ERROR "installed files differ from ${EXPECTED}\nmissing:\n  ${missing}\n"
                      "not listed:\n  ${extra}")
endif()

# Each PNG is the size its folder names: the width and height of its header.
foreach(file IN LISTS found)
  if(file MATCHES "^share/icons/hicolor/([0-9]+)x([0-9]+)/apps/velmora\\.png$")
    math(EXPR size "${CMAKE_MATCH_1}" OUTPUT_FORMAT HEXADECIMAL)
    string(REGEX REPLACE "^0x" "" hex ${size})
    string(LENGTH ${hex} digits)
    math(EXPR pad "8 - ${digits}")
    string(REPEAT "0" ${pad} zeros)
    string(TOLOWER "${zeros}${hex}${zeros}${hex}" want)
    file(READ ${prefix}/${file} got OFFSET 16 LIMIT 8 HEX)
    if(NOT got STREQUAL want)
      message(FATAL_ERROR "${file}: header gives ${got}, not ${want}")
    endif()
  endif()
endforeach()

# The installed command line runs and tells the project's version.
execute_process(COMMAND ${prefix}/bin/velmora-cli --version
  RESULT_VARIABLE status OUTPUT_VARIABLE said OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT status EQUAL 0 OR NOT said STREQUAL "velmora-cli ${VERSION}")
  message(FATAL_ERROR "velmora-cli --version: '${said}' (exit ${status}), not 'velmora-cli ${VERSION}'")
endif()

execute_process(COMMAND desktop-file-validate ${prefix}/share/applications/velmora.desktop
  RESULT_VARIABLE status OUTPUT_VARIABLE said ERROR_VARIABLE said)
if(NOT status EQUAL 0 OR NOT said STREQUAL "")
  message(FATAL_ERROR "desktop-file-validate: ${said}")
endif()
execute_process(COMMAND appstreamcli validate-tree --no-net ${prefix}
  RESULT_VARIABLE status OUTPUT_VARIABLE said ERROR_VARIABLE said)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "appstreamcli validate-tree: ${said}")
endif()
# A first start writes the logon entry; it must start the installed program
# and read as a valid entry too.
set(home ${BUILD_DIR}/install-test-home)
file(REMOVE_RECURSE ${home})
file(MAKE_DIRECTORY ${home}/runtime)
execute_process(COMMAND ${CMAKE_COMMAND} -E env XDG_CONFIG_HOME=${home}/config
    XDG_DATA_HOME=${home}/data XDG_RUNTIME_DIR=${home}/runtime TMPDIR=${home}
    ${prefix}/bin/velmora-cli ui -
  INPUT_FILE /dev/null RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE said)
set(entry ${home}/config/autostart/velmora.desktop)
if(NOT status EQUAL 0 OR NOT EXISTS ${entry})
  message(FATAL_ERROR "a first start wrote no logon entry (exit ${status}): ${said}")
endif()
file(STRINGS ${entry} exec REGEX "^Exec=")
if(NOT exec STREQUAL "Exec=\"${prefix}/bin/velmora\"")
  message(FATAL_ERROR "the logon entry starts '${exec}', not ${prefix}/bin/velmora")
endif()
execute_process(COMMAND desktop-file-validate ${entry}
  RESULT_VARIABLE status OUTPUT_VARIABLE said ERROR_VARIABLE said)
if(NOT status EQUAL 0 OR NOT said STREQUAL "")
  message(FATAL_ERROR "desktop-file-validate, logon entry: ${said}")
endif()
file(REMOVE_RECURSE ${prefix} ${home})
