#pragma once

// The C header names a member with a keyword of C++.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
