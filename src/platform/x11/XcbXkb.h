#pragma once

// The header has a member of the name of a keyword. What gives it another name here is no mistake.
#pragma GCC system_header
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
