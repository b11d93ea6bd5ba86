# Both agents have the same version.
include(${CMAKE_CURRENT_LIST_DIR}/../../qtdriver/qt5/lib/cmake/qtdriver/qtdriverConfigVersion.cmake)
