# ostrelle_deployment(TARGET FEED HOME_PAGE)
#
# What the program's main file knows of whoever deploys it: the addresses of the update feed and of the home page, and the
# version.
function(ostrelle_deployment target feed home_page)
  if(NOT feed MATCHES "^https://.+/version\\.json$")
    message(FATAL_ERROR "The update feed is an https address that ends in /version.json, not ${feed}")
  endif()
  string(LENGTH "${feed}" length)
  if(length GREATER 900)
    message(FATAL_ERROR "The update feed's address is too long")
  endif()
  if(NOT home_page MATCHES "^https://.+")
    message(FATAL_ERROR "The home page is an https address, not ${home_page}")
  endif()
  if(home_page MATCHES "^https://[^/]*\\.invalid(/|$)" AND NOT feed MATCHES "^https://[^/]*\\.invalid/")
    message(FATAL_ERROR "A build with an update feed needs a home page too: OSTRELLE_HOME_PAGE")
  endif()
  target_compile_definitions(
    ${target} PRIVATE OSTRELLE_UPDATE_FEED="${feed}" OSTRELLE_HOME_PAGE="${home_page}"
                      OSTRELLE_VERSION="${PROJECT_VERSION}")
endfunction()
