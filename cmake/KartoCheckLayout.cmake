# Where the parts of the program are installed, below the prefix: by the Filesystem Hierarchy Standard,
# on Windows all in the program's folder. src/platform/system_layout.h tells the program the same.
if(WIN32)
  set(KARTOCHECK_PROGRAM_DIR ".")
  set(KARTOCHECK_WINDOW_DIR ".") # users start it, too
  set(KARTOCHECK_PRIVATE_DIR "lib/kartocheck")
  set(KARTOCHECK_SCHEMA_DIR "schemas")
  set(KARTOCHECK_SCENARIO_DIR "scenarios")
else()
  include(GNUInstallDirs)
  set(KARTOCHECK_PROGRAM_DIR "${CMAKE_INSTALL_BINDIR}")
  set(KARTOCHECK_PRIVATE_DIR "lib/kartocheck")
  set(KARTOCHECK_WINDOW_DIR "${KARTOCHECK_PRIVATE_DIR}")
  set(KARTOCHECK_SCHEMA_DIR "${CMAKE_INSTALL_DATADIR}/kartocheck")
  set(KARTOCHECK_SCENARIO_DIR "${CMAKE_INSTALL_DATADIR}/kartocheck/scenarios")
endif()
