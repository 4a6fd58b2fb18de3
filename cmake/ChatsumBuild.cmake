# The settings every target shares, and the few helpers the folders' lists use.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
# The shared library and the programs are made of the same objects.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()

if(NOT CMAKE_CXX_COMPILER_LAUNCHER)
  find_program(CHATSUM_CCACHE ccache)
  if(CHATSUM_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CHATSUM_CCACHE}")
  endif()
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion)
# GCC 12 sees overlaps in its own std::string at -O3 that are not there (its bug 105651).
add_compile_options($<$<CONFIG:Release>:-Wno-restrict>)
# Nobody replaces our functions at load time, so position-independent code may be inlined like any other.
add_compile_options(-fno-semantic-interposition)
# A program loads only the libraries it calls: starting up is part of the time a person waits.
add_link_options(-Wl,--as-needed)

if(CHATSUM_SANITIZE)
  add_compile_options(-fsanitize=${CHATSUM_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${CHATSUM_SANITIZE})
endif()
if(CHATSUM_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

# chatsum_sources(RESULT folder…): the .cpp files below these folders of the current list file. A new file is noticed
# at the next build.
function(chatsum_sources result)
  set(patterns "")
  foreach(folder IN LISTS ARGN)
    list(APPEND patterns "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/*.cpp")
  endforeach()
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${patterns})
  set(${result} "${sources}" PARENT_SCOPE)
endfunction()

# chatsum_link_inside(target): puts the whole library into a program, hidden classes included. A program does this or
# links the shared library `chatsum`, never both, so that a process has one set of singletons.
function(chatsum_link_inside target)
  target_link_libraries(${target} PRIVATE chatsum_objects chatsum_foundation)
endfunction()
