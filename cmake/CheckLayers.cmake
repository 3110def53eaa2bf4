cmake_minimum_required(VERSION 3.25)

# Script: fails when a file of FOLDER includes a header of a layer that is neither LAYER nor in
# ALLOWED. A header is named with its folder first: #include "records/Bookmark.h".

file(GLOB_RECURSE files "${FOLDER}/*.h" "${FOLDER}/*.cpp")
set(errors "")
foreach(file IN LISTS files)
    file(STRINGS "${file}" includes REGEX "^#include \"[a-z]+/")
    foreach(line IN LISTS includes)
        string(REGEX REPLACE "^#include \"([a-z]+)/.*" "\\1" used "${line}")
        if(used IN_LIST LAYERS AND NOT used STREQUAL LAYER AND NOT used IN_LIST ALLOWED)
            string(APPEND errors "${file}: the layer \"${LAYER}\" may not include from \"${used}\"\n")
        endif()
    endforeach()
endforeach()
if(errors)
    message(FATAL_ERROR "${errors}")
endif()
file(TOUCH "${STAMP}")
