# One set of warnings for every target; all of them are errors.
add_library(ostrelle_warnings INTERFACE)
target_compile_options(
  ostrelle_warnings
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion
            -Wsign-conversion
            -Wold-style-cast
            -Woverloaded-virtual
            -Wnon-virtual-dtor
            -Wcast-align
            -Wformat=2
            -Wimplicit-fallthrough
            -Werror)
target_compile_definitions(
  ostrelle_warnings INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
                              QT_NO_KEYWORDS_IN_PUBLIC_HEADERS QT_NO_FOREACH)
