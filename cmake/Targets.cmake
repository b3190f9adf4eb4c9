# ostrelle_library(NAME [COMPACT [QUICK ...]] SOURCES ... HEADERS ... [PUBLIC ...] [PRIVATE ...] [RESOURCES ...])
#
# A static library of one folder with an include root of its own: the build folder's include/NAME/NAME is a link to
# src/NAME, and only targets that link NAME see it. An include from a lower folder to a higher one therefore does not
# compile. Headers are a file set, so each of them is also compiled alone (target all_verify_interface_header_sets).
# COMPACT is for code that waits for people and calls libraries: nearly all of it is mapped while the program idles, and
# made for size it is 40 % smaller. Nothing in it throws or catches, so that the tables of exceptions, a fifth of the program,
# are left out. QUICK names those of its sources that compute pixels.
function(ostrelle_include_root name source_dir out)
  set(root "${CMAKE_BINARY_DIR}/include/${name}")
  file(MAKE_DIRECTORY "${root}")
  if(NOT EXISTS "${root}/${name}")
    file(CREATE_LINK "${source_dir}" "${root}/${name}" SYMBOLIC)
  endif()
  set(${out} "${root}" PARENT_SCOPE)
endfunction()

function(ostrelle_library name)
  cmake_parse_arguments(ARG "COMPACT" "" "QUICK;SOURCES;HEADERS;PUBLIC;PRIVATE;RESOURCES" ${ARGN})
  ostrelle_include_root(${name} "${CMAKE_CURRENT_SOURCE_DIR}" root)
  add_library(ostrelle_${name} STATIC ${ARG_SOURCES} ${ARG_HEADERS} ${ARG_RESOURCES})
  set(headers ${ARG_HEADERS})
  list(TRANSFORM headers PREPEND "${root}/${name}/")
  target_sources(ostrelle_${name} PUBLIC FILE_SET HEADERS BASE_DIRS "${root}" FILES ${headers})
  # moc sees each header at its own place; through the link it would be the same class once more.
  set_source_files_properties(${headers} PROPERTIES SKIP_AUTOMOC ON)
  target_link_libraries(ostrelle_${name} PUBLIC ${ARG_PUBLIC} PRIVATE ostrelle_warnings ${ARG_PRIVATE})
  set_target_properties(ostrelle_${name} PROPERTIES AUTOMOC ON AUTORCC ON VERIFY_INTERFACE_HEADER_SETS ON)
  if(ARG_COMPACT AND CMAKE_BUILD_TYPE MATCHES "^Rel")
    target_compile_options(ostrelle_${name} PRIVATE -Os -fno-exceptions -fno-asynchronous-unwind-tables)
    set_source_files_properties(${ARG_QUICK} PROPERTIES COMPILE_OPTIONS -O2)
  endif()
endfunction()

# ostrelle_executable(TARGET OUTPUT SOURCES ... [PRIVATE ...])
#
# Those of src/ are what is installed (packaging/CMakeLists.txt).
function(ostrelle_executable target output)
  cmake_parse_arguments(ARG "" "" "SOURCES;PRIVATE" ${ARGN})
  add_executable(${target} ${ARG_SOURCES})
  target_link_libraries(${target} PRIVATE ostrelle_warnings ${ARG_PRIVATE})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${output} AUTOMOC ON AUTORCC ON)
  set(programs "${PROJECT_SOURCE_DIR}/src")
  cmake_path(IS_PREFIX programs "${CMAKE_CURRENT_SOURCE_DIR}" is_program)
  if(is_program)
    set_property(GLOBAL APPEND PROPERTY OSTRELLE_PROGRAMS ${target})
  endif()
endfunction()

# ostrelle_tests(FOLDER [GUI] SOURCES FooTest.cpp ... [EXTRA ...] [PRIVATE ...] [LABELS unit])
#
# One executable per folder; each FooTest.cpp holds the class FooTest, which becomes the test FOLDER.FooTest. GUI gives it
# an application with widgets instead of one of Qt Core.
function(ostrelle_tests folder)
  cmake_parse_arguments(ARG "GUI" "" "SOURCES;EXTRA;PRIVATE;LABELS" ${ARGN})
  set(target ostrelle_tests_${folder})
  set(main ostrelle_support_core)
  if(ARG_GUI)
    set(main ostrelle_support_gui)
  endif()
  add_executable(${target} ${ARG_SOURCES} ${ARG_EXTRA})
  target_link_libraries(${target} PRIVATE ostrelle_warnings ${main} Qt6::Test ${ARG_PRIVATE})
  # Tests keep small helpers of the same names in their own files.
  set_target_properties(${target} PROPERTIES AUTOMOC ON UNITY_BUILD OFF)
  if("unit" IN_LIST ARG_LABELS)
    add_dependencies(unit_tests ${target})
  endif()
  foreach(source IN LISTS ARG_SOURCES)
    get_filename_component(class "${source}" NAME_WE)
    add_test(NAME "${folder}.${class}" COMMAND ${target} "${class}")
    set_tests_properties(
      "${folder}.${class}" PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8" TIMEOUT 400
                                      LABELS "${ARG_LABELS}")
  endforeach()
endfunction()
