# What the library's target has on Windows alone.

# UtilVel90.dll, and libUtilVel90.dll.a to link with; the version resource is compiled from the build's texts.
enable_language(RC)
set_target_properties(UtilVel90 PROPERTIES PREFIX "")
# Programs find the library beside themselves: there is no other way to tell them where it is.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set_target_properties(UtilVel90 PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

# Nothing of the moment or of the folder of a build is in it.
target_link_options(UtilVel90 PRIVATE LINKER:--no-insert-timestamp $<$<CONFIG:Release>:-s>)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  # The compiler's runtime is part of the library. Exceptions cross its border all the same, since modules of 64
  # bits unwind by tables of the system; those of 32 bits need one runtime for all, which goes with the library.
  target_link_options(UtilVel90 PRIVATE -static)
  # The same for our own programs, which then need nothing but the library.
  add_link_options(-static)
endif()
