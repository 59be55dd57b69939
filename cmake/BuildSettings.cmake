# What every target of this project is compiled with, whatever its folder.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

get_property(_multi_config GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(NOT CMAKE_BUILD_TYPE AND NOT _multi_config)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

# Text and bytes never convert into each other silently, and nothing uses what Qt keeps for old code.
add_compile_definitions(
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_KEYWORDS
    QT_NO_FOREACH
    QT_NO_JAVA_STYLE_ITERATORS
    QT_STRICT_ITERATORS
    QT_USE_QSTRINGBUILDER
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

# Compiled once for all layers, and once more with googletest for all tests. The header checks below src/QXSDKKovalinKit build
# without them, so that every public header still includes what it uses.
set(KOVALIN_PRECOMPILED_HEADERS
    <algorithm> <atomic> <cstdint> <deque> <functional> <memory> <mutex> <optional> <string> <utility> <vector>
    <QtCore/QHash> <QtCore/QJsonArray> <QtCore/QJsonDocument> <QtCore/QJsonObject> <QtCore/QList> <QtCore/QObject>
    <QtCore/QString> <QtCore/QStringList>)
# Beside these, for views and their tests: half of what a test of a view compiles is Qt Quick's and Qt Test's.
set(KOVALIN_PRECOMPILED_VIEW_HEADERS
    <QtGui/QColor> <QtGui/QImage> <QtQuick/QQuickItem> <QtQuick/QQuickWindow>)
