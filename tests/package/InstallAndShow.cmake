# Installs the desktop program and what it needs into a folder of its own, and runs it there: with a window in memory, and
# without any display.
# Run with: cmake -DBUILD=… -DWORK=… -DVERSION=… -P InstallAndShow.cmake

# run(code word…): the exit code must be this one. The output is in `output`.
function(run code)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result STREQUAL code)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}\nended with ${result}, not with ${code}:\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect_output pattern)
  if(NOT output MATCHES "${pattern}")
    message(FATAL_ERROR "this was expected: ${pattern}\nand this was printed:\n${output}")
  endif()
endfunction()

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}/person")
foreach(component program desktop)
  run(0 "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/prefix" --component ${component})
endforeach()
set(program "${WORK}/prefix/bin/chatsum-desktop")

# Neither the settings of the person who runs this nor a display of theirs has a part in it.
set(ENV{HOME} "${WORK}/person")
foreach(name DISPLAY WAYLAND_DISPLAY XDG_SESSION_TYPE XDG_CONFIG_HOME XDG_DATA_HOME QT_QPA_PLATFORM QT_QPA_PLATFORMTHEME
        QT_SCALE_FACTOR LANGUAGE)
  unset(ENV{${name}})
endforeach()

run(0 "${program}" --version)
expect_output("^chatsum-desktop ${VERSION}\n$")

# No display, one that does not exist, and a kind that Qt does not have.
run(1 "${program}" --sample)
expect_output("^chatsum-desktop: there is no display to show the window on \\([^\n]+\\)\\.\n$")
run(1 "${CMAKE_COMMAND}" -E env DISPLAY=:4095 "${program}")
expect_output("^chatsum-desktop: there is no display [^\n]*\\([^\n]*:4095\\)\\.\n$")
run(1 "${program}" -platform paper)
expect_output("^chatsum-desktop: there is no display [^\n]*\\([^\n]*paper[^\n]*\\)\\.\n$")

# The window on the sample device. Drawn twice it is the same; without the catalogues its words are others.
set(ENV{QT_QPA_PLATFORM} offscreen)
set(ENV{QT_QUICK_BACKEND} software)
set(ENV{LC_ALL} de_DE.UTF-8)
foreach(picture german again bare)
  if(picture STREQUAL bare)
    file(REMOVE_RECURSE "${WORK}/prefix/share/locale")
  endif()
  run(0 "${program}" --sample --light --home "${WORK}/home-${picture}" --screenshot "${WORK}/${picture}.png")
  if(output MATCHES "qrc:")
    message(FATAL_ERROR "a page of the window complains:\n${output}")
  endif()
  file(SIZE "${WORK}/${picture}.png" size)
  if(size LESS 40000)
    message(FATAL_ERROR "${picture}.png has ${size} bytes: there cannot be much in that window")
  endif()
  file(SHA256 "${WORK}/${picture}.png" ${picture})
endforeach()
if(NOT german STREQUAL again)
  message(FATAL_ERROR "the same window was drawn twice in different ways")
endif()
if(german STREQUAL bare)
  message(FATAL_ERROR "the installed catalogues are not read")
endif()

# Desktops offer it by its entry, under its icon.
set(shared "${WORK}/prefix/share")
foreach(file applications/chatsum-desktop.desktop icons/hicolor/scalable/apps/chatsum-desktop.svg
        icons/hicolor/48x48/apps/chatsum-desktop.png)
  if(NOT EXISTS "${shared}/${file}")
    message(FATAL_ERROR "${file} is not installed")
  endif()
endforeach()
file(READ "${shared}/applications/chatsum-desktop.desktop" entry)
foreach(line "Name=Chatsum" "Exec=chatsum-desktop %f" "Icon=chatsum-desktop")
  if(NOT entry MATCHES "\n${line}\n")
    message(FATAL_ERROR "the entry has no line ${line}")
  endif()
endforeach()
find_program(VALIDATE desktop-file-validate)
if(VALIDATE)
  run(0 "${VALIDATE}" "${shared}/applications/chatsum-desktop.desktop")
endif()
file(REMOVE_RECURSE "${WORK}")
