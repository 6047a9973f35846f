// What the C++ library expects of its C library and musl does not have.

#include <cstdlib>
#include <exception>

extern "C" {
extern const char __libc_single_threaded = 1;
// "Not found" sends the unwinder to dl_iterate_phdr().
int _dl_find_object(void* /*address*/, void* /*result*/) {
  return -1;
}
}

// The library's own handler brings a demangler of 20 KB along.
namespace __cxxabiv1 {
extern std::terminate_handler __terminate_handler;
std::terminate_handler __terminate_handler = std::abort;
}  // namespace __cxxabiv1
