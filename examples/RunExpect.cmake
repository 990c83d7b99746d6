# Runs PROGRAM with the list ARGS and fails unless it exits with EXIT and its
# output (standard output for EXIT 0, standard error otherwise) matches MATCH.
# Usage: cmake -DPROGRAM=... -DARGS=a;b -DEXIT=0 -DMATCH=regex -P RunExpect.cmake
execute_process(COMMAND ${PROGRAM} ${ARGS} RESULT_VARIABLE rc OUTPUT_VARIABLE out
                ERROR_VARIABLE err)
if(EXIT EQUAL 0)
  set(text "${out}")
else()
  set(text "${err}")
endif()
message("${out}${err}")
if(NOT rc EQUAL EXIT)
  message(FATAL_ERROR "exit status ${rc}, expected ${EXIT}")
endif()
if(NOT text MATCHES "${MATCH}")
  message(FATAL_ERROR "output does not match: ${MATCH}")
endif()
