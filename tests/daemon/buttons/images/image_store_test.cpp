// SPDX-License-Identifier: Apache-2.0
#include "buttons/images/image_store.h"

#include <gtest/gtest.h>

namespace buttondriver {
namespace {

ButtonImage filled(std::uint8_t value) {
  ButtonImage image;
  image.bytes.fill(value);
  return image;
}

TEST(ImageStoreTest, has_the_built_in_images_from_the_start) {
  const ImageStore store;
  EXPECT_NE(store.find(0), nullptr);
  EXPECT_NE(store.find(22), nullptr);
  EXPECT_EQ(store.find(23), nullptr);
  EXPECT_EQ(store.find(-1), nullptr);
}

TEST(ImageStoreTest, keeps_the_newest_4096_uploads_and_every_built_in_image) {
  ImageStore store;
  store.store(22, filled(9), 1000);
  for (std::int32_t id = 0; id < 5000; ++id)
    store.store(1000 + id, filled(1), 1000);
  EXPECT_EQ(store.uploadedCount(), 4096U);
  EXPECT_EQ(store.find(1000 + 903), nullptr);
  EXPECT_NE(store.find(1000 + 904), nullptr);
  EXPECT_NE(store.find(1000 + 4999), nullptr);
  EXPECT_EQ(store.find(22)->bytes[0], 9);
}

TEST(ImageStoreTest, an_upload_under_a_known_id_makes_it_the_newest) {
  ImageStore store;
  for (std::int32_t id = 0; id < 4096; ++id)
    store.store(1000 + id, filled(1), 1000);
  store.store(1000, filled(2), 1000);
  store.store(9000, filled(3), 1000);
  EXPECT_EQ(store.uploadedCount(), 4096U);
  ASSERT_NE(store.find(1000), nullptr);
  EXPECT_EQ(store.find(1000)->bytes[0], 2);
  EXPECT_EQ(store.find(1001), nullptr);
}

TEST(ImageStoreTest, negative_ids_count_as_uploads) {
  ImageStore store;
  for (std::int32_t id = -1; id > -5000; --id)
    store.store(id, filled(1), 1000);
  EXPECT_EQ(store.uploadedCount(), 4096U);
}

TEST(ImageStoreTest, forgets_what_a_connection_sent_and_nothing_else) {
  ImageStore store;
  store.store(1023, filled(1), 1000);
  store.store(2023, filled(2), 2000);
  store.store(5, filled(3), 1000);
  store.store(1024, filled(4), 1000);
  store.store(1024, filled(5), 2000); // now the second connection's
  store.forget(1000);
  EXPECT_EQ(store.find(1023), nullptr);
  EXPECT_NE(store.find(2023), nullptr);
  EXPECT_EQ(store.find(5)->bytes[0], 3);
  EXPECT_NE(store.find(1024), nullptr);
  EXPECT_EQ(store.uploadedCount(), 2U);
}

} // namespace
} // namespace buttondriver
