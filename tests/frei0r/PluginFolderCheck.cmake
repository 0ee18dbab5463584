# What a host finds when it scans the plug-in folder: every file ending in ".so" there or below (MLT
# opens those in the folder, GStreamer also those in its sub-folders) is a plug-in module that shows the
# frei0r entry points and nothing else; and the shared library of the effects shows only the entry points
# the modules pass their calls to.
#
#   cmake -DNM=<nm> -DPLUGIN_DIR=<plug-in folder> -DLIBRARY=<shared library> -P PluginFolderCheck.cmake
cmake_minimum_required(VERSION 3.25)

# Fails unless `file` defines dynamic symbols, each matching `allowed` and together including `required`.
function(check_exports file allowed required)
  execute_process(COMMAND ${NM} -D --defined-only --format=just-symbols ${file}
    OUTPUT_VARIABLE output RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "${NM} cannot read ${file}")
  endif()
  string(REPLACE "\n" ";" symbols "${output}")
  list(REMOVE_ITEM symbols "")
  set(stray "")
  foreach(symbol IN LISTS symbols)
    if(NOT symbol MATCHES "${allowed}")
      list(APPEND stray ${symbol})
    endif()
  endforeach()
  if(stray)
    message(SEND_ERROR "${file} shows what it should keep to itself: ${stray}")
  endif()
  if(NOT required IN_LIST symbols)
    message(SEND_ERROR "${file} does not show ${required}")
  endif()
endfunction()

file(GLOB_RECURSE shared_objects ${PLUGIN_DIR}/*.so)
if(NOT shared_objects)
  message(FATAL_ERROR "no plug-in modules in ${PLUGIN_DIR}")
endif()
foreach(module IN LISTS shared_objects)
  check_exports(${module} "^f0r_[a-z0-9_]+$" f0r_get_plugin_info)
endforeach()
# Tw::Host::Frei0r::Entry::init(char const*), and its neighbours.
check_exports(${LIBRARY} "^_ZN2Tw4Host6Frei0r5Entry" _ZN2Tw4Host6Frei0r5Entry4initEPKc)
