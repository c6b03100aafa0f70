# ccache speeds up CI rebuilds; the sloppiness lets it cache units built on a precompiled header.
find_program(VETRA_CCACHE ccache)
if(VETRA_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        ${VETRA_CCACHE})
endif()

set(VETRA_PCH_CORE <QtCore/QtCore> <QtGui/QtGui>)
set(VETRA_PCH_WIDGETS ${VETRA_PCH_CORE} <QtWidgets/QtWidgets>)

# vetra_pch(target [WIDGETS]): precompiled Qt headers. Core-only targets never get the widget
# headers, so a widget include cannot sneak into the core library through the PCH.
function(vetra_pch target)
    if("WIDGETS" IN_LIST ARGN)
        target_precompile_headers(${target} PRIVATE ${VETRA_PCH_WIDGETS})
    else()
        target_precompile_headers(${target} PRIVATE ${VETRA_PCH_CORE})
    endif()
endfunction()
