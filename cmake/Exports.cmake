# What the linker is told: the names that leave a library, and how long it stays. From src/frame/exports.def comes the
# forwarding table too.

# zelcv_read_exports(FILE): sets ZELCV_EXPORTS to the names in order and ZELCV_SHARED to "name=other" pairs.
function(zelcv_read_exports file)
    file(STRINGS "${file}" lines REGEX "^[A-Za-z]")
    set(names "")
    set(shared "")
    foreach(line IN LISTS lines)
        string(REGEX REPLACE "[ \t]" "" line "${line}")
        if(line MATCHES "^([A-Za-z0-9_]+)=([A-Za-z0-9_]+)$")
            list(APPEND shared "${line}")
            set(line "${CMAKE_MATCH_1}")
        endif()
        list(APPEND names "${line}")
    endforeach()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
    set(ZELCV_EXPORTS "${names}" PARENT_SCOPE)
    set(ZELCV_SHARED "${shared}" PARENT_SCOPE)
endfunction()

# zelcv_write_forwarding(FILE): the forwarding table as a source file. zelcvGetLibVersion has no slot.
function(zelcv_write_forwarding file)
    set(slots ${ZELCV_EXPORTS})
    list(REMOVE_ITEM slots zelcvGetLibVersion)
    set(entries "")
    foreach(name IN LISTS slots)
        string(APPEND entries "    {\"${name}\", reinterpret_cast<void (*)()>(&${name})},\n")
    endforeach()
    list(LENGTH slots count)
    file(CONFIGURE OUTPUT "${file}" CONTENT [[
#include "forwarding.h"

#include "zelcv.h"

namespace zelcv {

const Forward kForwardingTable[] = {
@entries@};
const int kForwardingCount = @count@;

} // namespace zelcv
]] @ONLY)
endfunction()

# zelcv_export_names(TARGET NAMES): exactly these names leave the shared library. ELF: a linker version script.
# PE: a module definition file, written by the same rule.
function(zelcv_export_names target)
    cmake_parse_arguments(arg "" "" "NAMES;SHARED" ${ARGN})
    if(WIN32)
        set(script "${CMAKE_CURRENT_BINARY_DIR}/${target}.def")
        set(text "EXPORTS\n")
        foreach(name IN LISTS arg_NAMES)
            string(APPEND text "    ${name}\n")
        endforeach()
        file(GENERATE OUTPUT "${script}" CONTENT "${text}")
        target_sources(${target} PRIVATE "${script}")
    else()
        set(script "${CMAKE_CURRENT_BINARY_DIR}/${target}.map")
        list(JOIN arg_NAMES "; " text)
        file(GENERATE OUTPUT "${script}" CONTENT "{ global: ${text}; local: *; };\n")
        target_link_options(${target} PRIVATE "LINKER:--version-script=${script}")
        set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${script}")
        if(NOT ZELCV_SANITIZE) # its runtime is linked to programs only
            target_link_options(${target} PRIVATE LINKER:-z,defs)
        endif()
    endif()
    foreach(pair IN LISTS arg_SHARED)
        target_link_options(${target} PRIVATE "LINKER:--defsym=${pair}")
    endforeach()
endfunction()

# zelcv_keep_loaded(TARGET): the library stays in memory after dlclose, and so does the OpenMP runtime that it needs: the
# threads of the runtime outlive the call that started them.
function(zelcv_keep_loaded target)
    if(NOT WIN32)
        target_link_options(${target} PRIVATE LINKER:-z,nodelete)
    endif()
endfunction()
