# Compiler settings of our own targets; nothing here reaches the programs that link the library.

# UTILVEL90_SANITIZA: build everything under the Address and UndefinedBehavior sanitizers.
option(UTILVEL90_SANITIZA "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
# UTILVEL90_HILOS: build everything under ThreadSanitizer.
option(UTILVEL90_HILOS "Build with ThreadSanitizer" OFF)

add_library(utilvel90_compilador INTERFACE)
target_compile_features(utilvel90_compilador INTERFACE cxx_std_20)
target_compile_options(utilvel90_compilador INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual
  # Amounts must not depend on the processor: no fused multiply-add behind our back.
  -ffp-contract=off)
if(UTILVEL90_SANITIZA)
  target_compile_options(utilvel90_compilador INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(utilvel90_compilador INTERFACE -fsanitize=address,undefined)
endif()
if(UTILVEL90_HILOS)
  target_compile_options(utilvel90_compilador INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(utilvel90_compilador INTERFACE -fsanitize=thread)
endif()

# utilvel90_prepara(<target>): the settings that every target of this project has.
function(utilvel90_prepara objetivo)
  target_link_libraries(${objetivo} PRIVATE $<BUILD_INTERFACE:utilvel90_compilador>)
  set_target_properties(${objetivo} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
endfunction()
