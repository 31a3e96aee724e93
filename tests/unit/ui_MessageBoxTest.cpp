#include "ui/MessageBox.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(UiMessageBox, WhatTheUserTypedStandsInAMessageAsItIs) {
  EXPECT_EQ(ui::ForMessage(""), "");
  EXPECT_EQ(ui::ForMessage("R&D \"x\""), "R&D \"x\"");
  EXPECT_EQ(ui::ForMessage(std::string(200, 'x')), std::string(200, 'x'));
}

TEST(UiMessageBox, ATextThatTheScreenHasNoRoomForIsCutInAMessage) {
  EXPECT_EQ(ui::ForMessage(std::string(201, 'x')), std::string(200, 'x') + "...");
}

}  // namespace
