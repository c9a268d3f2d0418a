# Checks that no static and no thread_local of the library has a destructor, by the symbols of its objects:
#   cmake -DNM=<nm> -DOBJETOS=<object files, parted by |> -P tools/estaticos.cmake
# Programs call the library from the destructors of their own, which may run later; framework/SinDestruir.h
# holds what must not end. Compilers register such a destructor with one of the functions looked for; what
# sanitizers add to an object does not use them.
string(REPLACE "|" ";" objetos "${OBJETOS}")
execute_process(COMMAND ${NM} --print-file-name ${objetos}
  OUTPUT_VARIABLE simbolos COMMAND_ERROR_IS_FATAL ANY)
set(faltas "")
foreach(objeto ${objetos})
  string(FIND "${simbolos}" "${objeto}:" lugar)
  if(lugar EQUAL -1)
    list(APPEND faltas "${objeto}: no symbols found")
  endif()
endforeach()
string(REGEX MATCHALL "[^\n]* U _*(cxa_atexit|cxa_thread_atexit|cxa_thread_atexit_impl|atexit)\n" destructores
  "${simbolos}")
if(faltas OR destructores OR NOT objetos)
  list(JOIN faltas "\n" texto)
  message(FATAL_ERROR "statics or thread_locals with destructors:\n${destructores}\n${texto}")
endif()
