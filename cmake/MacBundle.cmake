# Zelvane.app, put together by `cmake --install`. The file system of a Mac does not tell "Zelvane"
# from "zelvane": so the column's program keeps its own name beside the command's.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(contents Zelvane.app/Contents)

if(ZELVANE_UPDATE_FEED)
  set(updateKeys "
  <key>SUEnableAutomaticChecks</key>
  <true/>
  <key>SUFeedURL</key>
  <string>${ZELVANE_UPDATE_FEED}</string>
  <key>SUPublicEDKey</key>
  <string>${ZELVANE_UPDATE_KEY}</string>
  <key>SUScheduledCheckInterval</key>
  <integer>86400</integer>")
endif()
configure_file(resources/macos/Info.plist.in ${CMAKE_BINARY_DIR}/Info.plist @ONLY)

set(icon ${CMAKE_BINARY_DIR}/Zelvane.icns)
add_custom_command(OUTPUT ${icon}
  COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tools/macos/make-icon
          ${PROJECT_SOURCE_DIR}/resources/family.json ${icon}
  DEPENDS tools/macos/make-icon resources/family.json)
add_custom_target(icon ALL DEPENDS ${icon})

install(TARGETS zelvane DESTINATION ${contents}/MacOS)
install(FILES ${CMAKE_BINARY_DIR}/Info.plist DESTINATION ${contents})
install(FILES resources/family.json resources/hook.zsh resources/strings.json ${icon}
        DESTINATION ${contents}/Resources)
if(ZELVANE_COLUMN)
  set_target_properties(zelvane-app PROPERTIES INSTALL_RPATH @executable_path/../Frameworks)
  install(TARGETS zelvane-app DESTINATION ${contents}/MacOS)
  if(updaterUses)
    install(DIRECTORY ${SPARKLE_FRAMEWORK} DESTINATION ${contents}/Frameworks USE_SOURCE_PERMISSIONS)
  endif()
  # Qt's own tool copies its libraries in and signs the whole for this machine.
  find_program(MACDEPLOYQT macdeployqt HINTS ${QT6_INSTALL_PREFIX}/bin)
  if(MACDEPLOYQT)
    install(CODE "
      execute_process(
        COMMAND ${MACDEPLOYQT} \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/Zelvane.app\"
                -executable=\"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${contents}/MacOS/zelvane\"
                -codesign=- COMMAND_ERROR_IS_FATAL ANY)")
  else()
    message(WARNING "macdeployqt is missing: the installed Zelvane.app needs Qt where it is now")
  endif()
endif()
