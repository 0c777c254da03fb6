# Rendered boards, for the tool's simulated rigs and for the tests, which are also built without it.
add_library(velmorn_board_pictures STATIC EXCLUDE_FROM_ALL
  tools/velmorn/board_picture.cpp
  tools/velmorn/plane_renderer.cpp)
target_include_directories(velmorn_board_pictures PUBLIC ${PROJECT_SOURCE_DIR}/tools)
target_link_libraries(velmorn_board_pictures
  PUBLIC opencv_core PRIVATE opencv_imgproc velmorn64_build_flags)
