// SPDX-License-Identifier: Apache-2.0
#include "buttons/button_factory.h"

#include "support/captured_log.h"

#include <gtest/gtest.h>

#include <memory>

namespace buttondriver {
namespace {

void delete_all(ButtonMap &buttons) {
  for (const auto &[id, button] : buttons)
    delete button;
  buttons.clear();
}

TEST(ButtonFactoryTest, every_panel_type_has_buttons_0_to_23) {
  for (const std::int32_t panel_type : {3, 4, 5}) {
    ButtonMap buttons;
    ButtonFactory(panel_type).createButtons(buttons, nullptr);
    ASSERT_EQ(buttons.size(), 24U) << panel_type;
    std::int32_t expected = 0;
    for (const auto &[id, button] : buttons) {
      EXPECT_EQ(id, expected);
      EXPECT_EQ(button->id(), expected++);
      EXPECT_NE(dynamic_cast<Button_RV1000E *>(button), nullptr);
      EXPECT_TRUE(button->setImage(nullptr));
    }
    delete_all(buttons);
  }
}

TEST(ButtonFactoryTest, an_unknown_panel_type_is_printed_and_leaves_the_map_alone) {
  for (const std::int32_t panel_type : {2, 6, -1}) {
    test::CapturedOutput output;
    const auto mine = std::make_unique<Button_RV1000E>(false, 99, nullptr);
    ButtonMap buttons{{99, mine.get()}};
    ButtonFactory(panel_type).createButtons(buttons, nullptr);
    EXPECT_EQ(output.take(), "Error: Panel type is invalid - should be RV2400/RV1100/RV1000");
    EXPECT_EQ(buttons.size(), 1U);
  }
}

TEST(ButtonFactoryTest, creation_replaces_what_was_in_the_map) {
  const auto mine = std::make_unique<Button_RV1000E>(false, 99, nullptr);
  ButtonMap buttons{{99, mine.get()}};
  ButtonFactory().createButtons(buttons, nullptr);
  EXPECT_EQ(buttons.count(99), 0U);
  EXPECT_EQ(buttons.size(), 24U);
  delete_all(buttons);
}

TEST(ButtonFactoryTest, a_taken_id_keeps_its_first_button) {
  test::CapturedOutput output;
  Button_RV1000E first(false, 4, nullptr);
  Button_RV1000E second(false, 4, nullptr);
  ButtonMap buttons;
  EXPECT_TRUE(ButtonFactory::insertButton(buttons, 4, &first));
  EXPECT_TRUE(ButtonFactory::insertButton(buttons, 4, &first));
  EXPECT_EQ(output.take(), "");
  EXPECT_FALSE(ButtonFactory::insertButton(buttons, 4, &second));
  EXPECT_EQ(output.take(), "error: overwriting exiting button, id = 4\n");
  EXPECT_EQ(buttons.at(4), &first);
}

} // namespace
} // namespace buttondriver
