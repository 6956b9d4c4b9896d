# Zelvane.app, put together by `cmake --install`. The file system of a Mac does not tell "Zelvane"
# from "zelvane": so the column's program keeps its own name beside the command's.
math(EXPR buildNumber
     "${PROJECT_VERSION_MAJOR} * 10000 + ${PROJECT_VERSION_MINOR} * 100 + ${PROJECT_VERSION_PATCH}")
configure_file(resources/macos/Info.plist.in ${CMAKE_BINARY_DIR}/Info.plist @ONLY)

set(contents Zelvane.app/Contents)
install(TARGETS zelvane DESTINATION ${contents}/MacOS)
install(FILES ${CMAKE_BINARY_DIR}/Info.plist DESTINATION ${contents})
install(FILES resources/family.json resources/hook.zsh resources/strings.json
        DESTINATION ${contents}/Resources)
if(ZELVANE_COLUMN)
  install(TARGETS zelvane-app DESTINATION ${contents}/MacOS)
  # Qt's own tool copies its libraries in and signs the whole for this machine.
  find_program(MACDEPLOYQT macdeployqt HINTS ${QT6_INSTALL_PREFIX}/bin)
  if(MACDEPLOYQT)
    install(CODE "
      execute_process(
        COMMAND ${MACDEPLOYQT} \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/Zelvane.app\"
                -codesign=- COMMAND_ERROR_IS_FATAL ANY)")
  else()
    message(WARNING "macdeployqt is missing: the installed Zelvane.app needs Qt where it is now")
  endif()
endif()
