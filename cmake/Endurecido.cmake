# Flags of what is shipped (release configurations) on systems with ELF: faults in memory end the program instead of
# serving an attacker. packaging/endurecido.sh checks that they are in the built library and program.

option(UTILVEL90_ENDURECE "Harden the library and programs (ELF, release configurations)" ${PROJECT_IS_TOP_LEVEL})
if(NOT UTILVEL90_ENDURECE OR NOT CMAKE_EXECUTABLE_FORMAT STREQUAL "ELF" OR UTILVEL90_SANITIZA OR UTILVEL90_HILOS)
  return()
endif()

set(entregado $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
target_compile_options(utilvel90_compilador INTERFACE
  $<${entregado}:-fstack-protector-strong>
  # The compiler may come with another level of its own.
  $<${entregado}:-U_FORTIFY_SOURCE> $<${entregado}:-D_FORTIFY_SOURCE=3>
  # Equal bytes from any folder: neither texts nor debug information name where it was built.
  $<${entregado}:-ffile-prefix-map=${PROJECT_BINARY_DIR}=.> $<${entregado}:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>)
target_link_options(utilvel90_compilador INTERFACE
  $<${entregado}:LINKER:-z,relro,-z,now,-z,noexecstack>)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
  target_compile_options(utilvel90_compilador INTERFACE $<${entregado}:-fcf-protection=full>)
  # Without these the linker drops the note for all when an object of another maker lacks it.
  target_link_options(utilvel90_compilador INTERFACE $<${entregado}:LINKER:-z,ibt,-z,shstk>)
endif()

# Programs are loaded at an address that nobody foresees, as the library is.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
