# The disc and recorder information windows, the erase dialog and the supported drives text.
# The folder's library is tessaly_disctools (or plain disctools): either name is taken.
if(TARGET tessaly_disctools)
    set(TESSALY_DISCINFO_TARGET tessaly_disctools)
else()
    set(TESSALY_DISCINFO_TARGET disctools)
endif()
target_sources(${TESSALY_DISCINFO_TARGET} PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/DiscInfoWindows.cpp ${CMAKE_CURRENT_LIST_DIR}/DiscInfoWindows.h
    ${CMAKE_CURRENT_LIST_DIR}/frmDiscInfo.cpp ${CMAKE_CURRENT_LIST_DIR}/frmDiscInfo.h
    ${CMAKE_CURRENT_LIST_DIR}/frmErase.cpp ${CMAKE_CURRENT_LIST_DIR}/frmErase.h
    ${CMAKE_CURRENT_LIST_DIR}/frmRecorderInfo.cpp ${CMAKE_CURRENT_LIST_DIR}/frmRecorderInfo.h
    ${CMAKE_CURRENT_LIST_DIR}/frmSupDrives.cpp ${CMAKE_CURRENT_LIST_DIR}/frmSupDrives.h
    ${CMAKE_CURRENT_LIST_DIR}/MediaLogo.cpp ${CMAKE_CURRENT_LIST_DIR}/MediaLogo.h
    ${CMAKE_CURRENT_LIST_DIR}/TabCycle.cpp ${CMAKE_CURRENT_LIST_DIR}/TabCycle.h
    ${CMAKE_CURRENT_LIST_DIR}/disctools.qrc
)
target_link_libraries(${TESSALY_DISCINFO_TARGET} PUBLIC tessaly_app tessaly_engine_writer Qt6::Charts)
