// Comes before every source of a program for musl: lets the C++ library's headers, which were
// configured for another C library, do without what musl lacks.
#pragma once

#define __GLIBC_PREREQ(major, minor) 0
#define __locale_t locale_t

#include <bits/c++config.h>
#undef _GLIBCXX_USE_PTHREAD_COND_CLOCKWAIT
#undef _GLIBCXX_USE_PTHREAD_MUTEX_CLOCKLOCK
#undef _GLIBCXX_USE_PTHREAD_RWLOCK_CLOCKLOCK

// Character classes of the C++ library's locales: named by its headers, used by no program of ours.
enum : unsigned short {
  _ISupper = 1 << 0,
  _ISlower = 1 << 1,
  _ISalpha = 1 << 2,
  _ISdigit = 1 << 3,
  _ISxdigit = 1 << 4,
  _ISspace = 1 << 5,
  _ISprint = 1 << 6,
  _ISgraph = 1 << 7,
  _ISblank = 1 << 8,
  _IScntrl = 1 << 9,
  _ISpunct = 1 << 10,
  _ISalnum = 1 << 11,
};
