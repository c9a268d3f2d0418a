# What CPack does to the files of each package before it is closed: manual pages are compressed, Debian's checker is
# told what is meant, and a bill of materials says what is in it.
foreach(componente ${CPACK_COMPONENTS_ALL})
  string(TOUPPER ${componente} mayuscula)
  set(nombre ${CPACK_DEBIAN_${mayuscula}_PACKAGE_NAME})
  set(raiz ${CPACK_TEMPORARY_DIRECTORY}/${componente})

  file(GLOB paginas ${raiz}/usr/share/man/man*/*.[1-9])
  if(paginas)
    execute_process(COMMAND gzip -9n ${paginas} COMMAND_ERROR_IS_FATAL ANY)
  endif()

  if(EXISTS ${CMAKE_CURRENT_LIST_DIR}/debian/${nombre}.lintian-overrides)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/${nombre}.lintian-overrides
      ${raiz}/usr/share/lintian/overrides/${nombre} COPYONLY)
  endif()

  execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/sbom.py ${raiz} ${nombre}
    ${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE} "${CPACK_DEBIAN_${mayuscula}_PACKAGE_DEPENDS}"
    "${CPACK_UTILVEL90_${mayuscula}_INCLUYE}"
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
