# Installs the build into a folder of its own, builds the consumer against it with find_package and again with
# pkg-config, and runs both.
# Run with: cmake -DBUILD=… -DWORK=… -DCXX=… -DFLAGS=… -DSOURCE=… -P InstallAndUse.cmake

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(result)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}\nfailed (${result}):\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect_answer)
  # The day is the system's wording; the test's environment pins zone and locale.
  if(NOT output MATCHES "the library answers:\nAlex: Hello \\(Tue, 11-14-2023 10:13 PM\\)\nMe: Good evening \\(Tue, ")
    message(FATAL_ERROR "the consumer printed:\n${output}")
  endif()
endfunction()

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
run("${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/prefix")

run("${CMAKE_COMMAND}" -S "${SOURCE}" -B "${WORK}/build" -G Ninja "-DCMAKE_PREFIX_PATH=${WORK}/prefix"
    "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_FLAGS=${FLAGS}")
run("${CMAKE_COMMAND}" --build "${WORK}/build")
run("${WORK}/build/consumer")
expect_answer()

find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
  file(GLOB_RECURSE description "${WORK}/prefix/*/chatsum.pc")
  cmake_path(GET description PARENT_PATH folder)
  cmake_path(GET folder PARENT_PATH libraries)
  set(ENV{PKG_CONFIG_PATH} "${folder}")
  run("${PKG_CONFIG}" --cflags --libs chatsum-system)
  separate_arguments(arguments UNIX_COMMAND "${FLAGS} ${output}")
  run("${CXX}" -std=c++20 "${SOURCE}/main.cpp" -o "${WORK}/with-pkg-config" ${arguments} "-Wl,-rpath,${libraries}")
  run("${WORK}/with-pkg-config")
  expect_answer()
endif()
file(REMOVE_RECURSE "${WORK}")
