# Compiler settings of our own targets; nothing here reaches the programs that link the library.

# UTILVEL90_SANITIZA: build everything under the Address and UndefinedBehavior sanitizers.
option(UTILVEL90_SANITIZA "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
# With Clang the same objects serve the tests and the programs of fuzz/.
set(UTILVEL90_FUZZ OFF)
if(UTILVEL90_SANITIZA AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  set(UTILVEL90_FUZZ ON)
endif()
# UTILVEL90_HILOS: build everything under ThreadSanitizer.
option(UTILVEL90_HILOS "Build with ThreadSanitizer" OFF)

add_library(utilvel90_compilador INTERFACE)
target_compile_features(utilvel90_compilador INTERFACE cxx_std_20)
# For C++ alone: the compiler of Windows resources has other options.
target_compile_options(utilvel90_compilador INTERFACE $<$<COMPILE_LANGUAGE:CXX>:
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual
  # Amounts must not depend on the processor: no fused multiply-add behind our back.
  -ffp-contract=off>)
# 32-bit x86 would compute doubles in registers of 64 bits of mantissa and round them when they are stored, which
# is other amounts. SSE2 computes them as they are.
if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(i[3-6]86|x86|x86_64|AMD64)$")
  target_compile_options(utilvel90_compilador INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-msse2 -mfpmath=sse>)
endif()
if(UTILVEL90_SANITIZA)
  target_compile_options(utilvel90_compilador INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(utilvel90_compilador INTERFACE -fsanitize=address,undefined)
endif()
if(UTILVEL90_HILOS)
  target_compile_options(utilvel90_compilador INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(utilvel90_compilador INTERFACE -fsanitize=thread)
endif()

# A project that we are a part of may take shortcuts in arithmetic, but not in ours; and the warnings that it asks for,
# as errors perhaps, are about its own code.
if(NOT PROJECT_IS_TOP_LEVEL)
  target_compile_options(utilvel90_compilador INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-fno-fast-math -w>)
endif()

include(${CMAKE_CURRENT_LIST_DIR}/Endurecido.cmake)

# utilvel90_prepara(<target>): the settings that every target of this project has.
function(utilvel90_prepara objetivo)
  target_link_libraries(${objetivo} PRIVATE $<BUILD_INTERFACE:utilvel90_compilador>)
  set_target_properties(${objetivo} PROPERTIES
    CXX_EXTENSIONS OFF
    UNITY_BUILD OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
endfunction()
