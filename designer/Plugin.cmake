add_subdirectory(canvas)
add_subdirectory(inspector)
add_subdirectory(interactivity)
add_subdirectory(panels)
add_subdirectory(timeline)

add_library(designer MODULE
    designer.json
    VTDesignerPlugin.h VTDesignerPlugin.cpp
    VTDesignerFactory.h VTDesignerFactory.cpp
    IUi.h IUi.cpp
    Action.h Action.cpp
    VTEditor.h VTEditor.cpp
    VTMdiSubWindow.h VTMdiSubWindow.cpp
    VTWelcomeBridge.h VTWelcomeBridge.cpp
    VTOptionsDlg.h VTOptionsDlg.cpp
    VTNewProjectDialog.h VTNewProjectDialog.cpp
    VTProjectDialogs.h VTProjectDialogs.cpp
    VTCopyProgressDialog.h VTCopyProgressDialog.cpp)
set_target_properties(designer PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY ${VETRA_PLUGIN_DIR}
    AUTOMOC_MOC_OPTIONS "-I${CMAKE_CURRENT_SOURCE_DIR}")
target_include_directories(designer PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(designer PRIVATE
    vtcanvas vtinspector vtinteractivity vtpanels vttimeline vtmodel core
    QuaZip::QuaZip Qt5::Widgets Qt5::WebEngineWidgets Qt5::WebChannel)
vetra_pch(designer WIDGETS)
