# Where the parts of Zelvane.app are installed, and what its updater is made of. The file system of a Mac
# does not tell "Zelvane" from "zelvane": so the column's program keeps its own name beside the command's.
set(CMAKE_INSTALL_BINDIR Zelvane.app/Contents/MacOS)
set(ZELVANE_RESOURCES Zelvane.app/Contents/Resources)
set(CMAKE_INSTALL_RPATH @executable_path/../Frameworks)

# Sparkle, where its framework is found and it is told where new versions are announced.
set(ZELVANE_UPDATE_FEED "" CACHE STRING "Address of the list of released versions (Sparkle's appcast)")
set(ZELVANE_UPDATE_KEY "" CACHE STRING "Public key that released versions are signed for")
find_library(SPARKLE_FRAMEWORK Sparkle)
if(SPARKLE_FRAMEWORK AND ZELVANE_UPDATE_FEED AND ZELVANE_UPDATE_KEY)
  set(updaterSource macos/updater.mm)
  set(updaterUses ${SPARKLE_FRAMEWORK})
else()
  message(STATUS "No updater: it needs Sparkle, ZELVANE_UPDATE_FEED and ZELVANE_UPDATE_KEY")
  set(updaterSource no_updater.cpp)
endif()
