# What every target of ours is compiled with, and the two ways of declaring one.

add_library(maplorn_options INTERFACE)
target_compile_options(maplorn_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Werror)
target_compile_definitions(maplorn_options INTERFACE
    QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING QT_USE_QSTRINGBUILDER
    QT_DISABLE_DEPRECATED_BEFORE=0x060400
    MAPLORN_VERSION="${PROJECT_VERSION}")
if(MAPLORN_SANITIZE)
    target_compile_options(maplorn_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(maplorn_options INTERFACE -fsanitize=address,undefined)
endif()

# maplorn_library(NAME SOURCES … [PUBLIC_LIBS …] [PRIVATE_LIBS …])
# A static library that offers the headers of its own folder and nothing else, so that a header
# of a target that is not linked cannot be included.
function(maplorn_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC_LIBS;PRIVATE_LIBS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC_LIBS} PRIVATE maplorn_options ${ARG_PRIVATE_LIBS})
endfunction()

# maplorn_program(NAME SOURCES … LIBS …)
function(maplorn_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE maplorn_options ${ARG_LIBS})
endfunction()

# maplorn_resources(NAME FOLDER …): every file of resources/FOLDER, as :/FOLDER/… in each program
# that the library is linked into.
function(maplorn_resources name)
    foreach(folder IN LISTS ARGN)
        file(GLOB files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/${folder}/*)
        qt_add_resources(${name} ${folder}
            PREFIX /${folder} BASE ${PROJECT_SOURCE_DIR}/resources/${folder} FILES ${files})
    endforeach()
endfunction()
