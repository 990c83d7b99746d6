# Runs PROGRAM with the list ARGS and fails unless it exits with EXIT and its
# output (standard output for EXIT 0, standard error otherwise) matches MATCH.
# Files listed in ABSENT must not exist afterwards (they are removed first).
# Usage: cmake -DPROGRAM=... -DARGS=a;b -DEXIT=0 -DMATCH=regex [-DABSENT=f;g] -P RunExpect.cmake
if(ABSENT)
  file(REMOVE ${ABSENT})
endif()
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
foreach(path IN LISTS ABSENT)
  if(EXISTS "${path}")
    message(FATAL_ERROR "${path} was left behind")
  endif()
endforeach()
