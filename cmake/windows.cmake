# Toolchain for Windows on Linux: Debian's g++-mingw-w64-x86-64-posix and the Qt for Windows in the folder that
# QTDRIVER_WINDOWS_QT names. The Qt's moc, rcc and uic run on Linux.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
# std::thread needs the compiler that is built with POSIX threads.
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QTDRIVER_WINDOWS_QT)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${QTDRIVER_WINDOWS_QT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
