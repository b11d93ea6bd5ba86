# cmake --install: what gets the agent into an application, the public headers, and a CMake package:
#   find_package(qtdriver)  with the target qtdriver::agent, which a host links, or loads from $<TARGET_FILE:qtdriver::agent>
# The agent is of one Qt, so each Qt has an installation of its own.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# The public headers include each other relative to the folder that has "agent" and "compat".
set(headers ${CMAKE_INSTALL_INCLUDEDIR}/qtdriver)
add_library(qtdriver::agent ALIAS qtdriver)
set_target_properties(qtdriver PROPERTIES EXPORT_NAME agent)
target_include_directories(qtdriver INTERFACE $<INSTALL_INTERFACE:${headers}>)

install(TARGETS qtdriver EXPORT qtdriver)
install(TARGETS qttestability)
if(TARGET qtdriver-preload)
  install(TARGETS qtdriver-preload)
endif()
foreach(header agent/testclient.h bridge/nameprovider.h compat/export.h)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${PROJECT_SOURCE_DIR}/src/${header} DESTINATION ${headers}/${folder})
endforeach()

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/qtdriver)
install(EXPORT qtdriver NAMESPACE qtdriver:: DESTINATION ${package})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/qtdriverConfig.cmake.in ${CMAKE_BINARY_DIR}/qtdriverConfig.cmake
  INSTALL_DESTINATION ${package})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/qtdriverConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/qtdriverConfig.cmake ${CMAKE_BINARY_DIR}/qtdriverConfigVersion.cmake DESTINATION ${package})
