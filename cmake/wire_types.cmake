# wire_types(FILE): writes FILE with a line TYPE(name) for every type of the wire
# contract, so that code which goes through all of them misses none.
function(wire_types output)
  set(contract ${PROJECT_SOURCE_DIR}/src/rpc/wlan_config.x)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${contract})
  file(STRINGS ${contract} structs REGEX "^struct [a-z]")
  set(types "TYPE(wlan_config_return_code_e)\n")
  foreach(line IN LISTS structs)
    string(REGEX REPLACE "^struct ([A-Za-z0-9_]+).*" "TYPE(\\1)\n" type "${line}")
    string(APPEND types "${type}")
  endforeach()
  file(CONFIGURE OUTPUT ${output} CONTENT "${types}" @ONLY)
endfunction()
