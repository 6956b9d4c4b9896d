# The updater of the Mac's application: Sparkle, where its framework is found and it is told where new
# versions are announced. Sets the source and the libraries that the column needs for it.
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
