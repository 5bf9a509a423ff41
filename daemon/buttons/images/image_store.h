// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttons/images/button_image.h"

#include <cstddef>
#include <cstdint>
#include <map>

namespace buttondriver {

/// The button images: the built-in ones, which are always there, and the newest of those that connections have
/// uploaded under ids of their own.
class ImageStore {
public:
  /// Uploaded images that are kept besides the built-in ones; the oldest gives way to a new one.
  static constexpr std::size_t most_uploaded_images = 4096;

  ImageStore();

  /// Keeps `image` under `id`, in place of what was there. `owner` is the connection that sent it.
  void store(std::int32_t id, const ButtonImage &image, std::int32_t owner);
  /// Forgets the images of a connection that has ended; built-in ids keep what they were given.
  void forget(std::int32_t owner);
  /// Null when there is none; valid until the next change.
  const ButtonImage *find(std::int32_t id) const;
  /// Images besides the built-in ones.
  std::size_t uploadedCount() const { return _by_age.size(); }

  static constexpr bool isBuiltIn(std::int32_t id) { return id >= 0 && id < dimensions::built_in_image_count; }

private:
  struct Entry {
    ButtonImage image;
    std::int32_t owner = 0;
    std::uint64_t age = 0; ///< grows with each upload
  };

  std::map<std::int32_t, Entry> _images;
  std::map<std::uint64_t, std::int32_t> _by_age; // ids of the uploaded images, oldest first
  std::uint64_t _next_age = 0;
};

} // namespace buttondriver
