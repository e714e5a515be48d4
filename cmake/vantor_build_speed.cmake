# Unity builds and shared precompiled headers: most of a clean build's time went to parsing the
# same standard, Qt and GoogleTest headers once per source file.
#
# A unity build compiles a target's sources in batches, one translation unit per batch, so names
# local to a file (static functions, anonymous namespaces) must differ across a target's files.
# Include paths stay per target, so an include into a layer the target does not link still fails.
option(VANTOR_UNITY_BUILD "Compile each target's sources in batches" ON)
set(CMAKE_UNITY_BUILD ${VANTOR_UNITY_BUILD})
set(CMAKE_UNITY_BUILD_BATCH_SIZE 12)
if(VANTOR_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC takes a batch's included sources for headers and warns of every fixture class in an
    # anonymous namespace, which is right in a source file.
    add_compile_options(-Wno-subobject-linkage)
endif()

# Three headers are precompiled once each and reused by every target of their kind: the standard
# library for the code without a user interface toolkit (which must not see Qt), the standard
# library with Qt Widgets for the rest, and the tests' one with QtTest and GoogleTest. Only
# third-party headers go in, never the project's own, so the layer check is not bypassed.
option(VANTOR_PRECOMPILED_HEADERS "Share precompiled headers between targets" ON)

# A precompiled header is only used with the options it was made with; -fPIC and -fPIE differ,
# so programs are compiled as position independent code the way libraries are.
set(CMAKE_CXX_COMPILE_OPTIONS_PIE ${CMAKE_CXX_COMPILE_OPTIONS_PIC})

set(VANTOR_PCH_STD
    <algorithm> <atomic> <cerrno> <charconv> <cstddef> <cstdint> <cstdio> <cstdlib> <cstring>
    <filesystem> <functional> <list> <map> <memory> <mutex> <optional> <set> <stdexcept> <string>
    <string_view> <thread> <unordered_map> <utility> <vector>)
set(VANTOR_PCH_QT
    <QAbstractButton> <QApplication> <QCheckBox> <QComboBox> <QDialog> <QDialogButtonBox>
    <QGridLayout> <QHBoxLayout> <QHeaderView> <QKeyEvent> <QLabel> <QLineEdit> <QMouseEvent>
    <QPainter> <QPointer> <QPushButton> <QRadioButton> <QTableWidget> <QTimer> <QTreeWidget>
    <QVBoxLayout> <QWidget>)
set(VANTOR_PCH_TEST <gtest/gtest.h> <QTest> <fstream> <regex> <sstream>)

if(VANTOR_PRECOMPILED_HEADERS)
    # A header that cannot be used says so instead of silently costing the time it should save.
    add_compile_options(-Winvalid-pch)

    # The donors: one small object library each, whose precompiled header the others reuse.
    set(anchor ${CMAKE_BINARY_DIR}/pch_anchor.cpp)
    file(CONFIGURE OUTPUT ${anchor} CONTENT "// Compiled so that its target's precompiled header is built.\n")
    add_library(vantor_pch_std OBJECT ${anchor})
    target_precompile_headers(vantor_pch_std PRIVATE ${VANTOR_PCH_STD})
    add_library(vantor_pch_qt OBJECT ${anchor})
    target_link_libraries(vantor_pch_qt PRIVATE Qt6::Widgets)
    target_precompile_headers(vantor_pch_qt PRIVATE ${VANTOR_PCH_STD} ${VANTOR_PCH_QT})
endif()

# Gives each named target the standard library's or Qt's precompiled header (KIND std or qt).
function(vantor_share_pch kind)
    if(NOT VANTOR_PRECOMPILED_HEADERS)
        return()
    endif()
    foreach(target IN LISTS ARGN)
        target_precompile_headers(${target} REUSE_FROM vantor_pch_${kind})
    endforeach()
endfunction()
