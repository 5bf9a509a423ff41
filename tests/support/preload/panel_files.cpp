// SPDX-License-Identifier: Apache-2.0
// Preloaded into a program under test: a panel's files, which have fixed places, it finds below a folder of the test
// instead. Otherwise the outcome would depend on what is installed on the machine.

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>

namespace {

constexpr const char *panel_places[] = {"/dev/fpga-reg", "/etc/rv1000e", "/opt/rv1000e"};

bool is_or_is_below(const char *path, const char *place) {
  const std::size_t length = std::strlen(place);
  return std::strncmp(path, place, length) == 0 && (path[length] == '\0' || path[length] == '/');
}

/// A path as the test has it, for as long as this object lives.
class Moved {
public:
  explicit Moved(const char *path) : _path(path) {
    const char *root = std::getenv("BUTTONDRIVER_TEST_ROOT");
    if (!root || !path)
      return;
    for (const char *place : panel_places)
      if (is_or_is_below(path, place))
        moveBelow(root);
  }

  const char *path() const { return _path; }

private:
  void moveBelow(const char *root) {
    const int length = std::snprintf(_room, sizeof _room, "%s%s", root, _path);
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof _room)
      std::abort();
    _path = _room;
  }

  const char *_path;
  char _room[PATH_MAX];
};

/// Calls the function that one of this library stands in front of.
template <class Result, class... Arguments> Result pass_on(const char *name, Arguments... arguments) {
  using Function = Result (*)(Arguments...);
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name))(arguments...);
}

} // namespace

// Stands in front of a function of the system that takes a path. It has a name of its own in this file: how the
// system's headers declare it, or as which other one, depends on the machine. An argument that the caller left out is
// passed on as whatever is in its place; nobody looks at it.
#define MOVED(result, function, parameters, ...)                                                                       \
  extern "C" result moved_##function parameters __asm__(#function);                                                    \
  result moved_##function parameters { return pass_on<result>(#function, __VA_ARGS__); }

MOVED(int, open, (const char *path, int flags, unsigned mode), Moved(path).path(), flags, mode)
MOVED(int, open64, (const char *path, int flags, unsigned mode), Moved(path).path(), flags, mode)
MOVED(int, __open_2, (const char *path, int flags), Moved(path).path(), flags)
MOVED(int, __open64_2, (const char *path, int flags), Moved(path).path(), flags)
MOVED(int, openat, (int folder, const char *path, int flags, unsigned mode), folder, Moved(path).path(), flags, mode)
MOVED(int, openat64, (int folder, const char *path, int flags, unsigned mode), folder, Moved(path).path(), flags, mode)
MOVED(void *, fopen, (const char *path, const char *mode), Moved(path).path(), mode)
MOVED(void *, fopen64, (const char *path, const char *mode), Moved(path).path(), mode)
MOVED(void *, opendir, (const char *path), Moved(path).path())
MOVED(int, stat, (const char *path, void *status), Moved(path).path(), status)
MOVED(int, stat64, (const char *path, void *status), Moved(path).path(), status)
MOVED(int, __stat64_time64, (const char *path, void *status), Moved(path).path(), status)
MOVED(int, lstat, (const char *path, void *status), Moved(path).path(), status)
MOVED(int, lstat64, (const char *path, void *status), Moved(path).path(), status)
MOVED(int, statx, (int folder, const char *path, int flags, unsigned mask, void *status), folder, Moved(path).path(),
      flags, mask, status)
MOVED(int, access, (const char *path, int mode), Moved(path).path(), mode)
MOVED(int, faccessat, (int folder, const char *path, int mode, int flags), folder, Moved(path).path(), mode, flags)
MOVED(int, inotify_add_watch, (int instance, const char *path, unsigned mask), instance, Moved(path).path(), mask)
