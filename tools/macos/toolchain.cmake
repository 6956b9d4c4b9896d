# Cross-compiles for macOS with Debian's clang: a check, not a way to build what others run. The folder
# made by tools/macos/make-sdk comes in MACOS_SDK, the machine (arm64, x86_64) in MACOS_ARCH.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR $ENV{MACOS_ARCH})
set(sdk $ENV{MACOS_SDK})
set(tools /usr/lib/llvm-19/bin)

set(CMAKE_CXX_COMPILER ${tools}/clang++)
set(CMAKE_CXX_COMPILER_TARGET $ENV{MACOS_ARCH}-apple-macos14.0)
set(CMAKE_AR ${tools}/llvm-ar CACHE FILEPATH "")
set(CMAKE_RANLIB ${tools}/llvm-ranlib CACHE FILEPATH "")
set(CMAKE_INSTALL_NAME_TOOL ${tools}/llvm-install-name-tool CACHE FILEPATH "")
set(CMAKE_OTOOL ${tools}/llvm-otool CACHE FILEPATH "")
foreach(variable SYSROOT ARCHITECTURES DEPLOYMENT_TARGET)
  set(CMAKE_OSX_${variable} "" CACHE STRING "")
endforeach()

file(READ ${sdk}/compile-flags flags)
string(STRIP "${flags}" flags)
set(CMAKE_CXX_FLAGS_INIT "${flags} -Wunguarded-availability")
set(CMAKE_EXE_LINKER_FLAGS_INIT
    "-fuse-ld=lld -isysroot ${sdk} -Wl,--error-limit=0 -Wl,-platform_version,macos,14.0,14.0")
# Nothing may come from this machine.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_FIND_ROOT_PATH ${sdk})
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} ${sdk}/lib/$ENV{MACOS_ARCH}/pkgconfig)
set(ENV{PKG_CONFIG_PATH} "")
# Trial links would find every library there is not.
set(CMAKE_HAVE_LIBC_PTHREAD TRUE CACHE INTERNAL "")
