// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

namespace buttondriver {

/// What is read of the level file, by whoever reads it. The file has some twenty bytes; a much larger one is not ours
/// and must not fill the memory.
inline constexpr std::size_t most_button_level_bytes = 64 * 1024;

/// Where the files lie that the daemon reads. The daemon itself always uses the defaults; the virtual panel and the
/// tests put the same names under a folder of their own with `under`.
struct SystemPaths {
  /// INI file that chooses the font of the screens.
  std::string launcher_configuration = "/etc/rv1000e/launcher.cfg";
  /// Folder of the files "WIDTHxHEIGHT.pcf.gz".
  std::string font_directory = "/opt/rv1000e/fonts";
  /// The brightness levels that survive a restart.
  std::string button_level_file = "/etc/rv1000e/buttonlevel";

  /// The default paths below `root`; an empty `root` gives the defaults themselves.
  static SystemPaths under(const std::string &root) {
    SystemPaths paths;
    paths.launcher_configuration.insert(0, root);
    paths.font_directory.insert(0, root);
    paths.button_level_file.insert(0, root);
    return paths;
  }
};

} // namespace buttondriver
