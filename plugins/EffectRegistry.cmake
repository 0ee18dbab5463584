# The effects of plugins/EffectList.h compiled for one host: a file per effect, compiled a few at a time
# (tw_compile_in_batches), and one file with the registry's table. TW_EFFECT_ENTRIES holds the
# entry names in list order, for targets made per effect.

set(TW_EFFECT_LIST ${CMAKE_CURRENT_LIST_DIR}/EffectList.h)
set(TW_EFFECT_TEMPLATES ${CMAKE_CURRENT_LIST_DIR})
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${TW_EFFECT_LIST})

# The list's lines end in backslashes, which a CMake list would read as escapes: match the whole text.
file(READ ${TW_EFFECT_LIST} tw_effect_text)
string(REGEX MATCHALL "\n *EFFECT\\([A-Za-z0-9_]+," tw_effect_lines "${tw_effect_text}")
set(TW_EFFECT_ENTRIES "")
foreach(line IN LISTS tw_effect_lines)
  string(REGEX REPLACE "^\n *EFFECT\\(([A-Za-z0-9_]+),$" "\\1" entry "${line}")
  list(APPEND TW_EFFECT_ENTRIES ${entry})
endforeach()
list(LENGTH TW_EFFECT_ENTRIES TW_EFFECT_COUNT)

# tw_add_effect_registry(<target> <host header> <host type>): a static library with every effect and the
# table of effectRegistry<host type>().
function(tw_add_effect_registry target host_header host_type)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/${target})
  set(sources "")
  set(index 0)
  foreach(entry IN LISTS TW_EFFECT_ENTRIES)
    configure_file(${TW_EFFECT_TEMPLATES}/EffectInstance.cpp.in ${folder}/${entry}.cpp @ONLY)
    list(APPEND sources ${folder}/${entry}.cpp)
    math(EXPR index "${index} + 1")
  endforeach()
  configure_file(${TW_EFFECT_TEMPLATES}/EffectTable.cpp.in ${folder}/EffectTable.cpp @ONLY)
  add_library(${target} STATIC ${sources} ${folder}/EffectTable.cpp)
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
  # Every effect's file reads the headers of all effects, which take half its compile time.
  tw_compile_in_batches(${target} 4)
  set_source_files_properties(${folder}/EffectTable.cpp PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()
