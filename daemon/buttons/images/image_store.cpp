// SPDX-License-Identifier: Apache-2.0
#include "buttons/images/image_store.h"

namespace buttondriver {

ImageStore::ImageStore() {
  for (std::int32_t id = 0; id < dimensions::built_in_image_count; ++id)
    _images[id].image = built_in_images[static_cast<std::size_t>(id)];
}

void ImageStore::store(std::int32_t id, const ButtonImage &image, std::int32_t owner) {
  if (isBuiltIn(id)) {
    _images[id].image = image;
    return;
  }
  if (const auto place = _images.find(id); place != _images.end())
    _by_age.erase(place->second.age);
  const std::uint64_t age = _next_age++;
  _images[id] = Entry{image, owner, age};
  _by_age[age] = id;
  if (_by_age.size() <= most_uploaded_images)
    return;
  const auto oldest = _by_age.begin();
  _images.erase(oldest->second);
  _by_age.erase(oldest);
}

void ImageStore::forget(std::int32_t owner) {
  for (auto place = _by_age.begin(); place != _by_age.end();) {
    const auto image = _images.find(place->second);
    if (image->second.owner != owner) {
      ++place;
      continue;
    }
    _images.erase(image);
    place = _by_age.erase(place);
  }
}

const ButtonImage *ImageStore::find(std::int32_t id) const {
  const auto place = _images.find(id);
  return place == _images.end() ? nullptr : &place->second.image;
}

} // namespace buttondriver
