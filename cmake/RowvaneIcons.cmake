# Draws the icons while building, so that the programs need no reader of SVG.
find_program(RSVG_CONVERT rsvg-convert REQUIRED)

# The sizes that icons of 16 and 32 points need on screens of 100 to 300 percent, in pixels.
set(ROWVANE_ICON_SIZES 16 20 24 28 32 40 48 64)

# Sets VARIABLE to a source file with the resources ":/icons/NAME-SIZE.png" of all icons/NAME.svg of this folder.
function(rowvane_icons variable)
  file(GLOB drawings CONFIGURE_DEPENDS "icons/*.svg")
  set(folder "${CMAKE_CURRENT_BINARY_DIR}/icons")
  file(MAKE_DIRECTORY "${folder}")
  set(pictures)
  set(list "<RCC><qresource prefix=\"/icons\">\n")
  foreach(drawing IN LISTS drawings)
    cmake_path(GET drawing STEM name)
    set(outputs)
    set(commands)
    foreach(size IN LISTS ROWVANE_ICON_SIZES)
      set(picture "${name}-${size}.png")
      list(APPEND outputs "${folder}/${picture}")
      list(APPEND commands COMMAND "${RSVG_CONVERT}" --width ${size} --height ${size}
        --output "${folder}/${picture}" "${drawing}")
      string(APPEND list "<file>${picture}</file>\n")
    endforeach()
    add_custom_command(OUTPUT ${outputs} ${commands} DEPENDS "${drawing}" COMMENT "Drawing icon ${name}" VERBATIM)
    list(APPEND pictures ${outputs})
  endforeach()
  file(CONFIGURE OUTPUT "${folder}/icons.qrc" CONTENT "${list}</qresource></RCC>\n")
  set(source "${CMAKE_CURRENT_BINARY_DIR}/drawn_icons.cpp")
  add_custom_command(OUTPUT "${source}"
    COMMAND Qt6::rcc --name icons --output "${source}" "${folder}/icons.qrc"
    DEPENDS "${folder}/icons.qrc" ${pictures} VERBATIM)
  set(${variable} "${source}" PARENT_SCOPE)
endfunction()

# The resources of an .exe: the program's icon and version. VARIABLE gets the source file.
function(rowvane_windows_resources variable)
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  enable_language(RC)
  set(drawing "${CMAKE_CURRENT_SOURCE_DIR}/icons/program.svg")
  set(script "${CMAKE_SOURCE_DIR}/packaging/windows/make-icon")
  set(ROWVANE_ICON "${CMAKE_CURRENT_BINARY_DIR}/rowvane.ico")
  set(pictures)
  set(commands)
  foreach(size 16 20 24 32 48 64 256)
    set(picture "${CMAKE_CURRENT_BINARY_DIR}/program-${size}.png")
    list(APPEND pictures "${picture}")
    list(APPEND commands COMMAND "${RSVG_CONVERT}" --width ${size} --height ${size} --output "${picture}" "${drawing}")
  endforeach()
  add_custom_command(OUTPUT "${ROWVANE_ICON}" ${commands}
    COMMAND Python3::Interpreter "${script}" "${ROWVANE_ICON}" ${pictures}
    DEPENDS "${drawing}" "${script}" COMMENT "Drawing the program's icon" VERBATIM)
  set(source "${CMAKE_CURRENT_BINARY_DIR}/rowvane.rc")
  configure_file("${CMAKE_SOURCE_DIR}/packaging/windows/rowvane.rc.in" "${source}" @ONLY)
  set_source_files_properties("${source}" PROPERTIES OBJECT_DEPENDS "${ROWVANE_ICON}")
  set(${variable} "${source}" PARENT_SCOPE)
endfunction()
