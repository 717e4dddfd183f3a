# Toolchain: Windows programs of 32 bits, by Debian's mingw-w64, with the libraries that
# scripts/windows_libraries.sh makes.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_VERSION 10)
set(CMAKE_SYSTEM_PROCESSOR x86)
set(triplet i686-w64-mingw32)
set(CMAKE_C_COMPILER ${triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${triplet}-windres)

get_filename_component(libraries "${CMAKE_CURRENT_LIST_DIR}/../build/windows-libraries" ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH "${libraries}/qt" "${libraries}/libxml2" "${libraries}" /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(QT_HOST_PATH /usr CACHE PATH "Where moc, rcc and uic are")

# FindZLIB would take the import library of a DLL.
set(ZLIB_LIBRARY /usr/${triplet}/lib/libz.a CACHE FILEPATH "")
set(ZLIB_INCLUDE_DIR /usr/${triplet}/include CACHE PATH "")

# Nothing of the compiler's lies beside the program.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
