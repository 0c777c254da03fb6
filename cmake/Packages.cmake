# Three Debian packages from one build tree, by `cpack -G DEB`.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmorn64)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL library development)
if(VELMORN64_BUILD_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "velmorn64 developers <velmorn64@example.org>")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
# The imported libraries have no version, so that no package is found for them: they are named below.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src)
set(debian_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME velmorn64)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION
"rigid transforms between depth cameras
Puts the point clouds of 2 to 10 depth cameras into one frame, from images of
one chessboard, plain or with printed codes, finds reference planes and
platforms, and shows what the cameras see from above.
.
This package has the library and the two libraries that it imports, the code
reader Quillet64 and the corner extractor Brantis64, which can be replaced by
others with the same functions.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME velmorn64-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "velmorn64 (= ${debian_version})")
# One function takes cv::Mat; the header names it only, and the hosts that call it have its header.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS libopencv-dev)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"rigid transforms between depth cameras (development files)
Puts the point clouds of 2 to 10 depth cameras into one frame, from images of
one chessboard, plain or with printed codes.
.
This package has the header, the CMake package, the pkg-config file and an
example of a host.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME velmorn)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "velmorn64 (= ${debian_version})")
set(CPACK_COMPONENT_TOOL_DESCRIPTION
"rigid transforms between depth cameras (command-line tool)
Calibrates cameras and stitches rigs of 2 to 10 of them from images of one
chessboard, plain or with printed codes, which it prints as well. It finds
reference planes and platforms, and shows depth images from above.
.
This package has the tool velmorn, its manual pages and its completion for
bash.")

# Of a package alone, in no other installation: changelog, copyright, what lintian need not say, and
# for the library what dpkg has to know of it.
string(TIMESTAMP changelog_date "%a, %d %b %Y %H:%M:%S +0000" UTC) # or SOURCE_DATE_EPOCH
string(TIMESTAMP copyright_year "%Y" UTC)
set(debian_files ${CMAKE_CURRENT_BINARY_DIR}/debian)
configure_file(cmake/debian/changelog.in ${debian_files}/changelog.Debian @ONLY)
configure_file(cmake/debian/copyright.in ${debian_files}/copyright @ONLY)
configure_file(cmake/debian/shlibs.in ${debian_files}/shlibs @ONLY)
execute_process(COMMAND gzip -9nf ${debian_files}/changelog.Debian COMMAND_ERROR_IS_FATAL ANY)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA
  ${debian_files}/shlibs ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} key)
  set(package ${CPACK_DEBIAN_${key}_PACKAGE_NAME})
  install(FILES ${debian_files}/changelog.Debian.gz ${debian_files}/copyright
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package}
          COMPONENT ${component} EXCLUDE_FROM_ALL)
  install(FILES cmake/debian/${package}.lintian-overrides RENAME ${package}
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides
          COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()

include(CPack)
