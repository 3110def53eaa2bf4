# The layers of the program: which folder may include from which. A target links exactly what its
# layer lists, and cmake/CheckLayers.cmake fails the build when a file includes from another one.

set(MIREL_LAYERS support records presentation transport credentials library x model screens)

set(MIREL_LAYER_support "")
set(MIREL_LAYER_records support)
set(MIREL_LAYER_presentation records support)
set(MIREL_LAYER_transport support)
set(MIREL_LAYER_credentials records support)
set(MIREL_LAYER_library presentation records support)
set(MIREL_LAYER_x library presentation credentials transport records support)
set(MIREL_LAYER_model x library presentation credentials transport records support)
set(MIREL_LAYER_screens model presentation records support)

# What differs between systems stands in a platform/ folder, in the file whose name ends with this.
if(APPLE)
    set(MIREL_PLATFORM macos)
else()
    set(MIREL_PLATFORM linux)
endif()

# Adds the static library mirel_<layer> from the sources of the current folder, linked to the
# layers it may use. Further libraries follow LINK.
function(mirel_add_layer layer)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LINK")
    set(target mirel_${layer})
    add_library(${target} STATIC ${ARG_SOURCES})
    target_include_directories(${target} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}/..")
    target_link_libraries(${target} PUBLIC Qt6::Core ${ARG_LINK} PRIVATE mirel_warnings)
    foreach(used IN LISTS MIREL_LAYER_${layer})
        target_link_libraries(${target} PUBLIC mirel_${used})
    endforeach()
    mirel_precompile(${target})
    mirel_check_layer(${target} ${layer} "${CMAKE_CURRENT_SOURCE_DIR}")
endfunction()

# Shares one precompiled header between all layers: the standard and Qt headers that nearly every
# file includes.
function(mirel_precompile target)
    if(NOT TARGET mirel_precompiled)
        file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/mirel_precompiled.cpp" CONTENT "\n")
        add_library(mirel_precompiled STATIC "${CMAKE_BINARY_DIR}/mirel_precompiled.cpp")
        target_link_libraries(mirel_precompiled PRIVATE Qt6::Core QCoro6::Core mirel_warnings)
        target_precompile_headers(mirel_precompiled PRIVATE
            <algorithm> <functional> <memory> <optional> <string_view> <utility> <vector>
            <QByteArray> <QDateTime> <QJsonArray> <QJsonDocument> <QJsonObject> <QList> <QObject>
            <QString> <QStringList> <QThread> <QUrl> <QCoro/QCoroTask>)
    endif()
    target_precompile_headers(${target} REUSE_FROM mirel_precompiled)
endfunction()

# Fails the build of `target` when a file below `folder` includes from a layer it may not use.
function(mirel_check_layer target layer folder)
    set(stamp "${CMAKE_BINARY_DIR}/layers/${target}.stamp")
    file(GLOB_RECURSE files CONFIGURE_DEPENDS "${folder}/*.h" "${folder}/*.cpp")
    add_custom_command(
        OUTPUT "${stamp}"
        COMMAND "${CMAKE_COMMAND}"
            "-DLAYER=${layer}" "-DALLOWED=${MIREL_LAYER_${layer}}" "-DLAYERS=${MIREL_LAYERS}"
            "-DFOLDER=${folder}" "-DSTAMP=${stamp}" -P "${CMAKE_SOURCE_DIR}/cmake/CheckLayers.cmake"
        DEPENDS ${files} "${CMAKE_SOURCE_DIR}/cmake/CheckLayers.cmake"
                "${CMAKE_SOURCE_DIR}/cmake/MirelTargets.cmake"
        COMMENT "Checking the layering of ${layer}"
        VERBATIM)
    add_custom_target(${target}_layering DEPENDS "${stamp}")
    add_dependencies(${target} ${target}_layering)
endfunction()

# Adds the executable `name` with warnings as errors.
function(mirel_add_executable name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LINK")
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LINK} mirel_warnings)
endfunction()
