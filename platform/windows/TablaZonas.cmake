# utilvel90_tabla_zonas(<variable>): the source of the table of zones, in the variable, made anew whenever the build
# machine's tz database is.
function(utilvel90_tabla_zonas variable)
  set(UTILVEL90_ZONAS /usr/share/zoneinfo CACHE PATH "The tz database: its files and their source, tzdata.zi")
  set(tabla ${CMAKE_CURRENT_BINARY_DIR}/TablaZonas.cpp)
  set(genera ${PROJECT_SOURCE_DIR}/platform/windows/GeneraTablaZonas.cmake)
  add_custom_command(OUTPUT ${tabla}
    COMMAND ${CMAKE_COMMAND} -DZONAS=${UTILVEL90_ZONAS} -DSALIDA=${tabla} -P ${genera}
    DEPENDS ${UTILVEL90_ZONAS}/tzdata.zi ${genera}
    COMMENT "Making the table of zones"
    VERBATIM)
  set(${variable} ${tabla} PARENT_SCOPE)
endfunction()
