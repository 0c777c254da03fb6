# The files of the report's page, as sources of the tool.
find_path(THREE_JS three.min.js PATHS /usr/share/javascript/three NO_CMAKE_FIND_ROOT_PATH)
set(orbit_controls ${THREE_JS}/examples/js/controls/OrbitControls.js)
if(NOT THREE_JS OR NOT EXISTS ${orbit_controls})
  message(FATAL_ERROR "three.js is missing, which `velmorn report` needs: install libjs-three, or "
    "set THREE_JS to the folder of three.min.js and examples/js/controls/OrbitControls.js")
endif()

function(velmorn_embed_text target function input)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/embedded/${function}.cpp)
  set(script ${PROJECT_SOURCE_DIR}/cmake/EmbedText.cmake)
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DINPUT=${input} -DOUTPUT=${output} -DFUNCTION=${function} -P ${script}
    DEPENDS ${input} ${script} VERBATIM)
  target_sources(${target} PRIVATE ${output})
endfunction()

set(report_folder ${CMAKE_CURRENT_SOURCE_DIR}/velmorn/report)
velmorn_embed_text(velmorn_tool_lib reportStyle ${report_folder}/report.css)
velmorn_embed_text(velmorn_tool_lib reportSceneScript ${report_folder}/scene.js)
velmorn_embed_text(velmorn_tool_lib reportViewScript ${report_folder}/view.js)
velmorn_embed_text(velmorn_tool_lib reportPageScript ${report_folder}/page.js)
velmorn_embed_text(velmorn_tool_lib threeScript ${THREE_JS}/three.min.js)
velmorn_embed_text(velmorn_tool_lib orbitScript ${orbit_controls})
velmorn_embed_text(velmorn_tool_lib threeLicence ${report_folder}/three-licence.txt)
