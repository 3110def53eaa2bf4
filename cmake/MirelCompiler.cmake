# Compiler settings that hold for every target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

add_compile_definitions(
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_KEYWORDS
    QT_STRICT_ITERATORS
)

add_library(mirel_warnings INTERFACE)
target_compile_options(mirel_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Werror
    # A designated initialiser leaves out fields on purpose.
    -Wno-missing-field-initializers
    # GCC 12 optimising takes the inside of an empty std::optional for an uninitialised value.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>
)

if(MIREL_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

if(MIREL_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "The fuzz targets need clang: configure with the preset \"fuzz\".")
    endif()
    # Clang 14 cannot place the data of the check "function" beside the parts of a coroutine.
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize=function -fno-sanitize-recover=all)
    add_link_options(-fsanitize=address,undefined)
endif()

find_program(CCACHE ccache)
if(CCACHE)
    # Precompiled headers are cached too; that needs these two relaxations, which are safe because
    # the compiler itself checks that a precompiled header fits.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_COMMAND}" -E env
        "CCACHE_SLOPPINESS=pch_defines,time_macros"
        "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}"
        "${CCACHE}")
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-fpch-preprocess)
    endif()
endif()
