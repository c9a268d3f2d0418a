# The library: one object library that holds all the code, and the shared library made from it.
# The few tests that must see what is not exported link the objects.

find_package(ICU REQUIRED COMPONENTS uc i18n)
find_package(OpenSSL 3 REQUIRED COMPONENTS Crypto)

add_library(utilvel90_objetos OBJECT)
utilvel90_prepara(utilvel90_objetos)
set_target_properties(utilvel90_objetos PROPERTIES POSITION_INDEPENDENT_CODE ON)
target_include_directories(utilvel90_objetos PUBLIC ${PROJECT_SOURCE_DIR})
target_compile_definitions(utilvel90_objetos PRIVATE UTILVEL90_CONSTRUYE)
target_link_libraries(utilvel90_objetos PUBLIC OpenSSL::Crypto ICU::i18n ICU::uc ${CMAKE_DL_LIBS})
if(UTILVEL90_FUZZ)
  # The programs of fuzz/ see which of the library's code an input reaches; elsewhere the counters lie idle.
  target_compile_options(utilvel90_objetos PRIVATE -fsanitize=fuzzer-no-link)
endif()

add_library(UtilVel90 SHARED $<TARGET_OBJECTS:utilvel90_objetos>)
add_library(UtilVel90::UtilVel90 ALIAS UtilVel90)
utilvel90_prepara(UtilVel90)
target_compile_features(UtilVel90 PUBLIC cxx_std_20)
target_link_libraries(UtilVel90 PRIVATE OpenSSL::Crypto ICU::i18n ICU::uc ${CMAKE_DL_LIBS})
# What its statics hold is never freed, so the library is not unloaded either: a host that opens and closes it
# would get a new copy each time. libcrypto is built in the same way.
target_link_options(UtilVel90 PRIVATE LINKER:-z,nodelete)
set_target_properties(UtilVel90 PROPERTIES
  VERSION ${PROJECT_VERSION}
  SOVERSION ${PROJECT_VERSION_MAJOR}
  LINKER_LANGUAGE CXX
  VERIFY_INTERFACE_HEADER_SETS ON)

target_sources(UtilVel90 PUBLIC
  FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES
    ${PROJECT_SOURCE_DIR}/UtilVel90.h
    ${PROJECT_SOURCE_DIR}/utilvel90_export.h)

# utilvel90_carpeta([FUENTES <source>...] [CABECERAS <public header>...]): what the present folder adds
# to the library. Public headers are installed and compiled alone; other headers need no mention.
function(utilvel90_carpeta)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "FUENTES;CABECERAS")
  list(TRANSFORM arg_FUENTES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  list(TRANSFORM arg_CABECERAS PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  target_sources(utilvel90_objetos PRIVATE ${arg_FUENTES})
  target_sources(UtilVel90 PUBLIC FILE_SET HEADERS FILES ${arg_CABECERAS})
endfunction()
