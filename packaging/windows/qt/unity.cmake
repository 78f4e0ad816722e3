# Included by Qt's project while it is configured: the larger modules are compiled many files at a time, which saves two
# thirds of the work. Files that do not go with others are compiled alone.
function(compile_together)
  foreach(target BundledHarfbuzz Core Gui PrintSupport Test Widgets FbSupportPrivate QMinimalIntegrationPlugin
      QOffscreenIntegrationPlugin QWindowsIntegrationPlugin)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 16)
  endforeach()

  compile_alone(Core compat/removed_api global/qglobal global/qhooks global/qlogging global/qrandom global/qsimd io/qurl
    io/qurlrecode kernel/qmetaobjectbuilder text/qstring text/qunicodetools time/qromancalendar)
  compile_alone(Gui image/qpixmapcache kernel/qplatformintegrationfactory kernel/qplatformthemefactory
    kernel/qwindowsysteminterface text/windows/qwindowsdirectwritefontdatabase
    text/windows/qwindowsfontengine text/windows/qwindowsfontenginedirectwrite util/qpkmhandler)
  compile_alone(Test qteamcitylogger)
  compile_alone(Widgets accessible/qaccessiblewidgets compat/removed_api dialogs/qfiledialog dialogs/qsidebar)
  compile_alone(QWindowsIntegrationPlugin qwindowsmenu qwindowspointerhandler)
endfunction()

# compile_alone(TARGET SOURCE...): the sources without ".cpp".
function(compile_alone target)
  get_target_property(folder ${target} SOURCE_DIR)
  list(TRANSFORM ARGN PREPEND "${folder}/" OUTPUT_VARIABLE files)
  list(TRANSFORM files APPEND ".cpp")
  set_source_files_properties(${files} TARGET_DIRECTORY ${target} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# When all targets are there.
cmake_language(DEFER DIRECTORY "${CMAKE_SOURCE_DIR}" CALL compile_together)
