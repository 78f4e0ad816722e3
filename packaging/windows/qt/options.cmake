# What of Qt is built for Windows: what the window and its tests use.
set(QT_BUILD_TESTS OFF CACHE BOOL "")
set(QT_BUILD_EXAMPLES OFF CACHE BOOL "")
set(BUILD_WITH_PCH OFF CACHE BOOL "")
set(INPUT_opengl no CACHE STRING "")

set(modules network sql xml dbus concurrent)
set(programs androiddeployqt windeployqt)
set(libraries icu glib zstd openssl fontconfig vulkan direct2d1_1 system_zlib system_png system_jpeg system_pcre2
  system_freetype system_harfbuzz system_doubleconversion system_libb2)
# tabletevent needs a header that the source package lacks.
set(input tabletevent tuiotouch gestures scroller)
set(dates jalalicalendar hijricalendar islamiccivilcalendar)
set(texts textmarkdownreader textmarkdownwriter textodfwriter cborstreamwriter)
set(widgets style_windowsvista graphicsview graphicseffect mdiarea dockwidget wizard toolbox columnview datawidgetmapper
  undocommand keysequenceedit lcdnumber dial commandlinkbutton errormessage fontdialog splashscreen movie systemtrayicon
  sessionmanager)
foreach(feature ${modules} ${programs} ${libraries} ${input} ${dates} ${texts} ${widgets})
  set(FEATURE_${feature} OFF CACHE BOOL "")
endforeach()
