// SPDX-License-Identifier: Apache-2.0
#include "simulator/simulation/panel_root.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace buttondriver::simulator {
namespace {

TEST(PanelRootTest, a_font_size_is_two_numbers) {
  EXPECT_EQ(read_font_size(QStringLiteral("10x20")), QSize(10, 20));
  EXPECT_EQ(read_font_size(QStringLiteral("999x1")), QSize(999, 1));
  for (const char *text : {"", "10", "x", "10x", "x20", "0x20", "10x0", "010x20", "1000x1", "10x20x3", " 10x20",
                           "10X20", "10x20\n", "-1x2"})
    EXPECT_FALSE(read_font_size(QLatin1String(text)).isValid()) << text;
}

TEST(PanelRootTest, a_font_is_found_by_its_size_and_others_are_named) {
  const test::TemporaryFolder folder;
  for (const char *name : {"10x20.pcf.gz", "6x13.pcf.gz", "6x9.pcf.gz", "big.pcf.gz", "8x16.bdf"})
    folder.write(name, "");
  const QString path = QString::fromStdString(folder.path(""));
  const auto found = find_font(path, {6, 13});
  ASSERT_TRUE(found);
  EXPECT_EQ(*found, path + QStringLiteral("/6x13.pcf.gz"));
  const auto missing = find_font(path, {8, 16});
  ASSERT_FALSE(missing);
  EXPECT_EQ(missing.failure().text, QStringLiteral("there is no font 8x16 in %1; there are 6x9 6x13 10x20").arg(path));
  EXPECT_EQ(find_font(QStringLiteral("/nowhere"), {1, 2}).failure().text,
            QStringLiteral("there is no font 1x2 in /nowhere; there are none"));
}

} // namespace
} // namespace buttondriver::simulator
