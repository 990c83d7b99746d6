# Holds every subsystem to the DEPENDS of its qx_add_subsystem call.
# 1. With the include path its objects are compiled with, each subsystem
#    preprocesses an include of every other subsystem's first header: this
#    must succeed exactly for the subsystems it depends on, directly or
#    through them, and fail with that header not found for all the rest.
# 2. Its sources, its public headers and the internal headers they reach
#    include only its own folder and those it depends on, never climb out with
#    "../", and use every dependency they declare.
# Usage: cmake -DLAYERS=<layers.cmake> -DCXX=<compiler> -DWORK_DIR=<dir> -P CheckLayers.cmake
cmake_minimum_required(VERSION 3.25)
include(${LAYERS})
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
set(failures "")

# The subsystems `name` may include: itself and its dependencies, recursively.
function(reach name out)
  set(result ${name})
  foreach(dep IN LISTS qx_${name}_depends)
    reach(${dep} sub)
    list(APPEND result ${sub})
  endforeach()
  list(REMOVE_DUPLICATES result)
  set(${out} ${result} PARENT_SCOPE)
endfunction()

foreach(name IN LISTS qx_layers)
  reach(${name} allowed)
  set(flags "")
  foreach(dir IN LISTS qx_${name}_includes)
    list(APPEND flags "-I${dir}")
  endforeach()

  # 1. What the compiler lets it include.
  foreach(other IN LISTS qx_layers)
    file(GLOB headers RELATIVE ${qx_${other}_dir} ${qx_${other}_dir}/*.h)
    if(other STREQUAL name OR NOT headers)
      continue()
    endif()
    list(SORT headers)
    list(GET headers 0 header)
    set(probe ${WORK_DIR}/${name}_includes_${other}.cpp)
    file(WRITE ${probe} "#include \"qx/${other}/${header}\"\n")
    execute_process(COMMAND ${CXX} -std=c++17 -E -o ${probe}.i ${flags} ${probe}
                    RESULT_VARIABLE rc ERROR_VARIABLE err OUTPUT_QUIET)
    if(other IN_LIST allowed AND NOT rc EQUAL 0)
      list(APPEND failures "${name} cannot include qx/${other}/${header}, a dependency:\n${err}")
    elseif(NOT other IN_LIST allowed AND rc EQUAL 0)
      list(APPEND failures "${name} can include qx/${other}/${header}, which it does not depend on")
    elseif(NOT other IN_LIST allowed AND NOT err MATCHES "qx/${other}/${header}")
      list(APPEND failures "${name} failed on qx/${other}/${header} for another reason:\n${err}")
    endif()
  endforeach()

  # 2. What its code includes: the sources, then the headers in reach.
  set(files ${qx_${name}_sources})
  file(GLOB public ${qx_${name}_dir}/*.h)
  list(APPEND files ${public})
  set(used "")
  set(index 0)
  list(LENGTH files count)
  while(index LESS count)
    list(GET files ${index} file)
    math(EXPR index "${index} + 1")
    file(STRINGS ${file} lines REGEX "^[ \t]*#[ \t]*include[ \t]*\"")
    foreach(line IN LISTS lines)
      string(REGEX REPLACE "^[^\"]*\"([^\"]*)\".*" "\\1" path "${line}")
      if(path MATCHES "^\\.\\./|/\\.\\./")
        list(APPEND failures "${file} includes \"${path}\" by a relative path out of its folder")
      elseif(path MATCHES "^qx/([^/]+)/")
        set(folder ${CMAKE_MATCH_1})
        if(NOT folder IN_LIST allowed)
          list(APPEND failures "${file} includes \"${path}\", but ${name} does not depend on ${folder}")
        endif()
        list(APPEND used ${folder})
        string(REGEX REPLACE "^qx/${name}/" "${qx_${name}_dir}/" own "${path}")
        if(folder STREQUAL name AND path MATCHES "/internal/" AND NOT own IN_LIST files)
          list(APPEND files ${own})
          math(EXPR count "${count} + 1")
        endif()
      endif()
    endforeach()
  endwhile()
  foreach(dep IN LISTS qx_${name}_depends)
    if(NOT dep IN_LIST used)
      list(APPEND failures "${name} declares DEPENDS ${dep}, but none of its code includes it")
    endif()
  endforeach()
  list(LENGTH allowed reached)
  math(EXPR reached "${reached} - 1")
  message(STATUS "${name}: ${count} files checked, reaches ${reached} other subsystem(s)")
endforeach()

if(failures)
  # Indented lines are printed as they are, not rewrapped.
  list(JOIN failures "\n  " text)
  message(FATAL_ERROR "Subsystems that break their declared dependencies:\n  ${text}")
endif()
